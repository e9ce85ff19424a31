#include "TemporaryFolder.h"

#include <gtest/gtest.h>
#include <zlib.h>

#include <fstream>
#include <iterator>
#include <stdexcept>

namespace TestSupport {

namespace fs = std::filesystem;

TemporaryFolder::TemporaryFolder() {
  std::string pattern = (fs::temp_directory_path() / "quarry-test-XXXXXX").string();
  if (mkdtemp(pattern.data()) == nullptr) throw std::runtime_error("no temporary folder");
  path = pattern;
}

TemporaryFolder::~TemporaryFolder() {
  std::error_code ignored;
  fs::remove_all(path, ignored);
}

std::string TemporaryFolder::getPath(const std::string& name) const {
  return name.empty() ? path.string() : (path / name).string();
}

std::string TemporaryFolder::write(const std::string& name, const std::string& bytes) const {
  const fs::path target = path / name;
  fs::create_directories(target.parent_path());
  std::ofstream file(target, std::ios::binary);
  file << bytes;
  file.close();
  if (!file) throw std::runtime_error("cannot write " + target.string());
  return target.string();
}

std::string TemporaryFolder::writeCompressed(const std::string& name,
                                             const std::string& bytes) const {
  const std::string target = write(name, "");
  gzFile file = gzopen(target.c_str(), "w");
  if (file == nullptr) throw std::runtime_error("cannot compress " + target);
  const int written = gzwrite(file, bytes.data(), static_cast<unsigned>(bytes.size()));
  if (gzclose(file) != Z_OK || written != static_cast<int>(bytes.size())) {
    throw std::runtime_error("cannot compress " + target);
  }
  return target;
}

std::string TemporaryFolder::read(const std::string& name) const {
  std::ifstream file(path / name, std::ios::binary);
  EXPECT_TRUE(file.is_open()) << name;
  return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

WorkingDirectory::WorkingDirectory(const std::string& folder) : previous(fs::current_path()) {
  fs::current_path(folder);
}

WorkingDirectory::~WorkingDirectory() { fs::current_path(previous); }

}  // namespace TestSupport
