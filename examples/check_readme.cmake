# Fails unless README shows the program SOURCE without its head comment, and right behind it, in a
# block of text, what EXECUTABLE prints.
#
#   cmake -DREADME=file -DSOURCE=file -DEXECUTABLE=file -P check_readme.cmake

file(READ ${README} readme)
file(READ ${SOURCE} program)
string(REGEX REPLACE "^(//[^\n]*\n)+\n" "" program "${program}")
execute_process(COMMAND ${EXECUTABLE} OUTPUT_VARIABLE printed COMMAND_ERROR_IS_FATAL ANY)

string(FIND "${readme}" "```cpp\n${program}```\n\n```text\n${printed}```\n" place)
if(place EQUAL -1)
    message(FATAL_ERROR "${README} does not show ${SOURCE} and behind it\n${printed}")
endif()
