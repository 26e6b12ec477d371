# SPDX-License-Identifier: GPL-3.0-or-later

# The warnings every line of ours must pass.
add_library(tessaloom_warnings INTERFACE)
target_compile_options(tessaloom_warnings INTERFACE -Wall -Wextra -Wconversion -Werror)
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND CMAKE_CXX_COMPILER_VERSION VERSION_LESS 13)
    # GCC 12 sees overlapping copies in std::string's operator+ that aren't there (its bug 105651).
    target_compile_options(tessaloom_warnings INTERFACE -Wno-restrict)
endif()

# One library per folder of src/, named after it: tessaloom_library(core SOURCES … DEPENDS …).
# DEPENDS are public (seen by whoever uses the folder), PRIVATE_DEPENDS stay inside it.
function(tessaloom_library name)
    cmake_parse_arguments(ARG "" "" "SOURCES;DEPENDS;PRIVATE_DEPENDS" ${ARGN})
    add_library(${name} STATIC ${ARG_SOURCES})
    target_include_directories(${name} PUBLIC ${CMAKE_SOURCE_DIR}/src)
    target_link_libraries(${name} PUBLIC ${ARG_DEPENDS} PRIVATE tessaloom_warnings ${ARG_PRIVATE_DEPENDS})
endfunction()

function(tessaloom_executable name)
    cmake_parse_arguments(ARG "" "" "SOURCES;DEPENDS" ${ARGN})
    add_executable(${name} ${ARG_SOURCES})
    target_link_libraries(${name} PRIVATE tessaloom_warnings ${ARG_DEPENDS})
    set_target_properties(${name} PROPERTIES RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR})
endfunction()

# A GoogleTest program for one folder of tests/, every TEST in it a CTest case.
# Its main (tests/support/TestMain.cpp) runs a QGuiApplication without a display. ENVIRONMENT is set for each case.
function(tessaloom_test name)
    cmake_parse_arguments(ARG "" "TIMEOUT;ENVIRONMENT" "SOURCES;DEPENDS" ${ARGN})
    if(NOT ARG_TIMEOUT)
        set(ARG_TIMEOUT 60)
    endif()
    add_executable(${name}_tests ${ARG_SOURCES})
    target_include_directories(${name}_tests PRIVATE ${CMAKE_SOURCE_DIR}/tests)
    target_link_libraries(${name}_tests PRIVATE tessaloom_warnings test_support ${ARG_DEPENDS})
    gtest_discover_tests(${name}_tests DISCOVERY_MODE PRE_TEST TEST_PREFIX ${name}. PROPERTIES
                          TIMEOUT ${ARG_TIMEOUT} ENVIRONMENT "${ARG_ENVIRONMENT}")
endfunction()
