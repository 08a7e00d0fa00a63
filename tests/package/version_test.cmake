# Holds that library, package files, headers, pages and client tell the version of CMakeLists.txt, and that
# SOVERSION and package promise the same: a program works with all versions of one major and minor number.
#
#   cmake -DVERSION=x.y.z -DSOURCES=dir [-DPACKAGE=file] [-DLIBRARY=file -DSONAME=file] [-DCLIENT=file]
#         -P version_test.cmake

# tells(WHAT IT_TELLS EXPECTED)
function(tells what it_tells expected)
    if(NOT it_tells STREQUAL expected)
        message(SEND_ERROR "${what} tells '${it_tells}' instead of '${expected}'")
    endif()
endfunction()

# file_tells(FILE REGEX EXPECTED): the first match of the regex
function(file_tells file regex expected)
    file(READ ${SOURCES}/${file} text)
    string(REGEX MATCH "${regex}" match "${text}")
    tells(${file} "${CMAKE_MATCH_1}" ${expected})
endfunction()

string(REGEX MATCH "^([0-9]+)\\.([0-9]+)" same_promise ${VERSION})
set(major ${CMAKE_MATCH_1})
set(minor ${CMAKE_MATCH_2})

file_tells(README.md "find_package\\(ondrel ([0-9.]+)" ${same_promise})
file_tells(tests/package/consumer/CMakeLists.txt "find_package\\(ondrel ([0-9.]+)" ${same_promise})
file_tells(include/ondrel/ondrel.h "such as \"([0-9.]+)\"" ${VERSION})
file_tells(CHANGELOG.md "\n## ([0-9.]+)" ${VERSION})

# package_suits(MINOR EXPECTED): a project that asks for this minor number
function(package_suits wanted expected)
    set(PACKAGE_FIND_VERSION_MAJOR ${major})
    set(PACKAGE_FIND_VERSION_MINOR ${wanted})
    set(PACKAGE_FIND_VERSION ${major}.${wanted})
    include(${PACKAGE})
    tells("the package" "${PACKAGE_VERSION}" ${VERSION})
    tells("the package, asked for ${major}.${wanted}," "${PACKAGE_VERSION_COMPATIBLE}" ${expected})
endfunction()

if(PACKAGE)
    math(EXPR before "${minor} - 1")
    math(EXPR after "${minor} + 1")
    package_suits(${before} FALSE)
    package_suits(${minor} TRUE)
    package_suits(${after} FALSE)
endif()
if(LIBRARY)
    tells("the name of the library" ${LIBRARY} libondrel.so.${VERSION})
    tells("SONAME" ${SONAME} libondrel.so.${same_promise})
endif()
if(CLIENT)
    execute_process(COMMAND ${CLIENT} --version OUTPUT_VARIABLE output COMMAND_ERROR_IS_FATAL ANY)
    string(REGEX MATCH "^ondrel ([0-9.]+)\n" match "${output}")
    tells("ondrel --version" "${CMAKE_MATCH_1}" ${VERSION})
endif()
