# What every target of ours is built with.
function(tolen_target target)
  target_compile_options(${target} PRIVATE
    -Wall -Wextra -Wpedantic -Wconversion -Wshadow -Werror
    # The optimiser of GCC 12 sees overlapping copies in "a" + std::string, where there are none.
    $<$<CXX_COMPILER_ID:GNU>:-Wno-restrict>)
  if(TOLEN_SANITIZE)
    target_compile_options(${target} PRIVATE
      -fsanitize=${TOLEN_SANITIZE} -fno-omit-frame-pointer -fno-sanitize-recover=all -g1)
    target_link_options(${target} PRIVATE -fsanitize=${TOLEN_SANITIZE})
    if(TOLEN_SANITIZE MATCHES thread AND CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
      # The stack of calls would be written down at every allocation, which takes gigabytes where
      # graphs are deep. Without it reports name the innermost function alone.
      target_compile_options(${target} PRIVATE --param=tsan-instrument-func-entry-exit=0)
    endif()
  endif()
endfunction()

# A test program from all sources of one folder of tests/. The argument behind LOCK names what only
# one test of the machine can have at a time, such as a port; the one behind FIXTURE what other tests
# set up before.
function(tolen_test_program name folder)
  cmake_parse_arguments(PARSE_ARGV 2 test "" "LOCK;FIXTURE" "")
  file(GLOB sources CONFIGURE_DEPENDS ${folder}/*.cpp)
  if(NOT sources)
    return()
  endif()
  add_executable(${name} ${sources})
  tolen_target(${name})
  target_link_libraries(${name} PRIVATE ${test_UNPARSED_ARGUMENTS} TolenTestPaths GTest::gmock_main)
  set(properties "")
  if(test_LOCK)
    list(APPEND properties RESOURCE_LOCK ${test_LOCK})
  endif()
  if(test_FIXTURE)
    list(APPEND properties FIXTURES_REQUIRED ${test_FIXTURE})
  endif()
  if(properties)
    list(PREPEND properties PROPERTIES)
  endif()
  gtest_discover_tests(${name} DISCOVERY_MODE PRE_TEST ${properties})
endfunction()
