# Runs check_floors.cmake on a tree made here, in which each fault that it knows stands once.
#
#     cmake -DCHECK=<check_floors.cmake> -DSCRATCH=<folder> -P check_floors_test.cmake
cmake_policy(VERSION 3.25)

file(REMOVE_RECURSE ${SCRATCH})
file(WRITE ${SCRATCH}/include/Low.h "#include \"High.h\"\n")
file(WRITE ${SCRATCH}/include/High.h "#include \"low/Inner.h\"\n#include \"Missing.h\"\n")
file(WRITE ${SCRATCH}/include/Stray.h "\n")
file(WRITE ${SCRATCH}/src/low/Low.cpp "#include \"Low.h\"\n#include <unistd.h>\n#if defined(_WIN32)\n#endif\n")
file(WRITE ${SCRATCH}/src/low/Inner.h "#include <string>\n")
file(WRITE ${SCRATCH}/src/high/High.cpp "#include \"High.h\"\n#include \"Low.h\"\n")
file(WRITE ${SCRATCH}/tools/tool.cpp "#include \"Low.h\"\n#include \"low/Inner.h\"\n")
file(WRITE ${SCRATCH}/layers.cmake "set(LAYERS low high)
set(USES_low \"\")\nset(FILES_low ${SCRATCH}/src/low/Low.cpp)
set(USES_high low)\nset(FILES_high ${SCRATCH}/src/high/High.cpp)\n")
set(expected
    "include/Low.h: layer low does not name high, where High.h stands"
    "include/High.h: a public header includes the internal low/Inner.h"
    "include/High.h: \"Missing.h\" is not found"
    "include/Stray.h: belongs to no layer"
    "src/low/Low.cpp: <unistd.h> is a system header"
    "src/low/Low.cpp: '#if defined(_WIN32)' asks for the operating system"
    "tools/tool.cpp: includes \"low/Inner.h\""
    "7 faults in 6 files")

execute_process(COMMAND ${CMAKE_COMMAND} -DROOT=${SCRATCH} -DLAYERS=${SCRATCH}/layers.cmake -P ${CHECK}
    RESULT_VARIABLE result ERROR_VARIABLE output OUTPUT_VARIABLE output)
if(result EQUAL 0)
    message(FATAL_ERROR "the check passed:\n${output}")
endif()
foreach(line IN LISTS expected)
    string(FIND "${output}" "${line}" at)
    if(at EQUAL -1)
        message(FATAL_ERROR "not reported: ${line}\n${output}")
    endif()
endforeach()
