# The project's vocabulary for targets. Every CMakeLists.txt below the top one speaks only these functions, so that what a
# library, a test, a benchmark or a fuzzer is, is said once, here.

include(GNUInstallDirs)

# Warnings are ours alone: they never reach a consumer's compile line.
add_library(quillbeam_warnings INTERFACE)
target_compile_options(quillbeam_warnings INTERFACE -Wall -Wextra -Wpedantic -Wconversion -Wshadow)
if(QUILLBEAM_WARNINGS_AS_ERRORS)
    target_compile_options(quillbeam_warnings INTERFACE -Werror)
endif()

# quillbeam_add_library(<Name> [DEPENDS <targets>...])
#
# One library target of the architecture's table, with the alias QuillbeamAPI::<Name>. Its folder then names its files
# with quillbeam_sources. DEPENDS are public: what its headers include.
function(quillbeam_add_library name)
    cmake_parse_arguments(arg "" "" "DEPENDS" ${ARGN})
    add_library(${name})
    add_library(QuillbeamAPI::${name} ALIAS ${name})
    set_target_properties(${name} PROPERTIES
        OUTPUT_NAME "quillbeam_${name}"
        EXPORT_NAME ${name}
        VERSION ${PROJECT_VERSION}
        SOVERSION ${PROJECT_VERSION_MAJOR}
        CXX_VISIBILITY_PRESET hidden
        VISIBILITY_INLINES_HIDDEN ON
        POSITION_INDEPENDENT_CODE ON)
    target_compile_features(${name} PUBLIC cxx_std_20)
    target_link_libraries(${name} PUBLIC ${arg_DEPENDS} PRIVATE $<BUILD_INTERFACE:quillbeam_warnings>)
    set_property(GLOBAL APPEND PROPERTY QUILLBEAM_LIBRARIES ${name})
endfunction()

# quillbeam_sources(<Name> HEADERS <public headers>... [SOURCES <files>...])
#
# Adds the files of the current folder to a library; the headers are installed under their path from the project's root,
# which is also how they are included: "platform/url/URL.hpp".
function(quillbeam_sources name)
    cmake_parse_arguments(arg "" "" "HEADERS;SOURCES" ${ARGN})
    if(arg_SOURCES)
        list(TRANSFORM arg_SOURCES PREPEND "${CMAKE_CURRENT_SOURCE_DIR}/")
        target_sources(${name} PRIVATE ${arg_SOURCES})
    endif()
    if(NOT arg_HEADERS)
        return()
    endif()
    list(TRANSFORM arg_HEADERS PREPEND "${CMAKE_CURRENT_SOURCE_DIR}/")
    target_sources(${name} PUBLIC FILE_SET HEADERS BASE_DIRS "${PROJECT_SOURCE_DIR}" FILES ${arg_HEADERS})
endfunction()

# quillbeam_add_test(<name> SOURCES <files>... LIBRARIES <targets>... [CONCURRENT])
#
# One GoogleTest program; each of its cases is a ctest test named <name>.<suite>.<case>. CONCURRENT marks the cases that
# the thread sanitizer run repeats.
function(quillbeam_add_test name)
    if(NOT QUILLBEAM_BUILD_TESTS)
        return()
    endif()
    cmake_parse_arguments(arg "CONCURRENT" "" "SOURCES;LIBRARIES" ${ARGN})
    add_executable(test_${name} ${arg_SOURCES})
    target_include_directories(test_${name} PRIVATE "${PROJECT_SOURCE_DIR}")
    target_link_libraries(test_${name} PRIVATE ${arg_LIBRARIES} quillbeam_warnings GTest::gmock_main)
    set(label "sequential")
    if(arg_CONCURRENT)
        set(label "concurrent")
        set_property(GLOBAL APPEND PROPERTY QUILLBEAM_CONCURRENT_TESTS test_${name})
    endif()
    gtest_discover_tests(test_${name}
        TEST_PREFIX "${name}."
        DISCOVERY_MODE PRE_TEST
        PROPERTIES LABELS ${label} TIMEOUT 300)
endfunction()

# quillbeam_add_benchmark(<name> SOURCES <files>... LIBRARIES <targets>...)
#
# One benchmark program, named bench_<name>, that prints ratios against its peers; see benchmarks/README.md.
function(quillbeam_add_benchmark name)
    if(NOT QUILLBEAM_BUILD_BENCHMARKS)
        return()
    endif()
    cmake_parse_arguments(arg "" "" "SOURCES;LIBRARIES" ${ARGN})
    add_executable(bench_${name} ${arg_SOURCES})
    target_include_directories(bench_${name} PRIVATE "${PROJECT_SOURCE_DIR}")
    target_link_libraries(bench_${name} PRIVATE ${arg_LIBRARIES} quillbeam_warnings benchmark::benchmark)
    set_property(GLOBAL APPEND PROPERTY QUILLBEAM_BENCHMARKS bench_${name})
endfunction()

# quillbeam_add_fuzzer(<name> SOURCES <files>... LIBRARIES <targets>...)
#
# One libFuzzer program, named fuzz_<name>; its seeds lie in fuzz/seeds/<name>/. Needs clang (preset `fuzz`).
function(quillbeam_add_fuzzer name)
    if(NOT QUILLBEAM_BUILD_FUZZERS)
        return()
    endif()
    cmake_parse_arguments(arg "" "" "SOURCES;LIBRARIES" ${ARGN})
    add_executable(fuzz_${name} ${arg_SOURCES})
    target_include_directories(fuzz_${name} PRIVATE "${PROJECT_SOURCE_DIR}")
    target_link_libraries(fuzz_${name} PRIVATE ${arg_LIBRARIES} quillbeam_warnings)
    target_link_options(fuzz_${name} PRIVATE -fsanitize=fuzzer)
    set_property(GLOBAL APPEND PROPERTY QUILLBEAM_FUZZERS fuzz_${name})
endfunction()
