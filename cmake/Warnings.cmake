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
  if(QUARRY_WERROR)
    target_compile_options(${target} PRIVATE -Werror)
  endif()
endfunction()
