# tindrel_test(<name> SOURCES <file>... LINK <library>... [ENVIRONMENT <name>=<value>])
# One GoogleTest program for a folder of tests/; each of its cases becomes a CTest case.
# TINDREL_SOURCE_DIR and TINDREL_TEST_DATA name folders that a test may read.
function(tindrel_test name)
  cmake_parse_arguments(arg "" "ENVIRONMENT" "SOURCES;LINK" ${ARGN})
  if(NOT arg_ENVIRONMENT)
    # No test opens a window on the desktop of whoever runs it.
    set(arg_ENVIRONMENT SDL_VIDEODRIVER=none)
  endif()
  add_executable(${name} ${arg_SOURCES})
  target_include_directories(${name} PRIVATE ${PROJECT_SOURCE_DIR}/tests)
  target_compile_definitions(${name} PRIVATE TINDREL_SOURCE_DIR="${PROJECT_SOURCE_DIR}")
  if(TINDREL_UNITY)
    # The other half of the work on a small source.
    target_precompile_headers(${name} PRIVATE <gtest/gtest.h> <filesystem> <sstream>)
  endif()
  target_link_libraries(${name} PRIVATE ${arg_LINK} GTest::gtest_main tindrel_warnings)
  if(CMAKE_CROSSCOMPILING)
    # All at once: starting the emulator takes longer than most cases.
    add_test(NAME ${name} COMMAND ${name})
    set_tests_properties(${name} PROPERTIES TIMEOUT 300)
  else()
    gtest_discover_tests(${name} DISCOVERY_TIMEOUT 120
      PROPERTIES TIMEOUT 300 ENVIRONMENT ${arg_ENVIRONMENT})
  endif()
endfunction()
