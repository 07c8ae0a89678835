# The static library, with the promises of the shared one: only the exported names are visible, and a host's own
# function or variable of such a name neither clashes with ours nor takes its place inside the library.
#
# A linker binds the calls between archive members by name alone. So the library becomes one object in which every
# exported name is a weak alias of a local one, and only the local ones are used inside:
#   1. partial link; exported names get a prefix, where they are defined and where they are used
#   2. partial link again, with the exported names as aliases; they become weak, all others local
set(map ${PROJECT_SOURCE_DIR}/src/lrasynth.map)
set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${map})
file(STRINGS ${map} exports REGEX "^    [A-Za-z0-9_]+;$")
list(TRANSFORM exports REPLACE "^ *(.*);" "\\1")
list(JOIN exports "\n" exports)
string(REGEX REPLACE "[^\n]+" "\\0 inner.\\0" renamings "${exports}")
string(REGEX REPLACE "[^\n]+" "\\0 = inner.\\0;" aliases "${exports}")
file(CONFIGURE OUTPUT exports.txt CONTENT "@exports@\n" @ONLY)
file(CONFIGURE OUTPUT renamings.txt CONTENT "@renamings@\n" @ONLY)
file(CONFIGURE OUTPUT aliases.ld CONTENT "@aliases@\n" @ONLY)

add_custom_command(OUTPUT lrasynth.o
  COMMAND ${CMAKE_LINKER} -r -o parts.o $<TARGET_OBJECTS:lrasynth_objects>
  # Groups of inline functions must go, or the host's group of the same name would replace ours.
  COMMAND ${CMAKE_OBJCOPY} --remove-section=.group --redefine-syms=renamings.txt parts.o inner.o
  COMMAND ${CMAKE_LINKER} -r -o aliased.o inner.o aliases.ld
  COMMAND ${CMAKE_OBJCOPY} --keep-global-symbols=exports.txt --weaken-symbols=exports.txt aliased.o lrasynth.o
  DEPENDS lrasynth_objects $<TARGET_OBJECTS:lrasynth_objects> exports.txt renamings.txt aliases.ld
  COMMAND_EXPAND_LISTS
  VERBATIM
)
# The steps above work on machine code.
set_target_properties(lrasynth_objects PROPERTIES INTERPROCEDURAL_OPTIMIZATION OFF)

add_library(lrasynth_static STATIC ${CMAKE_CURRENT_BINARY_DIR}/lrasynth.o)
add_library(lrasynth::lrasynth_static ALIAS lrasynth_static)
target_include_directories(lrasynth_static INTERFACE
  $<BUILD_INTERFACE:${PROJECT_SOURCE_DIR}/include>
  $<INSTALL_INTERFACE:${CMAKE_INSTALL_INCLUDEDIR}>
)
set_target_properties(lrasynth_static PROPERTIES
  OUTPUT_NAME lrasynth
  LINKER_LANGUAGE C # no C++ runtime for hosts either
)
target_link_libraries(lrasynth_static INTERFACE m)
