# Builds and runs a consumer in each of the ways in which a project can use ondrel: against the installed
# build, as a subdirectory, and against an installed static library, by another compiler too. Without SOURCES
# the first only.
#
#   cmake -DBUILD=dir -DSOURCES=dir -DCONSUMER=dir -DWORK=dir -DGENERATOR=name -DCOMPILER=file
#         -DFLAGS=flags -P package_test.cmake

function(run)
    execute_process(COMMAND ${ARGN} RESULT_VARIABLE result OUTPUT_VARIABLE out ERROR_VARIABLE out)
    set(out "${out}" PARENT_SCOPE)
    if(NOT result EQUAL 0)
        message(FATAL_ERROR "${ARGN}\ngives ${result}:\n${out}")
    endif()
endfunction()

# consumer(NAME OPTION...) configures with these options
function(consumer name)
    run(${CMAKE_COMMAND} -S ${CONSUMER} -B ${WORK}/${name} -G ${GENERATOR}
        -DCMAKE_CXX_COMPILER=${COMPILER} -DCMAKE_CXX_FLAGS=${FLAGS} ${ARGN})
    run(${CMAKE_COMMAND} --build ${WORK}/${name} --parallel 2)
    run(${WORK}/${name}/consumer)
    set(expected "[INFO    ][ModeSDecoder] Initialized.\nCA: 5; AA: 4840D6; ME: 202CC371C32CE0\n")
    if(NOT out STREQUAL expected)
        message(FATAL_ERROR "The consumer ${name} printed\n${out}\ninstead of\n${expected}")
    endif()
endfunction()

file(REMOVE_RECURSE ${WORK})

run(${CMAKE_COMMAND} --install ${BUILD} --prefix ${WORK}/installed)
consumer(against_installed -DCMAKE_PREFIX_PATH=${WORK}/installed)

if(SOURCES)
    consumer(subdirectory -DSUBDIRECTORY=${SOURCES} -DONDREL_INSTALL=ON)

    # The library of a subdirectory is static, unless its parent asks for a shared one.
    run(${CMAKE_COMMAND} --install ${WORK}/subdirectory --prefix ${WORK}/static)
    consumer(against_static -DCMAKE_PREFIX_PATH=${WORK}/static)

    find_program(CLANG clang++)
    if(CLANG)
        consumer(by_clang -DCMAKE_PREFIX_PATH=${WORK}/static -DCMAKE_CXX_COMPILER=${CLANG})
    else()
        message("clang++ is not installed, so no program of another compiler was linked")
    endif()
endif()
