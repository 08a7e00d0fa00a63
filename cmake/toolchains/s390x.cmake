# 64 bits, big-endian; qemu runs its programs.
set(CMAKE_SYSTEM_PROCESSOR s390x)
set(machine s390x-linux-gnu)
set(CMAKE_CROSSCOMPILING_EMULATOR qemu-s390x -L /usr/${machine})
include(${CMAKE_CURRENT_LIST_DIR}/foreign.cmake)
