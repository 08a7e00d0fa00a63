# This machine, with clang++ and the standard library of LLVM.
set(CMAKE_C_COMPILER clang)
set(CMAKE_CXX_COMPILER clang++)
set(CMAKE_CXX_FLAGS_INIT -stdlib=libc++)
