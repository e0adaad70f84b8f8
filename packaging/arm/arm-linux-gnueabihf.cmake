# SPDX-License-Identifier: MIT
# Cross building for 32-bit ARM with Debian's compiler, and with the toolkit of Debian's architecture
# armhf, which lies beside the native one. Programs of the build run in qemu's user mode.
set(CMAKE_SYSTEM_NAME Linux)
set(CMAKE_SYSTEM_PROCESSOR armv7l)
set(CMAKE_C_COMPILER arm-linux-gnueabihf-gcc)
set(CMAKE_CXX_COMPILER arm-linux-gnueabihf-g++)
set(CMAKE_CROSSCOMPILING_EMULATOR qemu-arm)
set(PKG_CONFIG_EXECUTABLE arm-linux-gnueabihf-pkg-config)
