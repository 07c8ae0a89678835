# SPDX-License-Identifier: Apache-2.0
# Debian's Clang for WebAssembly with a C library. There are no threads, no shared libraries and no exceptions; what
# has a main() runs under Node.
set(CMAKE_SYSTEM_NAME Generic) # CMake knows no such system
set(CMAKE_SYSTEM_PROCESSOR wasm32)
set(WASI TRUE)
set(CMAKE_C_COMPILER clang)
set(CMAKE_CXX_COMPILER clang++)
set(CMAKE_AR llvm-ar) # that of binutils makes no index of such objects
set(CMAKE_RANLIB llvm-ranlib)
set(CMAKE_C_COMPILER_TARGET wasm32-wasi)
set(CMAKE_CXX_COMPILER_TARGET wasm32-wasi)
set(CMAKE_CROSSCOMPILING_EMULATOR ${CMAKE_CURRENT_LIST_DIR}/run-wasi)
set(CMAKE_FIND_ROOT_PATH /usr/lib/wasm32-wasi /usr/include/wasm32-wasi)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
