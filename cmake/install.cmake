# SPDX-License-Identifier: Apache-2.0
# What `cmake --install` gives beside the command: header, libraries, CMake package, pkg-config file and Python module.
# They find each other by relative paths, so that the prefix can be moved.
include(CMakePackageConfigHelpers)

set(package_dir ${CMAKE_INSTALL_LIBDIR}/cmake/${name})

install(TARGETS ${libraries} EXPORT ${name}
  LIBRARY COMPONENT runtime NAMELINK_COMPONENT development
  ARCHIVE COMPONENT development
)
set(CMAKE_INSTALL_DEFAULT_COMPONENT_NAME development)
install(FILES ${PROJECT_SOURCE_DIR}/include/lrasynth.h ${PROJECT_SOURCE_DIR}/include/lrasynth.cdef.h
  DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})
# Not lrasynth-config: what that includes by its pattern would be the version file too.
install(EXPORT ${name} NAMESPACE lrasynth:: FILE ${name}-targets.cmake DESTINATION ${package_dir})
write_basic_package_version_file(${name}-config-version.cmake COMPATIBILITY SameMajorVersion)
configure_file(${PROJECT_SOURCE_DIR}/cmake/config.cmake.in ${name}-config.cmake @ONLY)
install(FILES ${CMAKE_CURRENT_BINARY_DIR}/${name}-config.cmake ${CMAKE_CURRENT_BINARY_DIR}/${name}-config-version.cmake
  DESTINATION ${package_dir})
if(LRASYNTH_BARE_NAMES) # of which the module tells
  install(DIRECTORY ${PROJECT_SOURCE_DIR}/bindings/python/lrasynth DESTINATION ${CMAKE_INSTALL_DATADIR}/lrasynth/python
    FILES_MATCHING PATTERN *.py PATTERN py.typed PATTERN __pycache__ EXCLUDE)
endif()

# Relative to where the file is, but for the prefix that is a distribution's: there pkg-config leaves the directories out
# which compilers search anyway, and recognises them by their plain names.
if(CMAKE_INSTALL_PREFIX STREQUAL "/usr")
  set(pc_prefix /usr)
else()
  cmake_path(RELATIVE_PATH CMAKE_INSTALL_PREFIX
    BASE_DIRECTORY ${CMAKE_INSTALL_FULL_LIBDIR}/pkgconfig OUTPUT_VARIABLE pc_prefix)
  string(PREPEND pc_prefix "\${pcfiledir}/")
endif()
# Below the prefix, or where an absolute path says.
foreach(dir LIBDIR INCLUDEDIR)
  cmake_path(APPEND pc_${dir} "\${prefix}" ${CMAKE_INSTALL_${dir}})
endforeach()
set(pc_libs)
set(pc_libs_private -lm)
if(library_type STREQUAL "STATIC") # nobody has to say --static where there is nothing else
  set(pc_libs " -lm")
  set(pc_libs_private)
endif()
set(pc_cflags)
if(NOT LRASYNTH_BARE_NAMES)
  set(pc_cflags " -DLRASYNTH_NO_BARE_NAMES")
endif()
configure_file(${PROJECT_SOURCE_DIR}/cmake/lrasynth.pc.in ${name}.pc @ONLY)
install(FILES ${CMAKE_CURRENT_BINARY_DIR}/${name}.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)

# What was installed last, and the directories that are ours alone.
if(PROJECT_IS_TOP_LEVEL)
  add_custom_target(uninstall COMMAND ${CMAKE_COMMAND} -P ${PROJECT_SOURCE_DIR}/cmake/uninstall.cmake
    WORKING_DIRECTORY ${PROJECT_BINARY_DIR} VERBATIM)
endif()
