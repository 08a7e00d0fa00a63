# Writes build_facts.h: what the head of the table says of the build. It runs with every build, because
# the commit changes without CMake.
cmake_minimum_required(VERSION 3.25)

execute_process(
    COMMAND git -C ${SOURCE_DIR} rev-parse --short HEAD
    OUTPUT_VARIABLE commit OUTPUT_STRIP_TRAILING_WHITESPACE ERROR_QUIET)
execute_process(
    COMMAND git -C ${SOURCE_DIR} status --porcelain --untracked-files=no
    OUTPUT_VARIABLE changes ERROR_QUIET)
if(NOT commit)
    set(commit "unknown")
elseif(changes)
    string(APPEND commit ", and the tree has changes")
endif()

# options_of(RESULT TARGET)   The options of one file of the library, without warnings and paths, as they
# are for this target; those of the shared library if the target compiles no files of its own.
function(options_of result target)
    set(flags " options unknown")
    if(EXISTS ${BUILD_DIR}/compile_commands.json)
        foreach(compiled IN ITEMS ${target} ondrel_mode_s)
            file(STRINGS ${BUILD_DIR}/compile_commands.json command
                 REGEX "\"command\".*${compiled}\\.dir.*src/mode_s/parity\\.cpp\"")
            if(command)
                break()
            endif()
        endforeach()
        string(REGEX MATCHALL " -(O|f|g|m|std=|DNDEBUG)[^ ]*" flags "${command}")
        string(JOIN "" flags ${flags})
        if(flags MATCHES "-flto")
            string(APPEND flags ", link-time optimisation on")
        else()
            string(APPEND flags ", link-time optimisation off")
        endif()
    endif()
    set(${result} "${BUILD_TYPE}:${flags}" PARENT_SCOPE)
endfunction()

options_of(shared ondrel_mode_s)
options_of(internals ondrel_internals)
file(CONFIGURE OUTPUT ${OUTPUT} @ONLY CONTENT
"#define FACT_COMMIT \"@commit@\"
#define FACT_COMPILER \"@COMPILER@\"
#define FACT_BUILD \"@shared@\"
#define FACT_BUILD_OF_INTERNALS \"@internals@\"
")
