# SPDX-License-Identifier: Apache-2.0
# Debian packages by `cpack -G DEB`: liblrasynth1, liblrasynth-dev and lrasynth.
set(CPACK_PACKAGE_CONTACT "The lrasynth authors <lrasynth@packages.debian.org>")
set(CPACK_PACKAGE_VENDOR "The lrasynth authors")
set(CPACK_STRIP_FILES ON)
set(CPACK_COMPONENTS_ALL runtime development)
if(TARGET lrasynth_command)
  list(APPEND CPACK_COMPONENTS_ALL command)
endif()
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS ${PROJECT_BINARY_DIR}/src)
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS ON)
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS_POLICY ">=")
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)

set(runtime liblrasynth${PROJECT_VERSION_MAJOR})
set(development liblrasynth-dev)
set(command lrasynth)
set(runtime_text "This is the library that programs load. It needs nothing but libc and libm.")
set(development_text "These are the header, the static library, the CMake package, the pkg-config file\nand a Python module.")
set(command_text "This is the command lrasynth, which draws taps and patterns and\nmakes them audible.")

string(TIMESTAMP date "%a, %d %b %Y %H:%M:%S +0000" UTC) # heeds SOURCE_DATE_EPOCH
foreach(component IN ITEMS runtime development command)
  string(TOUPPER ${component} name)
  set(package ${${component}})
  set(CPACK_DEBIAN_${name}_PACKAGE_NAME ${package})
  set(CPACK_COMPONENT_${name}_DESCRIPTION "${${component}_text}")

  set(papers ${PROJECT_BINARY_DIR}/packages/${package})
  file(WRITE ${papers}/changelog "lrasynth (${PROJECT_VERSION}) unstable; urgency=medium\n\n"
    "  * See CHANGELOG.md of the sources.\n\n -- ${CPACK_PACKAGE_CONTACT}  ${date}\n")
  file(ARCHIVE_CREATE OUTPUT ${papers}/changelog.gz PATHS ${papers}/changelog FORMAT raw COMPRESSION GZip
    COMPRESSION_LEVEL 9)
  file(WRITE ${papers}/copyright "Copyright The lrasynth authors\nLicense: Apache-2.0\n"
    " On Debian systems the full text is in /usr/share/common-licenses/Apache-2.0.\n")
  install(FILES ${papers}/changelog.gz ${papers}/copyright DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/${package}
    COMPONENT ${component} EXCLUDE_FROM_ALL)
endforeach()

set(CPACK_DEBIAN_RUNTIME_PACKAGE_SECTION libs)
set(CPACK_DEBIAN_RUNTIME_PACKAGE_CONTROL_EXTRA ${PROJECT_BINARY_DIR}/packages/triggers)
file(WRITE ${PROJECT_BINARY_DIR}/packages/triggers "activate-noawait ldconfig\n")
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SECTION libdevel)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_DEPENDS "${runtime} (= ${PROJECT_VERSION})")
set(CPACK_DEBIAN_COMMAND_PACKAGE_SECTION sound)
set(CPACK_DEBIAN_COMMAND_PACKAGE_DEPENDS "${runtime} (>= ${PROJECT_VERSION})") # beside what dpkg-shlibdeps finds
include(CPack)
