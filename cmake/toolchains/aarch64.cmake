# What many receivers are; qemu runs its programs.
set(CMAKE_SYSTEM_PROCESSOR aarch64)
set(machine aarch64-linux-gnu)
set(CMAKE_CROSSCOMPILING_EMULATOR qemu-aarch64 -L /usr/${machine})
include(${CMAKE_CURRENT_LIST_DIR}/foreign.cmake)
