# How the project's targets are made. A layer is an object library that names the layers it may use;
# the static and the shared library are made of all layers.

# The floors, lowest first. A layer may name only layers that stand before it.
set(ZN_FLOORS platform foundation system compression values markup variables dataset message)

find_package(Threads REQUIRED)

# Some 32-bit machines have atomic operations on 64 bits from a library of the compiler.
include(CheckCXXSourceCompiles)
check_cxx_source_compiles("#include <atomic>
    #include <cstdint>
    std::atomic<std::uint64_t> number;
    int main() { return static_cast<int>(number.load()); }" ZN_HAS_ATOMIC_64)
if(NOT ZN_HAS_ATOMIC_64)
    set(ZN_ATOMIC_LIBRARY -latomic)
endif()

add_library(zn_warnings INTERFACE)
if(CMAKE_CXX_COMPILER_ID MATCHES "GNU|Clang")
    target_compile_options(zn_warnings INTERFACE -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wsign-conversion
        -Wnon-virtual-dtor -Wold-style-cast -Woverloaded-virtual $<$<BOOL:${ZN_WERROR}>:-Werror>)
elseif(MSVC)
    target_compile_options(zn_warnings INTERFACE /W4 /utf-8 $<$<BOOL:${ZN_WERROR}>:/WX>)
endif()
# GCC 12 warns of an overlap that cannot be inside its own std::string::operator+ once that is inlined.
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND CMAKE_CXX_COMPILER_VERSION VERSION_LESS 13)
    target_compile_options(zn_warnings INTERFACE -Wno-restrict)
endif()

# What the library's own sources and its tests see: the public headers and the internal ones in src/.
add_library(zn_options INTERFACE)
target_link_libraries(zn_options INTERFACE zn_warnings)
target_include_directories(zn_options INTERFACE ${PROJECT_SOURCE_DIR}/include ${PROJECT_SOURCE_DIR}/src)

# zn_layer(NAME [USES layer...] SOURCES file... [HEADERS public header...])
#   USES     every layer whose headers it includes; tests/project/check_floors.cmake holds it to that
#   HEADERS  public headers of this layer that have no source of the same name in SOURCES
function(zn_layer name)
    cmake_parse_arguments(arg "" "" "USES;SOURCES;HEADERS" ${ARGN})
    list(FIND ZN_FLOORS ${name} floor)
    if(floor EQUAL -1)
        message(FATAL_ERROR "layer ${name} has no floor in ZN_FLOORS")
    endif()
    foreach(used IN LISTS arg_USES)
        list(FIND ZN_FLOORS ${used} below)
        if(below EQUAL -1 OR NOT below LESS floor)
            message(FATAL_ERROR "layer ${name} may not use ${used}: it does not stand on a lower floor")
        endif()
    endforeach()

    add_library(zn_${name} OBJECT ${arg_SOURCES})
    target_link_libraries(zn_${name} PRIVATE zn_options)
    # Both libraries are made of the same objects; only Windows asks at compile time what is exported.
    target_compile_definitions(zn_${name} PRIVATE $<$<PLATFORM_ID:Windows>:ZN_BUILD_SHARED>)

    list(TRANSFORM arg_SOURCES PREPEND ${CMAKE_CURRENT_SOURCE_DIR}/ REGEX "^[^/$]")
    list(TRANSFORM arg_HEADERS PREPEND ${PROJECT_SOURCE_DIR}/include/)
    set_property(GLOBAL APPEND PROPERTY ZN_LAYERS ${name})
    set_property(GLOBAL APPEND_STRING PROPERTY ZN_LAYER_TABLE
        "list(APPEND LAYERS ${name})\nset(USES_${name} \"${arg_USES}\")\nset(FILES_${name} \"${arg_SOURCES};${arg_HEADERS}\")\n")
endfunction()

# The libraries ZnClassLib::static and ZnClassLib::shared from all layers, and the layer table for the check of the floors.
function(zn_make_libraries)
    get_property(layers GLOBAL PROPERTY ZN_LAYERS)
    get_property(table GLOBAL PROPERTY ZN_LAYER_TABLE)
    file(WRITE ${PROJECT_BINARY_DIR}/layers.cmake "${table}")
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
        target_link_libraries(ZnClassLib_${kind} PUBLIC Threads::Threads ${ZN_ATOMIC_LIBRARY} $<$<PLATFORM_ID:Windows>:ws2_32>)
        set_target_properties(ZnClassLib_${kind} PROPERTIES LINKER_LANGUAGE CXX
            OUTPUT_NAME ZnClassLib EXPORT_NAME ${kind} VERSION ${PROJECT_VERSION} SOVERSION ${PROJECT_VERSION_MAJOR})
    endforeach()
    target_compile_definitions(ZnClassLib_shared INTERFACE ZN_USE_SHARED)
    if(WIN32) # where the shared library's import library has the plain name
        set_target_properties(ZnClassLib_static PROPERTIES OUTPUT_NAME ZnClassLib_static)
    endif()
    if(BUILD_SHARED_LIBS)
        add_library(ZnClassLib::ZnClassLib ALIAS ZnClassLib_shared)
    else()
        add_library(ZnClassLib::ZnClassLib ALIAS ZnClassLib_static)
    endif()
endfunction()

# zn_program(NAME SOURCES file... [LIBRARIES lib...]): a program that sees the public headers only.
function(zn_program name)
    cmake_parse_arguments(arg "" "" "SOURCES;LIBRARIES" ${ARGN})
    add_executable(${name} ${arg_SOURCES})
    target_link_libraries(${name} PRIVATE zn_warnings ZnClassLib::static ${arg_LIBRARIES})
endfunction()

# zn_test(NAME SOURCES file... [LIBRARIES lib...]): one test program on the static library. ctest lists each of its
# cases as <folder>.<suite>.<case>.
function(zn_test name)
    cmake_parse_arguments(arg "" "" "SOURCES;LIBRARIES" ${ARGN})
    add_executable(${name} ${arg_SOURCES})
    target_include_directories(${name} PRIVATE ${PROJECT_SOURCE_DIR}/tests)
    target_compile_definitions(${name} PRIVATE ZN_TEST_DATA="${PROJECT_SOURCE_DIR}/tests/data")
    target_link_libraries(${name} PRIVATE zn_options ZnClassLib::static GTest::gtest_main ${arg_LIBRARIES})
    get_filename_component(folder ${CMAKE_CURRENT_SOURCE_DIR} NAME)
    gtest_discover_tests(${name} TEST_PREFIX ${folder}. DISCOVERY_TIMEOUT 60 PROPERTIES TIMEOUT 600)
endfunction()
