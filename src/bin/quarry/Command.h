/// What a command takes on its command line.
///
/// Only Command.cpp and CommandTable.cpp know the library that reads command lines: it is large,
/// and every file that includes it takes seconds to compile.
#pragma once

#include <functional>
#include <string>
#include <utility>
#include <vector>

namespace CLI {

class App;
class Option;

}  // namespace CLI

namespace Tool {

/// An argument or option of a command.
class CommandOption {
 public:
  explicit CommandOption(CLI::Option* commandOption) : option(commandOption) {}

  /// It has to be given.
  void require() const;

  /// It cannot be given together with another.
  const CommandOption& exclude(const CommandOption& other) const;

  /// The help does not show it.
  void hide() const;

 private:
  CLI::Option* option;
};

/// A command, to which its arguments and options are added. Each goes to where its value is kept,
/// which has to live as long as the command line is read; without it, the value stays as it is.
class Command {
 public:
  /// What is done with the word of an option.
  using Take = std::function<void(const std::string&)>;

  explicit Command(CLI::App* command) : app(command) {}

  // --- Arguments, in their order ---

  CommandOption addArgument(const std::string& name, std::string& value,
                            const std::string& description);

  /// Takes any number of arguments.
  CommandOption addArguments(const std::string& name, std::vector<std::string>& values,
                             const std::string& description);

  // --- Options: names as in "-q,--quiet", and what the help calls the word behind it ---

  CommandOption addFlag(const std::string& names, bool& isGiven, const std::string& description);
  CommandOption addFlag(const std::string& names, std::function<void()> act,
                        const std::string& description);

  CommandOption addOption(const std::string& names, const std::string& word, std::string& value,
                          const std::string& description);
  CommandOption addOption(const std::string& names, const std::string& word, const Take& take,
                          const std::string& description);

  /// Adds an option that may be given several times.
  CommandOption addRepeatedOption(const std::string& names, const std::string& word,
                                  std::vector<std::string>& values, const std::string& description);

  /// Adds an option that takes a whole number, 0 or more.
  CommandOption addNumber(const std::string& names, unsigned long& number,
                          const std::string& description);

  /// Adds an option that takes one of some words, each with what it stands for.
  template <typename Value>
  CommandOption addChoice(const std::string& names, const std::string& word,
                          const std::vector<std::pair<std::string, Value>>& choices, Value& value,
                          const std::string& description) {
    std::vector<std::string> words;
    words.reserve(choices.size());
    for (const auto& choice : choices)
      words.push_back(choice.first);
    const Take take = [choices, &value](const std::string& given) {
      for (const auto& choice : choices) {
        if (choice.first == given) value = choice.second;
      }
    };
    return addWords(names, word, words, take, description);
  }

 private:
  CommandOption addWords(const std::string& names, const std::string& word,
                         const std::vector<std::string>& words, const Take& take,
                         const std::string& description);

  CLI::App* app;
};

}  // namespace Tool
