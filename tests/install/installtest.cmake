# Installs the toolkit into a scratch prefix and builds hosts against it: the
# project in host/ with find_package(OrvacatQt), the same program with only
# pkg-config's flags, and the README's code blocks. Checks that the theme
# folder holds the theme and nothing of the build.
#   cmake -DBUILD_DIR=... -DWORK_DIR=... -DHOST_SOURCE=... -DREADME=... -DCXX=...
#         [-DSANITIZE=...] -P installtest.cmake

cmake_minimum_required(VERSION 3.16)
file(REMOVE_RECURSE ${WORK_DIR})
set(prefix ${WORK_DIR}/prefix)

function(run)
    execute_process(COMMAND ${ARGN} RESULT_VARIABLE result OUTPUT_VARIABLE output ERROR_VARIABLE output)
    if(NOT result EQUAL 0)
        message(FATAL_ERROR "Failed (${result}): ${ARGN}\n${output}")
    endif()
    message(STATUS "${output}")
endfunction()

run(${CMAKE_COMMAND} --install ${BUILD_DIR} --prefix ${prefix})

set(flags "")
if(SANITIZE)
    set(flags "-fsanitize=${SANITIZE}")
endif()
run(${CMAKE_COMMAND} -S ${HOST_SOURCE} -B ${WORK_DIR}/host
    -DCMAKE_PREFIX_PATH=${prefix} "-DCMAKE_CXX_FLAGS=${flags}" "-DCMAKE_EXE_LINKER_FLAGS=${flags}")
run(${CMAKE_COMMAND} --build ${WORK_DIR}/host)
run(${CMAKE_COMMAND} -E env QT_QPA_PLATFORM=offscreen ${WORK_DIR}/host/orvacat-host)

# The installed theme is the theme: no build files.
file(GLOB_RECURSE strays "${prefix}/share/orvacat-qt/themes/*")
list(FILTER strays INCLUDE REGEX "/CMakeFiles/|/Makefile$|/CTestTestfile\\.cmake$|/cmake_install\\.cmake$|\\.stamp$")
if(strays)
    message(FATAL_ERROR "Build files installed with the theme: ${strays}")
endif()
if(NOT EXISTS "${prefix}/share/orvacat-qt/themes/default/images.json")
    message(FATAL_ERROR "The theme was not installed")
endif()

# The Designer plugin, when the build has one, lands below the prefix.
if(EXISTS "${BUILD_DIR}/plugins/designer")
    file(GLOB_RECURSE plugin "${prefix}/*/liborvacat-designer.so")
    if(NOT plugin)
        message(FATAL_ERROR "The Designer plugin was not installed below ${prefix}")
    endif()
endif()

# A host that knows only pkg-config, with the install moved after the fact:
# the .pc file must find its prefix from where it lies.
file(RENAME ${prefix} ${WORK_DIR}/moved)
set(prefix ${WORK_DIR}/moved)
file(GLOB_RECURSE pc_files "${prefix}/*/orvacat-qt.pc")
list(GET pc_files 0 pc_file)
get_filename_component(pc_dir ${pc_file} DIRECTORY)
foreach(what cflags libs)
    execute_process(COMMAND ${CMAKE_COMMAND} -E env PKG_CONFIG_PATH=${pc_dir} pkg-config --${what} "orvacat-qt >= 1.0"
        RESULT_VARIABLE result OUTPUT_VARIABLE ${what} OUTPUT_STRIP_TRAILING_WHITESPACE)
    if(NOT result EQUAL 0)
        message(FATAL_ERROR "pkg-config does not know orvacat-qt")
    endif()
    separate_arguments(${what} UNIX_COMMAND "${${what}}")
endforeach()
execute_process(COMMAND ${CMAKE_COMMAND} -E env PKG_CONFIG_PATH=${pc_dir} pkg-config --variable=libdir orvacat-qt
    OUTPUT_VARIABLE libdir OUTPUT_STRIP_TRAILING_WHITESPACE)
run(${CXX} -std=c++17 ${flags} ${cflags} ${HOST_SOURCE}/main.cpp -o ${WORK_DIR}/pc-host ${libs})
run(${CMAKE_COMMAND} -E env QT_QPA_PLATFORM=offscreen LD_LIBRARY_PATH=${libdir} ${WORK_DIR}/pc-host)

# The README's code blocks, as a host copies them.
set(OUT ${WORK_DIR}/readme)
file(MAKE_DIRECTORY ${OUT})
include(${CMAKE_CURRENT_LIST_DIR}/readmehost.cmake)
run(${CMAKE_COMMAND} -S ${OUT} -B ${OUT}/build
    -DCMAKE_PREFIX_PATH=${prefix} "-DCMAKE_CXX_FLAGS=${flags}" "-DCMAKE_EXE_LINKER_FLAGS=${flags}")
run(${CMAKE_COMMAND} --build ${OUT}/build)
