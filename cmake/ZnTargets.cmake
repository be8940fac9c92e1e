# How the project's targets are made. A layer is an object library that names the layers it may use;
# the static and the shared library are made of all layers.

add_library(zn_options INTERFACE)
target_include_directories(zn_options INTERFACE
    $<BUILD_INTERFACE:${PROJECT_SOURCE_DIR}/include> $<BUILD_INTERFACE:${PROJECT_SOURCE_DIR}/src>)
if(CMAKE_CXX_COMPILER_ID MATCHES "GNU|Clang")
    target_compile_options(zn_options INTERFACE -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wsign-conversion
        -Wnon-virtual-dtor -Wold-style-cast -Woverloaded-virtual $<$<BOOL:${ZN_WERROR}>:-Werror>)
endif()
find_package(Threads REQUIRED)

# zn_layer(NAME USES layer... SOURCES file...)
function(zn_layer name)
    cmake_parse_arguments(arg "" "" "USES;SOURCES" ${ARGN})
    add_library(zn_${name} OBJECT ${arg_SOURCES})
    target_link_libraries(zn_${name} PRIVATE zn_options)
    set_property(GLOBAL APPEND PROPERTY ZN_LAYERS ${name})
    set_property(GLOBAL PROPERTY ZN_LAYER_${name}_USES "${arg_USES}")
endfunction()

function(zn_make_libraries)
    get_property(layers GLOBAL PROPERTY ZN_LAYERS)
    set(objects "")
    foreach(layer IN LISTS layers)
        list(APPEND objects $<TARGET_OBJECTS:zn_${layer}>)
    endforeach()
    foreach(kind static shared)
        string(TOUPPER ${kind} type)
        add_library(ZnClassLib_${kind} ${type} ${objects})
        add_library(ZnClassLib::${kind} ALIAS ZnClassLib_${kind})
        target_include_directories(ZnClassLib_${kind} INTERFACE
            $<BUILD_INTERFACE:${PROJECT_SOURCE_DIR}/include> $<INSTALL_INTERFACE:${CMAKE_INSTALL_INCLUDEDIR}/ZnClassLib>)
        target_compile_features(ZnClassLib_${kind} INTERFACE cxx_std_20)
        target_link_libraries(ZnClassLib_${kind} PUBLIC Threads::Threads)
        set_target_properties(ZnClassLib_${kind} PROPERTIES
            OUTPUT_NAME ZnClassLib EXPORT_NAME ${kind} VERSION ${PROJECT_VERSION} SOVERSION ${PROJECT_VERSION_MAJOR})
    endforeach()
endfunction()

# zn_test(NAME SOURCES file... [LIBRARIES lib...]): one test program on the static library, its cases listed with ctest
function(zn_test name)
    cmake_parse_arguments(arg "" "" "SOURCES;LIBRARIES" ${ARGN})
    add_executable(${name} ${arg_SOURCES})
    target_include_directories(${name} PRIVATE ${PROJECT_SOURCE_DIR}/tests)
    target_compile_definitions(${name} PRIVATE ZN_TEST_DATA="${PROJECT_SOURCE_DIR}/tests/data")
    target_link_libraries(${name} PRIVATE zn_options ZnClassLib::static GTest::gtest_main ${arg_LIBRARIES})
    gtest_discover_tests(${name} DISCOVERY_TIMEOUT 60)
endfunction()
