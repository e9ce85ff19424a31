# The documents come from anywhere: what is shipped checks its stack and its buffers, and its
# relocations are read-only. Fortified calls need an optimised build.
function(quarry_enable_hardening target)
  set(optimised $<CONFIG:Release,RelWithDebInfo,MinSizeRel>)
  target_compile_options(
    ${target} PRIVATE $<${optimised}:-fstack-protector-strong;-U_FORTIFY_SOURCE;-D_FORTIFY_SOURCE=2>)
  target_link_options(${target} PRIVATE $<${optimised}:LINKER:-z,relro,-z,now>)
endfunction()
