# 32 bits, with the arithmetic of SSE: x87 registers hold more bits than a double, and results then
# depend on what the compiler keeps in them. An x86-64 machine runs its programs with their loader.
set(CMAKE_SYSTEM_PROCESSOR i686)
set(machine i686-linux-gnu)
set(CMAKE_CROSSCOMPILING_EMULATOR /usr/${machine}/lib/ld-linux.so.2 --library-path /usr/${machine}/lib)
include(${CMAKE_CURRENT_LIST_DIR}/foreign.cmake)
set(CMAKE_CXX_FLAGS_INIT "-msse2 -mfpmath=sse")
