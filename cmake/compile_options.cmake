# What every target of this project is compiled with; link ondrel_options privately.

# Compilers that take the options of g++.
set(gnu_like $<CXX_COMPILER_ID:GNU,Clang,AppleClang>)

add_library(ondrel_options INTERFACE)
target_compile_features(ondrel_options INTERFACE cxx_std_17)

# The same numbers on every machine, to the last bit. A fused multiply-add rounds once where two
# operations round twice, so machines that have it must not use it.
target_compile_options(ondrel_options INTERFACE $<${gnu_like}:-ffp-contract=off>)

# Warnings are for those who work on ondrel, not for those who use it.
if(PROJECT_IS_TOP_LEVEL)
    set(warnings
        -Wall
        -Wextra
        -Wpedantic
        -Wshadow
        -Wconversion
        -Wsign-conversion
        -Wold-style-cast
        -Wcast-qual
        -Wcast-align
        -Wnon-virtual-dtor
        -Woverloaded-virtual
        -Wnull-dereference
        -Wdouble-promotion
        -Wformat=2
        -Wundef)
    target_compile_options(
        ondrel_options INTERFACE "$<${gnu_like}:${warnings}>"
                                 "$<$<CXX_COMPILER_ID:GNU>:-Wlogical-op;-Wduplicated-cond>")
endif()

set(sanitizers "")
if((ONDREL_SANITIZE OR ONDREL_THREAD_SANITIZE) AND NOT CMAKE_CXX_COMPILER_ID MATCHES "GNU|Clang")
    message(FATAL_ERROR "The sanitized builds need g++ or clang++")
endif()
if(ONDREL_SANITIZE)
    set(sanitizers -fsanitize=address,undefined -fno-sanitize-recover=all -fno-omit-frame-pointer)
elseif(ONDREL_THREAD_SANITIZE)
    set(sanitizers -fsanitize=thread)
endif()
target_compile_options(ondrel_options INTERFACE ${sanitizers})
target_link_options(ondrel_options INTERFACE ${sanitizers})
