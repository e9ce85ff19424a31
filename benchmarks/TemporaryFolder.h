/// A folder that is there as long as its object.
#pragma once

#include <cstdlib>
#include <filesystem>
#include <stdexcept>
#include <string>
#include <system_error>

namespace QuarryBenchmarks {

class TemporaryFolder {
 public:
  TemporaryFolder() : path(std::filesystem::temp_directory_path() / "quarry-benchmarks-XXXXXX") {
    if (mkdtemp(path.data()) == nullptr) throw std::runtime_error("cannot make " + path);
  }
  TemporaryFolder(const TemporaryFolder&) = delete;
  TemporaryFolder& operator=(const TemporaryFolder&) = delete;
  ~TemporaryFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(path, ignored);
  }

  const std::string& getPath() const { return path; }

 private:
  std::string path;
};

}  // namespace QuarryBenchmarks
