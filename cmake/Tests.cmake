include(GoogleTest)

# What the tests call as the tool. Where an emulator runs the programs, that is a script.
set(QUARRY_TOOL_COMMAND "$<TARGET_FILE:QuarryTool>")
if(CMAKE_CROSSCOMPILING_EMULATOR)
  set(QUARRY_TOOL_COMMAND "${PROJECT_BINARY_DIR}/quarry-emulated")
  list(JOIN CMAKE_CROSSCOMPILING_EMULATOR " " emulator)
  file(GENERATE OUTPUT "${QUARRY_TOOL_COMMAND}"
       CONTENT "#!/bin/sh\nexec ${emulator} $<TARGET_FILE:QuarryTool> \"$@\"\n"
       FILE_PERMISSIONS OWNER_READ OWNER_WRITE OWNER_EXECUTE)
endif()

# Registers a test program as <parts> tests, which together run all that is in it, or as one.
function(quarry_add_test_parts name parts)
  if(NOT parts)
    add_test(NAME ${name} COMMAND ${name} --gtest_brief=1)
    set_tests_properties(${name} PROPERTIES TIMEOUT 600)
    return()
  endif()
  math(EXPR last "${parts} - 1")
  foreach(part RANGE ${last})
    add_test(NAME ${name}.${part} COMMAND ${name} --gtest_brief=1)
    set_tests_properties(
      ${name}.${part} PROPERTIES ENVIRONMENT "GTEST_TOTAL_SHARDS=${parts};GTEST_SHARD_INDEX=${part}"
                                 TIMEOUT 600)
  endforeach()
endfunction()

# quarry_add_tests(<name> [GERMAN] [PARTS <number>] SOURCES <file>... LIBRARIES <target>...)
#
# Makes one test program and registers each of its tests, or the program as one test where starting
# it for each would take longer than the tests. A program that runs for long is then run in PARTS, so
# that no core waits for it in the end. With GERMAN, the whole program runs once more in an
# application whose locale writes a comma for the decimal point, unless a sanitizer watches it: that
# is slow, and what a locale changes are results.
function(quarry_add_tests name)
  cmake_parse_arguments(PARSE_ARGV 1 arg "GERMAN" "PARTS" "SOURCES;LIBRARIES")

  add_executable(${name})
  target_sources(${name} PRIVATE ${arg_SOURCES})
  target_link_libraries(${name} PRIVATE ${arg_LIBRARIES} TestSupport)
  target_compile_definitions(${name} PRIVATE TEST_DATA_DIR="${PROJECT_SOURCE_DIR}/tests/data")
  if(TARGET QuarryTool)
    target_compile_definitions(${name} PRIVATE QUARRY_TOOL_PATH="${QUARRY_TOOL_COMMAND}")
    add_dependencies(${name} QuarryTool)
  endif()
  if(QUARRY_GUARD_PAGES)
    target_sources(${name} PRIVATE "${PROJECT_SOURCE_DIR}/tests/guards/GuardedHeap.cpp"
                                   "${PROJECT_SOURCE_DIR}/tests/guards/GuardedHeapTest.cpp")
  endif()
  quarry_enable_warnings(${name})
  if(QUARRY_PRECOMPILED_HEADERS)
    target_precompile_headers(${name} REUSE_FROM TestSupport)
  endif()

  if(QUARRY_WHOLE_TEST_PROGRAMS)
    quarry_add_test_parts(${name} "${arg_PARTS}")
  else()
    gtest_discover_tests(
      ${name}
      DISCOVERY_MODE PRE_TEST
      DISCOVERY_TIMEOUT 60
      PROPERTIES TIMEOUT 120)
  endif()

  if(arg_GERMAN AND NOT CMAKE_CXX_FLAGS MATCHES "-fsanitize")
    add_test(NAME ${name}.German COMMAND ${name} --application --expect-decimal-comma
                                         --gtest_brief=1)
    set_tests_properties(
      ${name}.German
      PROPERTIES FIXTURES_REQUIRED GermanLocale
                 ENVIRONMENT "LC_ALL=de_DE.UTF-8;LOCPATH=${PROJECT_BINARY_DIR}/locale"
                 TIMEOUT 600)
  endif()
endfunction()
