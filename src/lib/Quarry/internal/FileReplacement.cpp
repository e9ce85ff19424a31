#include "FileReplacement.h"

#include <Plinth/Label.h>

#include "FileAccess.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <climits>
#include <cstring>
#include <utility>

namespace Quarry {

namespace {

constexpr mode_t NEW_FILE_MODE = 0666;    // less what the process masks
constexpr mode_t UNFINISHED_MODE = 0600;  // until it gets the mode of the file that it replaces
constexpr mode_t MODE_BITS = 07777;

/// Returns a name for a new file beside the file `name`, within what a name may have.
std::string nameBeside(const std::string& name, int attempt) {
  constexpr std::size_t LONGEST = 200;
  return "." + name.substr(0, LONGEST) + "." + Plinth::getLabel(static_cast<int>(::getpid())) +
         "-" + Plinth::getLabel(attempt);
}

}  // namespace

FileReplacement::~FileReplacement() {
  if (file >= 0) ::close(file);
  if (!newName.empty()) ::unlinkat(folder, newName.c_str(), 0);
  if (folder >= 0) ::close(folder);
}

bool FileReplacement::write(std::string_view text) {
  return followLinks() && openFolder() && examineTarget() && createFile() && keepOwner() &&
         keepMode() && writeText(text) && flush(file, "flush") && closeFile() && replaceTarget() &&
         flush(folder, "flush the folder of");
}

/// Only the last part of the path: the system follows the links before it.
bool FileReplacement::followLinks() {
  constexpr int MOST_LINKS = 40;
  // The system would take a name with a zero byte for another, shorter one.
  if (target.find('\0') != std::string::npos) return fail("use the name", EINVAL);
  for (int links = 0; links < MOST_LINKS; ++links) {
    char place[PATH_MAX];
    const ssize_t length = ::readlink(target.c_str(), place, sizeof place);
    if (length < 0) return check(errno == EINVAL || errno == ENOENT, "follow the link");
    const std::string_view link(place, static_cast<std::size_t>(length));
    const std::size_t folderEnd = link.starts_with('/') ? 0 : target.rfind('/') + 1;
    target.erase(folderEnd);
    target += link;
  }
  return fail("follow the link", ELOOP);
}

bool FileReplacement::openFolder() {
  const std::size_t nameBegin = target.rfind('/') + 1;  // 0 where there is no slash
  folderPath = nameBegin == 0 ? "." : target.substr(0, nameBegin);
  folder = ::open(folderPath.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
  if (folder >= 0) target.erase(0, nameBegin);
  return check(folder >= 0, "open the folder of");
}

bool FileReplacement::examineTarget() {
  exists = ::fstatat(folder, target.c_str(), &status, AT_SYMLINK_NOFOLLOW) == 0;
  if (!exists) return check(errno == ENOENT, "examine");
  if (S_ISDIR(status.st_mode)) return fail("replace", EISDIR);
  if (!S_ISREG(status.st_mode)) return fail("replace what is no regular file", EINVAL);
  return check(::faccessat(folder, target.c_str(), W_OK, AT_EACCESS) == 0, "write");
}

bool FileReplacement::createFile() {
  constexpr int ATTEMPTS = 100;
  constexpr int FLAGS = O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC;
  const mode_t mode = exists ? UNFINISHED_MODE : NEW_FILE_MODE;
  for (int attempt = 0; attempt < ATTEMPTS; ++attempt) {
    std::string name = nameBeside(target, attempt);
    file = ::openat(folder, name.c_str(), FLAGS, mode);
    if (file >= 0) {
      newName = std::move(name);
      return true;
    }
    if (errno != EEXIST) break;
  }
  return check(false, "make a file beside");
}

/// A file that someone else owns can only be replaced by who may give files away.
bool FileReplacement::keepOwner() {
  struct stat own = {};
  if (!exists) return true;
  if (!check(::fstat(file, &own) == 0, "examine the file beside")) return false;
  if (own.st_uid == status.st_uid && own.st_gid == status.st_gid) return true;
  return check(::fchown(file, status.st_uid, status.st_gid) == 0, "keep the owner of");
}

bool FileReplacement::keepMode() {
  return !exists || check(::fchmod(file, status.st_mode & MODE_BITS) == 0, "keep the mode of");
}

bool FileReplacement::writeText(std::string_view text) {
  return check(writeAll(file, text), "write");
}

/// A file system that knows no flushing has nothing to flush.
bool FileReplacement::flush(int descriptor, const char* action) {
  while (::fsync(descriptor) != 0) {
    if (errno == EINVAL) return true;
    if (errno != EINTR) return check(false, action);
  }
  return true;
}

/// A file is closed also where closing it was interrupted.
bool FileReplacement::closeFile() {
  const int closed = std::exchange(file, -1);
  return check(::close(closed) == 0 || errno == EINTR, "close");
}

bool FileReplacement::replaceTarget() {
  const bool isReplaced = ::renameat(folder, newName.c_str(), folder, target.c_str()) == 0;
  if (isReplaced) newName.clear();
  return check(isReplaced, "replace");
}

bool FileReplacement::check(bool succeeded, const char* action) {
  return succeeded ? true : fail(action, errno);
}

bool FileReplacement::fail(const std::string& action, int error) {
  const std::string place = folder < 0 || folderPath == "." ? target : folderPath + target;
  const char* reason = ::strerrordesc_np(error);  // in no language but the messages' own
  problem =
      "cannot " + action + " '" + place + "': " + (reason != nullptr ? reason : "unknown error");
  return false;
}

}  // namespace Quarry
