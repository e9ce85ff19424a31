/// Preprocesses a text in memory.
#pragma once

#include <Quarry/internal/FileAccess.h>
#include <Quarry/internal/Preprocessor.h>

#include <string>
#include <string_view>
#include <vector>

namespace Quarry {

/// What the library's preprocessor makes of a text when it stands in a file.
class RewrittenText {
 public:
  /// @param written what the file holds
  explicit RewrittenText(const std::string& written) {
    const std::vector<std::string> noSearchPaths;
    Collector collector{text};
    version =
        Preprocessor(noSearchPaths, collector, ParserLimits(), OneFile(written)).process(NAME);
  }

  const std::string& getText() const { return text; }

  /// Returns the version that the text declares. It is not positive when the text cannot be read,
  /// and when it includes a file, which is not looked for.
  const double& getVersion() const { return version; }

 private:
  /// A name that no include can have: it would end at the quote.
  static constexpr char NAME[] = "\"";

  /// Knows that one file, which is read up to its first zero byte.
  class OneFile {
   public:
    explicit OneFile(const std::string& content) : held(&content) {}

    static std::string locate(const std::vector<std::string>&, const std::string& name) {
      return name == NAME ? name : std::string();
    }
    LoadResult load(const std::string&, const std::string&, std::string& loaded,
                    unsigned long&) const {
      loaded.assign(*held, 0, held->find('\0'));
      return LoadResult::LOADED;
    }

   private:
    const std::string* held;
  };

  /// The preprocessor's sink: keeps what stays.
  struct Collector {
    std::string& kept;

    void beginFile(const std::string&, const std::string&, const std::string&) {}
    void run(std::size_t, std::string_view bytes) { kept += bytes; }
    void comment(std::size_t, std::string_view) {}
    void versionLine(std::size_t, std::string_view) {}
    void include(std::size_t, std::string_view, const std::string&) {}
    void endFile(double) {}
    void unclosedInclude(std::size_t) {}
    void warning(FileDiagnostic, const std::string&) {}
  };

  std::string text;
  double version = 0.0;
};

}  // namespace Quarry
