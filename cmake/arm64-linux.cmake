# Debian's cross compiler and multiarch packages; programs that run while we build, and tests, run in
# qemu's user emulation.
set(CMAKE_SYSTEM_NAME Linux)
set(CMAKE_SYSTEM_PROCESSOR aarch64)
set(CMAKE_C_COMPILER aarch64-linux-gnu-gcc)
set(CMAKE_CXX_COMPILER aarch64-linux-gnu-g++)
set(ENV{PKG_CONFIG_LIBDIR} /usr/lib/aarch64-linux-gnu/pkgconfig:/usr/share/pkgconfig)
find_program(ZUVI_EMULATOR NAMES qemu-aarch64-static qemu-aarch64 REQUIRED)
set(CMAKE_CROSSCOMPILING_EMULATOR ${ZUVI_EMULATOR})
set(CMAKE_GTEST_DISCOVER_TESTS_DISCOVERY_MODE PRE_TEST)
