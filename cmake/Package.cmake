# What a program that uses the installed libraries finds them by: a CMake package and a pkg-config
# file for each. They locate the prefix from where they lie, so that it can be moved.
include(CMakePackageConfigHelpers)

set(package_dir "${CMAKE_INSTALL_LIBDIR}/cmake/Quarry")
set(pkgconfig_dir "${CMAKE_INSTALL_LIBDIR}/pkgconfig")

install(
  EXPORT QuarryTargets
  NAMESPACE Quarry::
  DESTINATION "${package_dir}")

configure_package_config_file(
  cmake/QuarryConfig.cmake.in "${PROJECT_BINARY_DIR}/QuarryConfig.cmake"
  INSTALL_DESTINATION "${package_dir}")
write_basic_package_version_file(
  "${PROJECT_BINARY_DIR}/QuarryConfigVersion.cmake"
  COMPATIBILITY SameMajorVersion)
install(FILES "${PROJECT_BINARY_DIR}/QuarryConfig.cmake"
              "${PROJECT_BINARY_DIR}/QuarryConfigVersion.cmake" DESTINATION "${package_dir}")

# The prefix as a pkg-config file sees it from its own folder; a folder that the builder gave with an
# absolute path keeps it.
file(RELATIVE_PATH pkgconfig_prefix "${CMAKE_INSTALL_FULL_LIBDIR}/pkgconfig"
     "${CMAKE_INSTALL_PREFIX}")
string(REGEX REPLACE "/$" "" pkgconfig_prefix "${pkgconfig_prefix}")
cmake_path(ABSOLUTE_PATH CMAKE_INSTALL_LIBDIR BASE_DIRECTORY "\${prefix}" OUTPUT_VARIABLE
           pkgconfig_libdir)
cmake_path(ABSOLUTE_PATH CMAKE_INSTALL_INCLUDEDIR BASE_DIRECTORY "\${prefix}" OUTPUT_VARIABLE
           pkgconfig_includedir)

foreach(name plinth quarry quarrysource)
  configure_file("cmake/${name}.pc.in" "${PROJECT_BINARY_DIR}/${name}-1.0.pc" @ONLY)
  install(FILES "${PROJECT_BINARY_DIR}/${name}-1.0.pc" DESTINATION "${pkgconfig_dir}")
endforeach()
