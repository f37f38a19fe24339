# Turns the README's code blocks into a host project: the CMake block is the
# project's own CMake, the C++ block with main() is its program, and every
# other C++ block becomes the body of a function. The CMake block's package
# (OrvacatQt or OrvacatQt6) becomes PACKAGE, the one that was built, as a host
# on the other Qt major picks the other name. Used by installtest.cmake.
#   include() with README, OUT and PACKAGE set.
# The blocks are cut out by position, not as a CMake list: code has semicolons.

file(READ ${README} rest)
set(cmake_block "")
set(sources "")
set(index 0)
while(TRUE)
    string(FIND "${rest}" "```" open)
    if(open EQUAL -1)
        break()
    endif()
    string(SUBSTRING "${rest}" ${open} -1 rest)
    string(FIND "${rest}" "\n" eol)
    math(EXPR length "${eol} - 3")
    string(SUBSTRING "${rest}" 3 ${length} language)
    string(STRIP "${language}" language)
    math(EXPR body_start "${eol} + 1")
    string(SUBSTRING "${rest}" ${body_start} -1 rest)
    string(FIND "${rest}" "```" close)
    string(SUBSTRING "${rest}" 0 ${close} body)
    math(EXPR after "${close} + 3")
    string(SUBSTRING "${rest}" ${after} -1 rest)
    math(EXPR index "${index} + 1")
    if(language STREQUAL "cmake")
        string(REGEX REPLACE "OrvacatQt6?" "${PACKAGE}" body "${body}")
        string(APPEND cmake_block "${body}")
    elseif(language STREQUAL "cpp")
        if(body MATCHES "int main\\(")
            file(WRITE ${OUT}/myapp.cpp "${body}")
        else()
            file(WRITE ${OUT}/snippet${index}.cpp
                "#include <orvacat/orvacat.h>\nint snippet${index}(int argc, char** argv)\n{\n${body}    return 0;\n}\n")
            string(APPEND sources " snippet${index}.cpp")
        endif()
    endif()
endwhile()

if(NOT EXISTS ${OUT}/myapp.cpp OR cmake_block STREQUAL "")
    message(FATAL_ERROR "The README has no host program or no CMake block")
endif()
file(WRITE ${OUT}/CMakeLists.txt "cmake_minimum_required(VERSION 3.16)
project(ReadmeHost LANGUAGES CXX)
set(CMAKE_CXX_STANDARD 17)
add_executable(myapp myapp.cpp${sources})
${cmake_block}")
