# SPDX-License-Identifier: Apache-2.0
# The NDK's toolchain file, where ANDROID_NDK_ROOT says.
set(ndk_toolchain $ENV{ANDROID_NDK_ROOT}/build/cmake/android.toolchain.cmake)
if(NOT EXISTS ${ndk_toolchain})
  message(FATAL_ERROR "There is no NDK in ANDROID_NDK_ROOT, which is \"$ENV{ANDROID_NDK_ROOT}\": set that environment "
    "variable to the directory of an NDK, the one with build/cmake/android.toolchain.cmake in it")
endif()
include(${ndk_toolchain})
