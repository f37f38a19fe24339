# Installs the toolkit into a scratch prefix and builds hosts against it: the
# project in host/ with find_package(OrvacatQt) or find_package(OrvacatQt6),
# whichever the build made, the same program with only pkg-config's flags,
# and the README's code blocks. Checks that the theme folder holds the theme
# and nothing of the build. Given a build of the other Qt major as well, it
# installs both into the one prefix, checks that neither wrote a file of the
# other, and builds and runs the hosts of both.
#   cmake -DBUILD_DIR=... -DWORK_DIR=... -DHOST_SOURCE=... -DREADME=... -DCXX=...
#         [-DOTHER_BUILD_DIR=...] [-DSANITIZE=...] -P installtest.cmake

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

# The names a build installs under, from the Qt major it was configured with.
function(read_names build_dir)
    file(STRINGS ${build_dir}/CMakeCache.txt major REGEX "^ORVACAT_QT_MAJOR:")
    string(REGEX REPLACE ".*=" "" major "${major}")
    if(major STREQUAL "6")
        set(package OrvacatQt6 PARENT_SCOPE)
        set(name orvacat-qt6 PARENT_SCOPE)
    else()
        set(package OrvacatQt PARENT_SCOPE)
        set(name orvacat-qt PARENT_SCOPE)
    endif()
endfunction()

# Installs a build into the prefix; the list of files it wrote, relative to
# the prefix, goes to <out>.
function(install_build build_dir out)
    run(${CMAKE_COMMAND} --install ${build_dir} --prefix ${prefix})
    file(STRINGS ${build_dir}/install_manifest.txt files)
    set(relative "")
    foreach(file IN LISTS files)
        file(RELATIVE_PATH file ${prefix} ${file})
        list(APPEND relative ${file})
    endforeach()
    set(${out} ${relative} PARENT_SCOPE)
endfunction()

set(builds ${BUILD_DIR})
install_build(${BUILD_DIR} installed)
if(OTHER_BUILD_DIR)
    list(APPEND builds ${OTHER_BUILD_DIR})
    install_build(${OTHER_BUILD_DIR} installed_other)
    set(shared "")
    foreach(file IN LISTS installed)
        if(file IN_LIST installed_other)
            list(APPEND shared ${file})
        endif()
    endforeach()
    if(shared)
        message(FATAL_ERROR "The two Qt majors install the same files: ${shared}")
    endif()
    message(STATUS "${BUILD_DIR} and ${OTHER_BUILD_DIR} share no installed file")
endif()

set(flags "")
if(SANITIZE)
    set(flags "-fsanitize=${SANITIZE}")
endif()

set(host_index 0)
foreach(build IN LISTS builds)
    read_names(${build})
    math(EXPR host_index "${host_index} + 1")
    set(host_dir ${WORK_DIR}/host${host_index})
    run(${CMAKE_COMMAND} -S ${HOST_SOURCE} -B ${host_dir} -DORVACAT_PACKAGE=${package}
        -DCMAKE_PREFIX_PATH=${prefix} "-DCMAKE_CXX_FLAGS=${flags}" "-DCMAKE_EXE_LINKER_FLAGS=${flags}")
    run(${CMAKE_COMMAND} --build ${host_dir})
    run(${CMAKE_COMMAND} -E env QT_QPA_PLATFORM=offscreen ${host_dir}/orvacat-host)

    # The installed theme is the theme: no build files.
    file(GLOB_RECURSE strays "${prefix}/share/${name}/themes/*")
    list(FILTER strays INCLUDE REGEX "/CMakeFiles/|/Makefile$|/CTestTestfile\\.cmake$|/cmake_install\\.cmake$|\\.stamp$")
    if(strays)
        message(FATAL_ERROR "Build files installed with the theme: ${strays}")
    endif()
    if(NOT EXISTS "${prefix}/share/${name}/themes/default/images.json")
        message(FATAL_ERROR "The theme was not installed to share/${name}")
    endif()
endforeach()

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
set(host_index 0)
foreach(build IN LISTS builds)
    read_names(${build})
    math(EXPR host_index "${host_index} + 1")
    file(GLOB_RECURSE pc_files "${prefix}/*/${name}.pc")
    if(NOT pc_files)
        message(FATAL_ERROR "${name}.pc was not installed")
    endif()
    list(GET pc_files 0 pc_file)
    get_filename_component(pc_dir ${pc_file} DIRECTORY)
    foreach(what cflags libs)
        execute_process(COMMAND ${CMAKE_COMMAND} -E env PKG_CONFIG_PATH=${pc_dir} pkg-config --${what} "${name} >= 1.0"
            RESULT_VARIABLE result OUTPUT_VARIABLE ${what} OUTPUT_STRIP_TRAILING_WHITESPACE)
        if(NOT result EQUAL 0)
            message(FATAL_ERROR "pkg-config does not know ${name}")
        endif()
        separate_arguments(${what} UNIX_COMMAND "${${what}}")
    endforeach()
    execute_process(COMMAND ${CMAKE_COMMAND} -E env PKG_CONFIG_PATH=${pc_dir} pkg-config --variable=libdir ${name}
        OUTPUT_VARIABLE libdir OUTPUT_STRIP_TRAILING_WHITESPACE)
    run(${CXX} -std=c++17 ${flags} ${cflags} ${HOST_SOURCE}/main.cpp -o ${WORK_DIR}/pc-host${host_index} ${libs})
    run(${CMAKE_COMMAND} -E env QT_QPA_PLATFORM=offscreen LD_LIBRARY_PATH=${libdir} ${WORK_DIR}/pc-host${host_index})
endforeach()

# The README's code blocks, as a host copies them, against this build's package.
read_names(${BUILD_DIR})
set(OUT ${WORK_DIR}/readme)
set(PACKAGE ${package})
file(MAKE_DIRECTORY ${OUT})
include(${CMAKE_CURRENT_LIST_DIR}/readmehost.cmake)
run(${CMAKE_COMMAND} -S ${OUT} -B ${OUT}/build
    -DCMAKE_PREFIX_PATH=${prefix} "-DCMAKE_CXX_FLAGS=${flags}" "-DCMAKE_EXE_LINKER_FLAGS=${flags}")
run(${CMAKE_COMMAND} --build ${OUT}/build)
