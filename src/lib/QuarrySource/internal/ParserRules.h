/// The rules of what the parser warns of.
#pragma once

#include <Quarry/internal/Diagnostic.h>
#include <QuarrySource/SourceDiagnostic.h>

namespace Quarry::ParserRules {

constexpr auto FIRST = SourceRule::TEMPLATE_INSIDE_TEMPLATE;
constexpr auto LAST = SourceRule::UNKNOWN_WORD;

static_assert(static_cast<int>(LAST) - static_cast<int>(FIRST) ==
              static_cast<int>(Diagnostic::UNKNOWN_WORD));

inline bool has(SourceRule rule) { return FIRST <= rule && rule <= LAST; }

inline SourceRule toRule(Diagnostic diagnostic) {
  return static_cast<SourceRule>(static_cast<int>(FIRST) + static_cast<int>(diagnostic));
}

inline Diagnostic toDiagnostic(SourceRule rule) {
  return static_cast<Diagnostic>(static_cast<int>(rule) - static_cast<int>(FIRST));
}

}  // namespace Quarry::ParserRules
