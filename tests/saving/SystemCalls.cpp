#include "SystemCalls.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdarg>
#include <limits>

namespace {

struct State {
  bool isWatching = false;
  Saving::Fault fault = Saving::Fault::NONE;
  std::size_t number = 0;
  int error = 0;
  unsigned long largestWrite = std::numeric_limits<unsigned long>::max();
  std::vector<std::string> names;
};

State state;

/// Notes a call.
/// @return whether it has to fail; `errno` is then set
bool meetsFault(const char* name) {
  if (!state.isWatching) return false;
  state.names.emplace_back(name);
  if (state.fault == Saving::Fault::NONE || state.names.size() != state.number) return false;
  if (state.fault == Saving::Fault::ENDS_PROCESS) _exit(Saving::ENDED_BY_FAULT);
  errno = state.error;
  return true;
}

}  // namespace

namespace Saving {

SystemCalls::SystemCalls(Fault fault, int number, int error) {
  state = State();
  state.fault = fault;
  state.number = static_cast<std::size_t>(number);
  state.error = error;
  state.names.reserve(1000);
  state.isWatching = true;
}

SystemCalls::~SystemCalls() { state.isWatching = false; }

void SystemCalls::setLargestWrite(unsigned long bytes) { state.largestWrite = bytes; }

const std::vector<std::string>& SystemCalls::getNames() const { return state.names; }

}  // namespace Saving

// The linker gives each call of these functions to the one that is called __wrap_, and calls of
// __real_ to the system's.

extern "C" {

int __real_open(const char* path, int flags, ...);
int __real_openat(int folder, const char* path, int flags, ...);
int __real_fstatat(int folder, const char* path, struct stat* status, int flags);
int __real_faccessat(int folder, const char* path, int mode, int flags);
int __real_fstat(int file, struct stat* status);
int __real_fchown(int file, uid_t owner, gid_t group);
int __real_fchmod(int file, mode_t mode);
ssize_t __real_read(int file, void* bytes, size_t size);
ssize_t __real_write(int file, const void* bytes, size_t size);
int __real_fsync(int file);
int __real_close(int file);
int __real_renameat(int oldFolder, const char* oldPath, int newFolder, const char* newPath);
int __real_unlinkat(int folder, const char* path, int flags);

int __wrap_open(const char* path, int flags, ...) {
  va_list arguments;
  va_start(arguments, flags);
  const mode_t mode = (flags & O_CREAT) != 0 ? va_arg(arguments, mode_t) : 0;
  va_end(arguments);
  return meetsFault("open") ? -1 : __real_open(path, flags, mode);
}

int __wrap_openat(int folder, const char* path, int flags, ...) {
  va_list arguments;
  va_start(arguments, flags);
  const mode_t mode = (flags & O_CREAT) != 0 ? va_arg(arguments, mode_t) : 0;
  va_end(arguments);
  return meetsFault("openat") ? -1 : __real_openat(folder, path, flags, mode);
}

int __wrap_fstatat(int folder, const char* path, struct stat* status, int flags) {
  return meetsFault("fstatat") ? -1 : __real_fstatat(folder, path, status, flags);
}

int __wrap_faccessat(int folder, const char* path, int mode, int flags) {
  return meetsFault("faccessat") ? -1 : __real_faccessat(folder, path, mode, flags);
}

int __wrap_fstat(int file, struct stat* status) {
  return meetsFault("fstat") ? -1 : __real_fstat(file, status);
}

int __wrap_fchown(int file, uid_t owner, gid_t group) {
  return meetsFault("fchown") ? -1 : __real_fchown(file, owner, group);
}

int __wrap_fchmod(int file, mode_t mode) {
  return meetsFault("fchmod") ? -1 : __real_fchmod(file, mode);
}

ssize_t __wrap_read(int file, void* bytes, size_t size) {
  return meetsFault("read") ? -1 : __real_read(file, bytes, size);
}

ssize_t __wrap_write(int file, const void* bytes, size_t size) {
  if (meetsFault("write")) return -1;
  return __real_write(file, bytes,
                      state.isWatching ? std::min<size_t>(size, state.largestWrite) : size);
}

int __wrap_fsync(int file) { return meetsFault("fsync") ? -1 : __real_fsync(file); }

/// What is closed is closed, also where closing fails.
int __wrap_close(int file) {
  const bool fails = meetsFault("close");
  const int error = errno;
  const int result = __real_close(file);
  if (!fails) return result;
  errno = error;
  return -1;
}

int __wrap_renameat(int oldFolder, const char* oldPath, int newFolder, const char* newPath) {
  return meetsFault("renameat") ? -1 : __real_renameat(oldFolder, oldPath, newFolder, newPath);
}

int __wrap_unlinkat(int folder, const char* path, int flags) {
  return meetsFault("unlinkat") ? -1 : __real_unlinkat(folder, path, flags);
}

}  // extern "C"
