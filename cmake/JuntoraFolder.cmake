# The targets of a folder: its archive, and the programs, tests and benchmarks that are made in it.
#
# Every folder has an include root of its own in the build tree, which holds nothing but a link to
# that folder. A target sees its own root and the roots of the folders that it depends on, so that
# including a header of any other folder does not build.

# The folders from the lowest up; each may depend on those before it only. What is not listed here
# (tools, tests, benchmarks) stands above all of them.
set(JUNTORA_LAYERS
    platform
    framework
    messages
    ipc
    common
    setup
    registration
    hub
    bridge
    shell)

function(_juntora_layer name result)
    list(FIND JUNTORA_LAYERS ${name} number)
    if(number EQUAL -1)
        list(LENGTH JUNTORA_LAYERS number)
    endif()
    set(${result} ${number} PARENT_SCOPE)
endfunction()

function(_juntora_check_arrows name)
    _juntora_layer(${name} own)
    list(LENGTH JUNTORA_LAYERS top)
    foreach(folder IN LISTS ARGN)
        _juntora_layer(${folder} other)
        if(own LESS top AND NOT other LESS own)
            message(FATAL_ERROR "${name} must not depend on ${folder}: arrows point downwards only "
                                "(the layers stand in cmake/JuntoraFolder.cmake).")
        endif()
    endforeach()
endfunction()

# Sets `result` to an include root that holds nothing but the folder `source`, under its path from
# the top of the tree.
function(_juntora_include_root source result)
    file(RELATIVE_PATH path "${PROJECT_SOURCE_DIR}" "${source}")
    string(REPLACE "/" "_" name "${path}")
    set(root "${PROJECT_BINARY_DIR}/roots/${name}")
    get_filename_component(folder "${root}/${path}" DIRECTORY)
    file(MAKE_DIRECTORY "${folder}")
    file(CREATE_LINK "${source}" "${root}/${path}" SYMBOLIC)
    set(${result} "${root}" PARENT_SCOPE)
endfunction()

function(_juntora_common_options target)
    target_compile_features(${target} PRIVATE cxx_std_20)
    set_target_properties(${target} PROPERTIES CXX_EXTENSIONS OFF POSITION_INDEPENDENT_CODE ON)
    target_compile_options(${target} PRIVATE -Wall -Wextra -Wpedantic -Wshadow -Wconversion
                                             -Wno-sign-conversion)
    if(JUNTORA_WERROR)
        target_compile_options(${target} PRIVATE -Werror)
    endif()
endfunction()

# juntora_folder(NAME SOURCES file… [DEPENDS folder…] [LIBRARIES library…])
#
# Makes of the calling folder
#   juntora_NAME_headers  its headers and those of DEPENDS, nothing to link;
#   juntora_NAME_objects  its objects, position independent;
#   juntora_NAME          the archive of them, which brings DEPENDS and LIBRARIES with it.
# DEPENDS names folders, LIBRARIES other libraries that the folder's sources use.
function(juntora_folder name)
    cmake_parse_arguments(PARSE_ARGV 1 arg "" "" "SOURCES;DEPENDS;LIBRARIES")
    if(arg_UNPARSED_ARGUMENTS)
        message(FATAL_ERROR "juntora_folder(${name}): not understood: ${arg_UNPARSED_ARGUMENTS}")
    endif()
    _juntora_check_arrows(${name} ${arg_DEPENDS})
    list(TRANSFORM arg_DEPENDS PREPEND "juntora_" OUTPUT_VARIABLE archives)
    list(TRANSFORM archives APPEND "_headers" OUTPUT_VARIABLE headers)
    _juntora_include_root("${CMAKE_CURRENT_SOURCE_DIR}" root)

    add_library(juntora_${name}_headers INTERFACE)
    target_include_directories(juntora_${name}_headers INTERFACE "${root}")
    target_link_libraries(juntora_${name}_headers INTERFACE ${headers})

    if(NOT arg_SOURCES)
        add_library(juntora_${name} INTERFACE)
        target_link_libraries(juntora_${name} INTERFACE juntora_${name}_headers ${archives}
                                                        ${arg_LIBRARIES})
        return()
    endif()
    add_library(juntora_${name}_objects OBJECT ${arg_SOURCES})
    _juntora_common_options(juntora_${name}_objects)
    target_link_libraries(juntora_${name}_objects PRIVATE juntora_${name}_headers ${arg_LIBRARIES})

    add_library(juntora_${name} STATIC $<TARGET_OBJECTS:juntora_${name}_objects>)
    set_target_properties(juntora_${name} PROPERTIES LINKER_LANGUAGE CXX)
    target_link_libraries(juntora_${name} PUBLIC juntora_${name}_headers ${archives}
                                                 ${arg_LIBRARIES})
endfunction()

# An executable of the calling folder: what the kinds below have in common.
macro(_juntora_executable name)
    cmake_parse_arguments(arg "" "TIMEOUT" "SOURCES;DEPENDS;LIBRARIES;LABELS;PROGRAMS" ${ARGN})
    if(arg_UNPARSED_ARGUMENTS)
        message(FATAL_ERROR "${name}: not understood: ${arg_UNPARSED_ARGUMENTS}")
    endif()
    add_executable(${name} ${arg_SOURCES})
    _juntora_common_options(${name})
    list(TRANSFORM arg_DEPENDS PREPEND "juntora_" OUTPUT_VARIABLE archives)
    _juntora_include_root("${CMAKE_CURRENT_SOURCE_DIR}" root)
    target_include_directories(${name} PRIVATE "${root}")
    target_link_libraries(${name} PRIVATE ${archives} ${arg_LIBRARIES})
    # The programs that this one starts; one that is not there (yet) is no error.
    foreach(program IN LISTS arg_PROGRAMS)
        if(TARGET ${program})
            add_dependencies(${name} ${program})
        endif()
    endforeach()
endmacro()

# juntora_program(NAME SOURCES file… [DEPENDS folder…] [LIBRARIES library…] [PROGRAMS program…])
# A program in bin/; the target `programs` builds all of them.
function(juntora_program name)
    _juntora_executable(${name} ${ARGN})
    add_dependencies(programs ${name})
endfunction()

function(_juntora_see_tests target)
    _juntora_include_root("${PROJECT_SOURCE_DIR}/tests" tests)
    target_include_directories(${target} PRIVATE "${tests}")
endfunction()

# juntora_test_program(NAME …): as juntora_program, for a program that only tests start. It may
# include "tests/…".
function(juntora_test_program name)
    _juntora_executable(${name} ${ARGN})
    _juntora_see_tests(${name})
endfunction()

# What every test has, as the arguments of set_tests_properties.
function(_juntora_test_properties result labels timeout)
    if(NOT timeout)
        set(timeout 120)
    endif()
    if(JUNTORA_SANITIZE)
        math(EXPR timeout "${timeout} * 3")
    endif()
    set(${result} "TIMEOUT ${timeout} LABELS \"${labels}\" FIXTURES_REQUIRED juntora_processes \
ENVIRONMENT \"JUNTORA_TEST_BIN=${CMAKE_RUNTIME_OUTPUT_DIRECTORY}\"" PARENT_SCOPE)
endfunction()

# juntora_test(NAME SOURCES file… [DEPENDS folder…] [LIBRARIES library…] [PROGRAMS program…]
#              [LABELS label…] [TIMEOUT seconds, 120 if not given, threefold under a sanitizer])
#
# A GoogleTest program. Each of its cases is a test of its own for ctest, in a process of its own,
# so that they run in parallel and one that falls takes no other with it. JUNTORA_TEST_BIN is the
# folder of the programs; PROGRAMS are built before the test. The labels "long" and "check" keep a
# test out of script/test and put it into script/check.
function(juntora_test name)
    _juntora_executable(${name} ${ARGN})
    _juntora_see_tests(${name})
    target_link_libraries(${name} PRIVATE GTest::gtest_main)
    gtest_discover_tests(${name} TEST_PREFIX "${name}." TEST_LIST cases DISCOVERY_TIMEOUT 60)

    # ctest reads this after the list of cases; properties that are lists don't survive the way
    # through gtest_discover_tests.
    set(properties "${CMAKE_CURRENT_BINARY_DIR}/${name}_properties.cmake")
    _juntora_test_properties(test_properties "${arg_LABELS}" "${arg_TIMEOUT}")
    file(CONFIGURE OUTPUT "${properties}" @ONLY CONTENT [[
foreach(case IN LISTS cases)
    set_tests_properties("${case}" PROPERTIES @test_properties@)
endforeach()
]])
    set_property(DIRECTORY APPEND PROPERTY TEST_INCLUDE_FILES "${properties}")
endfunction()

# juntora_test_run(NAME COMMAND program argument… [LABELS label…] [TIMEOUT seconds])
# One run of a program, a target or a path, as a test: good if it ends with 0.
function(juntora_test_run name)
    cmake_parse_arguments(PARSE_ARGV 1 arg "" "TIMEOUT" "COMMAND;LABELS")
    add_test(NAME ${name} COMMAND ${arg_COMMAND})
    _juntora_test_properties(test_properties "${arg_LABELS}" "${arg_TIMEOUT}")
    cmake_language(EVAL CODE "set_tests_properties(${name} PROPERTIES ${test_properties})")
endfunction()

# juntora_bench(NAME …): as juntora_program, for a program that measures. It may include "tests/…".
function(juntora_bench name)
    _juntora_executable(${name} ${ARGN})
    _juntora_see_tests(${name})
    add_dependencies(benchmarks ${name})
endfunction()

# juntora_fuzzer(NAME SOURCES file… [DEPENDS folder…] [LIBRARIES library…] [PROGRAMS program…])
# The program NAME_fuzz around an entry for libFuzzer (tests/fuzz/Fuzz.h). The preset `fuzz` links it
# with libFuzzer, for script/checks/fuzz to run; elsewhere it can only replay inputs. In either it is
# a test that the inputs in corpus/NAME pass.
function(juntora_fuzzer name)
    file(GLOB corpus CONFIGURE_DEPENDS "${CMAKE_CURRENT_SOURCE_DIR}/corpus/${name}/*")
    if(NOT corpus)
        message(FATAL_ERROR "juntora_fuzzer(${name}): there are no inputs in corpus/${name}.")
    endif()
    _juntora_executable(${name}_fuzz ${ARGN})
    _juntora_see_tests(${name}_fuzz)
    if(JUNTORA_SANITIZE MATCHES "fuzzer")
        target_link_options(${name}_fuzz PRIVATE -fsanitize=fuzzer)
    else()
        target_sources(${name}_fuzz PRIVATE "${PROJECT_SOURCE_DIR}/tests/fuzz/replay.cpp")
    endif()
    juntora_test_run(${name}_fuzz.corpus COMMAND ${name}_fuzz ${corpus})
endfunction()
