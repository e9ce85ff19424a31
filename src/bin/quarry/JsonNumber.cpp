#include "JsonNumber.h"

#include <Plinth/Label.h>

#include <cmath>
#include <cstdio>
#include <cstring>

namespace Tool {

std::uint64_t toBits(double number) {
  std::uint64_t bits = 0;
  std::memcpy(&bits, &number, sizeof bits);
  return bits;
}

double fromBits(std::uint64_t bits) {
  double number = 0;
  std::memcpy(&number, &bits, sizeof number);
  return number;
}

std::string spellDouble(double number) {
  const std::string text = Plinth::getLabel(number);
  const bool needsSign = !std::isfinite(number) && text.front() != '-';
  return needsSign ? "+" + text : text;
}

void appendJsonDouble(std::string& out, double number) {
  const std::string spelled = spellDouble(number);
  if (std::isfinite(number)) {
    out += spelled;
  } else if (toBits(Plinth::getDouble(spelled)) == toBits(number)) {
    out += '"' + (spelled.front() == '+' ? spelled.substr(1) : spelled) + '"';
  } else {
    char digits[17];
    std::snprintf(digits, sizeof digits, "%016llX",
                  static_cast<unsigned long long>(toBits(number)));
    out += "{\"bits\":\"" + std::string(digits) + "\"}";
  }
}

}  // namespace Tool
