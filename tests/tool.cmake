# The lrasynth command, called as its users call it.
add_test(NAME Tool COMMAND Python3::Interpreter ${CMAKE_CURRENT_LIST_DIR}/tool_test.py)
set_tests_properties(Tool PROPERTIES ENVIRONMENT LRASYNTH=$<TARGET_FILE:lrasynth_command>)
