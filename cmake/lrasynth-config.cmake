# SPDX-License-Identifier: Apache-2.0
# find_package(lrasynth 1 [COMPONENTS shared|static]): the targets lrasynth::lrasynth, a library of the kind that was
# built, and lrasynth::lrasynth_static where there is a static one.
include(${CMAKE_CURRENT_LIST_DIR}/lrasynth-targets.cmake)

get_target_property(lrasynth_kind lrasynth::lrasynth TYPE)
if(lrasynth_kind STREQUAL "SHARED_LIBRARY")
  set(lrasynth_shared_FOUND TRUE)
elseif(NOT TARGET lrasynth::lrasynth_static)
  add_library(lrasynth::lrasynth_static ALIAS lrasynth::lrasynth)
endif()
if(TARGET lrasynth::lrasynth_static)
  set(lrasynth_static_FOUND TRUE)
endif()
unset(lrasynth_kind)

foreach(component IN LISTS lrasynth_FIND_COMPONENTS)
  if(lrasynth_FIND_REQUIRED_${component} AND NOT lrasynth_${component}_FOUND)
    set(lrasynth_FOUND FALSE)
    set(lrasynth_NOT_FOUND_MESSAGE "there is no ${component} library in ${CMAKE_CURRENT_LIST_DIR}")
  endif()
endforeach()
