#include <QuarrySource/SourceDiagnostic.h>

#include <array>
#include <cstddef>

namespace Quarry {

namespace {

struct RuleText {
  SourceRule rule;
  const char* name;
  const char* description;
};

constexpr std::array RULES = {
    RuleText{SourceRule::FILE_NOT_FOUND, "file-not-found",
             "A file is in none of the search paths."},
    RuleText{SourceRule::FILE_NOT_OPENED, "file-not-opened", "A file cannot be opened or read."},
    RuleText{SourceRule::LIMIT_EXCEEDED, "limit-exceeded", "The document exceeds a limit."},
    RuleText{SourceRule::INCLUDE_OUTSIDE, "include-outside",
             "An included file lies outside of the search paths."},
    RuleText{SourceRule::INCLUDE_CYCLE, "include-cycle", "A file includes itself."},
    RuleText{SourceRule::TEMPLATE_INSIDE_TEMPLATE, "template-inside-template",
             "A template is declared within a template declaration."},
    RuleText{SourceRule::HAS_NO_VALUE, "has-no-value",
             "A name stands where a value was expected; it is dropped."},
    RuleText{SourceRule::WRONGLY_PLACED, "wrongly-placed",
             "An '=' does not follow a name, or a ',' no value; the item ends there."},
    RuleText{SourceRule::VALUE_WITHOUT_ITEM, "value-without-item",
             "A value stands where no item has begun; it is dropped."},
    RuleText{SourceRule::GROUP_WITHOUT_ITEM, "group-without-item",
             "A group stands where no item has begun; its brace is dropped."},
    RuleText{SourceRule::ARGUMENTS_WITHOUT_ITEM, "arguments-without-item",
             "An argument list stands where no item has begun."},
    RuleText{SourceRule::ARGUMENTS_MIXED_WITH_VALUES, "arguments-mixed-with-values",
             "An argument list follows values of the item."},
    RuleText{SourceRule::ARGUMENTS_INSIDE_ARGUMENTS, "arguments-inside-arguments",
             "An argument list stands within another."},
    RuleText{SourceRule::ARGUMENTS_ON_KEYWORD, "arguments-on-keyword",
             "A keyword has an argument list."},
    RuleText{SourceRule::ARGUMENTS_CLOSED_WITHOUT_ITEM, "arguments-closed-without-item",
             "A parenthesis closes where no item has begun."},
    RuleText{SourceRule::ARGUMENTS_CLOSED_WITHOUT_CALL, "arguments-closed-without-call",
             "A parenthesis closes where no argument list is open."},
    RuleText{SourceRule::UNKNOWN_WORD, "unknown-word", "A word is neither a name nor a value."},
    RuleText{SourceRule::UNCLOSED_INCLUDE, "unclosed-include",
             "An include has no closing quote; the document cannot be read."},
    RuleText{SourceRule::UNUSABLE_VERSION, "unusable-version",
             "A file declares a version that is not positive; the document cannot be read."},
    RuleText{SourceRule::CLOSES_NO_GROUP, "closes-no-group",
             "A brace closes no group and ends the document; what follows is not read."},
    RuleText{SourceRule::GROUP_NOT_CLOSED, "group-not-closed", "The document ends within a group."},
    RuleText{SourceRule::BAD_COMPRESSED_LINE, "bad-compressed-line",
             "A line of a compressed file has less than two bytes; it was compressed without the "
             "markers before its line feeds."},
};

const RuleText& getText(SourceRule rule) { return RULES[static_cast<std::size_t>(rule)]; }

}  // namespace

const char* getRuleName(SourceRule rule) { return getText(rule).name; }

const char* getRuleDescription(SourceRule rule) { return getText(rule).description; }

const std::vector<SourceRule>& getRules() {
  static const std::vector<SourceRule>* const rules = [] {
    auto* all = new std::vector<SourceRule>;
    for (const RuleText& text : RULES)
      all->push_back(text.rule);
    return all;
  }();
  return *rules;
}

}  // namespace Quarry
