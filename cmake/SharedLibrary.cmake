# Gives a shared library its fixed name, which is its SONAME too, and the list of what it exports.
function(quarry_finish_library target)
  set(exports "${CMAKE_CURRENT_SOURCE_DIR}/exports.map")
  set_target_properties(
    ${target}
    PROPERTIES OUTPUT_NAME ${target}-${PROJECT_VERSION_MAJOR}.${PROJECT_VERSION_MINOR}
               LINKER_LANGUAGE CXX
               LINK_DEPENDS "${exports}")
  # The library calls its own functions directly, not through a table that others could change.
  target_link_options(${target} PRIVATE "LINKER:--version-script=${exports}"
                                        "LINKER:-Bsymbolic-functions")
  target_compile_features(${target} INTERFACE cxx_std_17)
  quarry_enable_hardening(${target})
  add_library(Quarry::${target} ALIAS ${target})

  install(
    TARGETS ${target}
    EXPORT QuarryTargets
    LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}
    FILE_SET HEADERS DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})
endfunction()
