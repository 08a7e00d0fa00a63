# What every target of this project is compiled with; link ondrel_options privately.

add_library(ondrel_options INTERFACE)
target_compile_options(
    ondrel_options
    INTERFACE
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
        -Wundef
        $<$<CXX_COMPILER_ID:GNU>:-Wlogical-op>
        $<$<CXX_COMPILER_ID:GNU>:-Wduplicated-cond>
        $<$<BOOL:${ONDREL_WERROR}>:-Werror>)

if(ONDREL_SANITIZE)
    set(sanitizers -fsanitize=address,undefined -fno-sanitize-recover=all -fno-omit-frame-pointer)
elseif(ONDREL_THREAD_SANITIZE)
    set(sanitizers -fsanitize=thread)
endif()
target_compile_options(ondrel_options INTERFACE ${sanitizers})
target_link_options(ondrel_options INTERFACE ${sanitizers})
