# Builds and runs tests/consumer/application against the library: WAY is `installed` or `subdirectory`.
set(work "${BUILD_DIR}/consumer/${WAY}")
file(REMOVE_RECURSE "${work}")

function(run)
    execute_process(COMMAND ${ARGV} RESULT_VARIABLE status OUTPUT_VARIABLE output ERROR_VARIABLE output)
    if(NOT status EQUAL 0)
        message(FATAL_ERROR "${ARGV}\n${output}")
    endif()
endfunction()

if(WAY STREQUAL "installed")
    run("${CMAKE_COMMAND}" --install "${BUILD_DIR}" --prefix "${work}/prefix")
    set(library "-DCMAKE_PREFIX_PATH=${work}/prefix")
else()
    set(library "-DQUILLBEAM_SOURCE=${SOURCE_DIR}")
endif()

run("${CMAKE_COMMAND}" -G Ninja -S "${CMAKE_CURRENT_LIST_DIR}/application" -B "${work}/build" ${library}
    "-DCMAKE_CXX_COMPILER=${CXX}" "-DCMAKE_CXX_FLAGS=${FLAGS}" "-DCMAKE_CXX_COMPILER_LAUNCHER=${LAUNCHER}")
run("${CMAKE_COMMAND}" --build "${work}/build")
run("${work}/build/application")
run("${work}/build/own_transport")
