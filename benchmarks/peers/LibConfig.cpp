#include <libconfig.h++>

#include "../Measure.h"
#include "../forms/LibConfig.h"

#include <cstdio>
#include <cstdlib>
#include <memory>
#include <string>

namespace QuarryBenchmarks {

namespace {

using libconfig::Config;
using libconfig::Setting;

double addAll(const Setting& setting) {
  double sum = 0.0;
  switch (setting.getType()) {
    case Setting::TypeInt: return static_cast<int>(setting);
    case Setting::TypeFloat: return setting;
    case Setting::TypeGroup:
    case Setting::TypeArray:
    case Setting::TypeList:
      for (int i = 0; i < setting.getLength(); ++i)
        sum += addAll(setting[i]);
      return sum;
    default: return sum;
  }
}

/// What a Config was written into: it writes to streams of the C library only.
class MemoryStream {
 public:
  explicit MemoryStream(const Config& config) : stream(open_memstream(&data, &size)) {
    config.write(stream);
    std::fclose(stream);
  }
  MemoryStream(const MemoryStream&) = delete;
  MemoryStream& operator=(const MemoryStream&) = delete;
  ~MemoryStream() { std::free(data); }

 private:
  char* data = nullptr;
  std::size_t size = 0;
  std::FILE* stream;
};

/// libconfig's own form into a Config.
struct LibConfig {
  using Tree = Config;

  static Source convert(const Workload& workload) { return {makeLibConfig(workload)}; }

  static void read(Tree& tree, const Source& source) { tree.readString(source.text); }

  static double addNumbers(const Tree& tree, const Source&) { return addAll(tree.getRoot()); }

  static MemoryStream write(const Tree& tree) { return MemoryStream(tree); }

  static bool find(const Tree& tree, const std::string& name) { return tree.exists(name); }
};

const PeerRegistration registration(Measure<LibConfig>::makePeer("libconfig++"));

}  // namespace

}  // namespace QuarryBenchmarks
