#include "Command.h"

#include <CLI/CLI.hpp>

#include <cstdint>

namespace Tool {

// --- CommandOption -------------------------------------------------------------------------------

void CommandOption::require() const { option->required(); }

const CommandOption& CommandOption::exclude(const CommandOption& other) const {
  option->excludes(other.option);
  return *this;
}

void CommandOption::hide() const { option->group(""); }

// --- Arguments -----------------------------------------------------------------------------------

CommandOption Command::addArgument(const std::string& name, std::string& value,
                                   const std::string& description) {
  return CommandOption(app->add_option(name, value, description)->option_text(" "));
}

CommandOption Command::addArguments(const std::string& name, std::vector<std::string>& values,
                                    const std::string& description) {
  return CommandOption(app->add_option(name, values, description)->option_text("..."));
}

// --- Options -------------------------------------------------------------------------------------

CommandOption Command::addFlag(const std::string& names, bool& isGiven,
                               const std::string& description) {
  return CommandOption(app->add_flag(names, isGiven, description));
}

CommandOption Command::addFlag(const std::string& names, std::function<void()> act,
                               const std::string& description) {
  const auto actWhenGiven = [act = std::move(act)](std::int64_t) { act(); };
  return CommandOption(app->add_flag_function(names, actWhenGiven, description));
}

CommandOption Command::addOption(const std::string& names, const std::string& word,
                                 std::string& value, const std::string& description) {
  return CommandOption(app->add_option(names, value, description)->option_text(word));
}

CommandOption Command::addOption(const std::string& names, const std::string& word,
                                 const Take& take, const std::string& description) {
  return CommandOption(
      app->add_option_function<std::string>(names, take, description)->option_text(word));
}

CommandOption Command::addRepeatedOption(const std::string& names, const std::string& word,
                                         std::vector<std::string>& values,
                                         const std::string& description) {
  return CommandOption(
      app->add_option(names, values, description)->allow_extra_args(false)->option_text(word));
}

CommandOption Command::addNumber(const std::string& names, unsigned long& number,
                                 const std::string& description) {
  const auto findFault = [](const std::string& text) {
    const bool isNumber = text.find_first_not_of("0123456789") == std::string::npos;
    return isNumber ? std::string() : "'" + text + "' is no whole number";
  };
  return CommandOption(
      app->add_option(names, number, description)->check(findFault)->option_text("N"));
}

CommandOption Command::addWords(const std::string& names, const std::string& word,
                                const std::vector<std::string>& words, const Take& take,
                                const std::string& description) {
  return CommandOption(app->add_option_function<std::string>(names, take, description)
                           ->check(CLI::IsMember(words))
                           ->option_text(word));
}

}  // namespace Tool
