# Compiles for another architecture, against that architecture's Debian packages in a folder of
# their own; used by scripts/test-foreign:
#
#   QUARRY_FOREIGN_TRIPLET   as in s390x-linux-gnu, the prefix of the compiler
#   QUARRY_FOREIGN_LIBRARIES the folder below lib and usr/lib, where it is not the same
#   QUARRY_FOREIGN_ROOT      the folder that holds the packages
#   QUARRY_FOREIGN_LOADER    the architecture's program loader, where this machine can run it
#   QUARRY_FOREIGN_EMULATOR  what runs its programs, where it cannot
set(parameters QUARRY_FOREIGN_TRIPLET QUARRY_FOREIGN_LIBRARIES QUARRY_FOREIGN_ROOT
               QUARRY_FOREIGN_LOADER QUARRY_FOREIGN_EMULATOR)
list(APPEND CMAKE_TRY_COMPILE_PLATFORM_VARIABLES ${parameters})

set(CMAKE_SYSTEM_NAME Linux)
string(REGEX REPLACE "-.*" "" CMAKE_SYSTEM_PROCESSOR "${QUARRY_FOREIGN_TRIPLET}")
set(CMAKE_CXX_COMPILER "${QUARRY_FOREIGN_TRIPLET}-g++")
set(CMAKE_LIBRARY_ARCHITECTURE "${QUARRY_FOREIGN_LIBRARIES}")
set(CMAKE_SYSROOT "${QUARRY_FOREIGN_ROOT}")
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)

# Qt's own build tools run here.
set(QT_HOST_PATH /usr)
set(ENV{PKG_CONFIG_SYSROOT_DIR} "${QUARRY_FOREIGN_ROOT}")
set(ENV{PKG_CONFIG_LIBDIR}
    "${QUARRY_FOREIGN_ROOT}/usr/lib/${QUARRY_FOREIGN_LIBRARIES}/pkgconfig:${QUARRY_FOREIGN_ROOT}/usr/share/pkgconfig"
)

if(QUARRY_FOREIGN_LOADER)
  set(folders "${QUARRY_FOREIGN_ROOT}/lib/${QUARRY_FOREIGN_LIBRARIES}"
              "${QUARRY_FOREIGN_ROOT}/usr/lib/${QUARRY_FOREIGN_LIBRARIES}")
  set(CMAKE_BUILD_RPATH "${folders}")
  # The old kind of path holds for what the libraries need, too.
  set(CMAKE_EXE_LINKER_FLAGS_INIT
      "-Wl,--disable-new-dtags,--dynamic-linker=${QUARRY_FOREIGN_ROOT}${QUARRY_FOREIGN_LOADER}")
elseif(QUARRY_FOREIGN_EMULATOR)
  set(CMAKE_CROSSCOMPILING_EMULATOR "${QUARRY_FOREIGN_EMULATOR};-L;${QUARRY_FOREIGN_ROOT}")
endif()
