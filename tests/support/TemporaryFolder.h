/// A folder for one test's files.
#pragma once

#include <filesystem>
#include <string>

namespace TestSupport {

/// Makes an empty folder and removes it with everything in it.
class TemporaryFolder {
 public:
  TemporaryFolder();
  TemporaryFolder(const TemporaryFolder&) = delete;
  TemporaryFolder& operator=(const TemporaryFolder&) = delete;
  ~TemporaryFolder();

  /// Returns the absolute path of `name` in the folder; of the folder itself for an empty name.
  std::string getPath(const std::string& name = std::string()) const;

  /// Writes a file, making the folders of its name, and returns its absolute path.
  std::string write(const std::string& name, const std::string& bytes) const;

  /// Writes `bytes` gzip-compressed, as they are.
  std::string writeCompressed(const std::string& name, const std::string& bytes) const;

  /// Returns a file's bytes; fails the test when it cannot be read.
  std::string read(const std::string& name) const;

 private:
  std::filesystem::path path;
};

/// Makes `folder` the working directory for as long as this lives.
class WorkingDirectory {
 public:
  explicit WorkingDirectory(const std::string& folder);
  WorkingDirectory(const WorkingDirectory&) = delete;
  WorkingDirectory& operator=(const WorkingDirectory&) = delete;
  ~WorkingDirectory();

 private:
  std::filesystem::path previous;
};

}  // namespace TestSupport
