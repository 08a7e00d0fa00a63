# As i686, with the arithmetic of x87.
include(${CMAKE_CURRENT_LIST_DIR}/i686.cmake)
set(CMAKE_CXX_FLAGS_INIT -mfpmath=387)
