# Fails unless the first C++ program in README is the file PROGRAM.
file(READ ${README} readme)
file(READ ${PROGRAM} program)
string(FIND "${readme}" "```cpp\n${program}```" place)
if(place EQUAL -1)
    message(FATAL_ERROR "README.md does not show ${PROGRAM} as it stands")
endif()
