# Installs the build into an empty prefix, and configures, builds and runs a consumer against it.
#
#   cmake -DBUILD=dir -DCONSUMER=dir -DWORK=dir -DGENERATOR=name -DCOMPILER=file -DFLAGS=flags
#         -DTYPE=type -P package_test.cmake

function(run)
    execute_process(COMMAND ${ARGN} RESULT_VARIABLE result OUTPUT_VARIABLE out ERROR_VARIABLE out)
    set(out "${out}" PARENT_SCOPE)
    if(NOT result EQUAL 0)
        message(FATAL_ERROR "${ARGN}\ngives ${result}:\n${out}")
    endif()
endfunction()

file(REMOVE_RECURSE ${WORK})
run(${CMAKE_COMMAND} --install ${BUILD} --prefix ${WORK}/prefix)
run(${CMAKE_COMMAND} -S ${CONSUMER} -B ${WORK}/build -G ${GENERATOR} -DCMAKE_PREFIX_PATH=${WORK}/prefix
    -DCMAKE_CXX_COMPILER=${COMPILER} -DCMAKE_CXX_FLAGS=${FLAGS} -DCMAKE_BUILD_TYPE=${TYPE})
run(${CMAKE_COMMAND} --build ${WORK}/build)
run(${WORK}/build/consumer)

set(expected "[INFO    ][ModeSDecoder] Initialized.\nCA: 5; AA: 4840D6; ME: 202CC371C32CE0\n")
if(NOT out STREQUAL expected)
    message(FATAL_ERROR "The consumer printed\n${out}\ninstead of\n${expected}")
endif()
