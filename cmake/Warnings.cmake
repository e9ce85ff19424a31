# Turns on the warnings that the project's own code is kept free of.
function(quarry_enable_warnings target)
  target_compile_options(
    ${target}
    PRIVATE -Wall
            -Wextra
            -Wpedantic
            -Wconversion
            -Wshadow
            -Wnon-virtual-dtor
            -Wold-style-cast
            -Woverloaded-virtual)
  # GCC 12 sees overlapping copies where a character array and a string are put together.
  if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND CMAKE_CXX_COMPILER_VERSION VERSION_LESS 13)
    target_compile_options(${target} PRIVATE -Wno-restrict)
  endif()
  if(QUARRY_WERROR)
    target_compile_options(${target} PRIVATE -Werror)
  endif()
endfunction()
