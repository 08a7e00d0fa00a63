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

# The options of one file of the library, without warnings and paths.
set(commands ${BUILD_DIR}/compile_commands.json)
set(flags " options unknown")
if(EXISTS ${commands})
    file(STRINGS ${commands} command REGEX "\"command\".*src/mode_s/parity\\.cpp\"" LIMIT_COUNT 1)
    string(REGEX MATCHALL " -(O|f|g|m|std=|DNDEBUG)[^ ]*" flags "${command}")
    string(JOIN "" flags ${flags})
    if(flags MATCHES "-flto")
        string(APPEND flags ", link-time optimisation on")
    else()
        string(APPEND flags ", link-time optimisation off")
    endif()
endif()

file(CONFIGURE OUTPUT ${OUTPUT} @ONLY CONTENT
"#define FACT_COMMIT \"@commit@\"
#define FACT_COMPILER \"@COMPILER@\"
#define FACT_BUILD \"@BUILD_TYPE@:@flags@\"
")
