# Installs the toolkit into a scratch prefix, builds the host project in
# host/ against it with find_package(OrvacatQt) and runs it; checks the
# pkg-config file too.
#   cmake -DBUILD_DIR=... -DWORK_DIR=... -DHOST_SOURCE=... [-DSANITIZE=...] -P installtest.cmake

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

find_program(PKG_CONFIG pkg-config)
if(PKG_CONFIG)
    run(${CMAKE_COMMAND} -E env PKG_CONFIG_PATH=${prefix}/lib/pkgconfig:${prefix}/lib/x86_64-linux-gnu/pkgconfig
        ${PKG_CONFIG} --exists --print-errors "orvacat-qt >= 1.0")
endif()
