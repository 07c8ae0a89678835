# SPDX-License-Identifier: Apache-2.0
# What `cmake --install` gives beside the command: header, libraries, CMake package, pkg-config file and Python module.
# They find each other by relative paths, so that the prefix can be moved.
include(CMakePackageConfigHelpers)

set(package_dir ${CMAKE_INSTALL_LIBDIR}/cmake/lrasynth)

install(TARGETS ${libraries} EXPORT lrasynth
  LIBRARY COMPONENT runtime NAMELINK_COMPONENT development
  ARCHIVE COMPONENT development
)
set(CMAKE_INSTALL_DEFAULT_COMPONENT_NAME development)
install(FILES ${PROJECT_SOURCE_DIR}/include/lrasynth.h DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})
# Not lrasynth-config: what that includes by its pattern would be the version file too.
install(EXPORT lrasynth NAMESPACE lrasynth:: FILE lrasynth-targets.cmake DESTINATION ${package_dir})
write_basic_package_version_file(lrasynth-config-version.cmake COMPATIBILITY SameMajorVersion)
install(FILES ${PROJECT_SOURCE_DIR}/cmake/lrasynth-config.cmake ${CMAKE_CURRENT_BINARY_DIR}/lrasynth-config-version.cmake
  DESTINATION ${package_dir})
install(FILES ${PROJECT_SOURCE_DIR}/examples/python/lrasynth.py DESTINATION ${CMAKE_INSTALL_DATADIR}/lrasynth/python)

cmake_path(RELATIVE_PATH CMAKE_INSTALL_PREFIX
  BASE_DIRECTORY ${CMAKE_INSTALL_FULL_LIBDIR}/pkgconfig OUTPUT_VARIABLE prefix_from_pc)
# Below the prefix, or where an absolute path says.
foreach(dir LIBDIR INCLUDEDIR)
  cmake_path(APPEND pc_${dir} "\${prefix}" ${CMAKE_INSTALL_${dir}})
endforeach()
configure_file(${PROJECT_SOURCE_DIR}/cmake/lrasynth.pc.in lrasynth.pc @ONLY)
install(FILES ${CMAKE_CURRENT_BINARY_DIR}/lrasynth.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
