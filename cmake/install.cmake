# What `cmake --install` gives beside the command: header, libraries, CMake package and pkg-config file. They find each
# other by relative paths, so that the prefix can be moved.
include(CMakePackageConfigHelpers)

set(package_dir ${CMAKE_INSTALL_LIBDIR}/cmake/lrasynth)

install(FILES ${PROJECT_SOURCE_DIR}/include/lrasynth.h DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})
install(TARGETS ${libraries} EXPORT lrasynth)
install(EXPORT lrasynth NAMESPACE lrasynth:: FILE lrasynth-config.cmake DESTINATION ${package_dir})
write_basic_package_version_file(lrasynth-config-version.cmake COMPATIBILITY SameMajorVersion)

cmake_path(RELATIVE_PATH CMAKE_INSTALL_PREFIX
  BASE_DIRECTORY ${CMAKE_INSTALL_FULL_LIBDIR}/pkgconfig OUTPUT_VARIABLE prefix_from_pc)
configure_file(${PROJECT_SOURCE_DIR}/cmake/lrasynth.pc.in lrasynth.pc @ONLY)

install(FILES ${CMAKE_CURRENT_BINARY_DIR}/lrasynth-config-version.cmake DESTINATION ${package_dir})
install(FILES ${CMAKE_CURRENT_BINARY_DIR}/lrasynth.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
