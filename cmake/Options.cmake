# What a builder can choose, and what holds for every target.

set(QUARRY_QT 6 CACHE STRING "Major version of the Qt Core that the tests run within: 6 or 5")
set_property(CACHE QUARRY_QT PROPERTY STRINGS 6 5)
option(QUARRY_TOOL "Build the command-line tool" ON)
option(QUARRY_TESTS "Build the tests" OFF)
set(QUARRY_TEST_OPTIONS "" CACHE STRING "Further compiler options of the tests alone")
option(QUARRY_WHOLE_TEST_PROGRAMS "Run each test program as one test" OFF)
option(QUARRY_PRECOMPILED_HEADERS "Compile large foreign headers once for each program" OFF)
option(QUARRY_FUZZ "Build the fuzz targets with libFuzzer" OFF)
option(QUARRY_GUARD_PAGES "Give the test programs a heap that ends at forbidden pages" OFF)
option(QUARRY_EXAMPLES "Build the examples" ${QUARRY_TESTS})
option(QUARRY_VIEWER "Build the example that shows a document in a window" ${QUARRY_TESTS})
option(QUARRY_BENCHMARKS "Build the benchmarks" OFF)
option(QUARRY_WERROR "Treat warnings as errors" OFF)

if(NOT CMAKE_BUILD_TYPE AND NOT CMAKE_CONFIGURATION_TYPES)
  set(CMAKE_BUILD_TYPE Release CACHE STRING "Kind of build" FORCE)
endif()

set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_CXX_VISIBILITY_PRESET hidden)
set(CMAKE_VISIBILITY_INLINES_HIDDEN ON)

# The build tree has the shape of an installed one.
set(CMAKE_RUNTIME_OUTPUT_DIRECTORY "${PROJECT_BINARY_DIR}/bin")
set(CMAKE_LIBRARY_OUTPUT_DIRECTORY "${PROJECT_BINARY_DIR}/lib")
set(CMAKE_ARCHIVE_OUTPUT_DIRECTORY "${PROJECT_BINARY_DIR}/lib")

find_program(QUARRY_CCACHE ccache)
mark_as_advanced(QUARRY_CCACHE)
if(QUARRY_CCACHE AND NOT CMAKE_CXX_COMPILER_LAUNCHER)
  set(CMAKE_CXX_COMPILER_LAUNCHER "${QUARRY_CCACHE}")
endif()
