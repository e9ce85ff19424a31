# The target `site`: all pages of docs/ and all public headers as a web site, <build>/site/html. It is
# there where doxygen is, and installed where it has been made.
find_program(QUARRY_DOXYGEN doxygen)
mark_as_advanced(QUARRY_DOXYGEN)
if(NOT QUARRY_DOXYGEN)
  return()
endif()

# A page for each example: what the comment at its top says, and the program.
file(GLOB examples CONFIGURE_DEPENDS "${PROJECT_SOURCE_DIR}/examples/*.cpp")
set(pages "")
foreach(example ${examples})
  file(STRINGS "${example}" first LIMIT_COUNT 1 REGEX "^// ")
  string(REGEX REPLACE "^// " "" first "${first}")
  get_filename_component(name "${example}" NAME)
  string(APPEND pages "/** @example ${name}\n${first} */\n")
endforeach()
file(CONFIGURE OUTPUT "${PROJECT_BINARY_DIR}/site/examples.dox" CONTENT "${pages}" @ONLY)

configure_file("${PROJECT_SOURCE_DIR}/docs/site/Doxyfile.in" "${PROJECT_BINARY_DIR}/site/Doxyfile"
               @ONLY)
add_custom_target(
  site
  COMMAND "${CMAKE_COMMAND}" -E rm -rf "${PROJECT_BINARY_DIR}/site/html"
  COMMAND "${QUARRY_DOXYGEN}" "${PROJECT_BINARY_DIR}/site/Doxyfile"
  # Nothing leads to the pages of folders, which are called after where the sources lie.
  COMMAND find "${PROJECT_BINARY_DIR}/site/html" -name "dir_*.html" -delete
  COMMENT "Making the site"
  VERBATIM)

install(
  DIRECTORY "${PROJECT_BINARY_DIR}/site/html"
  DESTINATION "${CMAKE_INSTALL_DOCDIR}"
  OPTIONAL)
