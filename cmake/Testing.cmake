# Test programs: linfit_add_test(name SOURCES ... LIBRARIES ... [DEFINITIONS ...]) makes one GoogleTest
# program and registers each of its tests with ctest; on Windows the whole program, since each start under wine takes
# half a second.
if(CMAKE_CROSSCOMPILING)
  add_subdirectory(/usr/src/googletest ${PROJECT_BINARY_DIR}/googletest EXCLUDE_FROM_ALL SYSTEM)
else()
  find_package(GTest REQUIRED)
endif()
include(GoogleTest)

function(linfit_add_test name)
  cmake_parse_arguments(ARG "" "" "SOURCES;LIBRARIES;DEFINITIONS;PROPERTIES" ${ARGN})
  add_executable(${name} ${ARG_SOURCES})
  target_link_libraries(${name} PRIVATE linfit_flags tests_root ${ARG_LIBRARIES} GTest::gtest GTest::gtest_main)
  linfit_windows_manifest(${name})
  target_compile_definitions(${name} PRIVATE ${ARG_DEFINITIONS})
  set_target_properties(${name} PROPERTIES RUNTIME_OUTPUT_DIRECTORY ${PROJECT_BINARY_DIR}/tests)
  # Under sanitizers half of the compiling would be the optimizer.
  target_compile_options(${name} PRIVATE $<$<CONFIG:RelWithDebInfo>:-O0>)
  if(WIN32)
    add_test(NAME ${name} COMMAND ${name})
    set_tests_properties(${name} PROPERTIES TIMEOUT 300 ${ARG_PROPERTIES})
  else()
    gtest_discover_tests(${name} DISCOVERY_MODE PRE_TEST DISCOVERY_TIMEOUT 60
                         PROPERTIES TIMEOUT 120 ${ARG_PROPERTIES})
  endif()
endfunction()
