# Installs the build into a scratch prefix, configures and builds the consumer project against that prefix alone, and
# runs its programs: the static and the shared library by find_package, and the library by pkg-config.
cmake_policy(VERSION 3.25)

function(run)
    execute_process(COMMAND ${ARGN} RESULT_VARIABLE result OUTPUT_VARIABLE output ERROR_VARIABLE output)
    if(NOT result EQUAL 0)
        message(FATAL_ERROR "${ARGN}\nends with ${result}:\n${output}")
    endif()
endfunction()

file(REMOVE_RECURSE ${SCRATCH})
run(${CMAKE_COMMAND} --install ${BUILD} --config ${CONFIG} --prefix ${SCRATCH}/prefix)
file(GLOB_RECURSE pc ${SCRATCH}/prefix/*.pc)
cmake_path(GET pc PARENT_PATH pc_folder)
set(ENV{PKG_CONFIG_PATH} ${pc_folder})
run(${CMAKE_COMMAND} -G ${GENERATOR} -S ${CONSUMER} -B ${SCRATCH}/build -DCMAKE_PREFIX_PATH=${SCRATCH}/prefix
    -DCMAKE_BUILD_TYPE=${CONFIG} -DCMAKE_CXX_COMPILER=${COMPILER} "-DCMAKE_CXX_FLAGS=${FLAGS}")
run(${CMAKE_COMMAND} --build ${SCRATCH}/build --config ${CONFIG})
run(${CMAKE_COMMAND} --build ${SCRATCH}/build --config ${CONFIG} --target run)
