/// @file
/// Where messages go.
#pragma once

#include <Plinth/Export.h>

#include <cstdint>
#include <functional>
#include <string>

namespace Plinth {

/// Where a library reports what happened: every message of the process passes through here, to
/// standard error at first, to a handler of the program's own when it sets one.
///
/// \code
///   #include <Plinth/Console.h>
///   #include <iostream>
///
///   int main() {
///     using Plinth::Console;
///     Plinth::console.setHandler(
///         [](Console::Level level, const std::string& message, const std::string&) {
///           if (level == Console::LEVEL_WARNING) std::cout << "careful: " << message;
///         });
///     Plinth::console.warning("the disk is nearly full\n", "");
///   }
/// \endcode
///
/// **Texts.** A report has a message and a second text, which most callers leave empty. Both are
/// bytes and are passed on as they stand: nobody adds a line feed, so a message brings its own.
///
/// **Reports.** Each hands its two texts to the handler in force and returns when the handler has
/// returned. What the handler throws reaches the caller, and the console stays usable.
///
/// **Default handler.** It writes the message and then the second text to standard error for print,
/// warning and error, both in one go so that lines of several threads do not mix, and drops debug.
/// A failure to write is ignored.
///
/// **Lifetime.** A console has no data of its own; the handler in force belongs to the process. So
/// \ref console works before `main` and after it, in constructors and destructors of static objects
/// too. The handler that is set last is never destroyed: what it refers to has to live as long as
/// anyone may report, or the program sets an empty handler first.
///
/// **Threads.** Every operation can be called from several threads at once. A handler never runs in
/// two threads at the same time. It may itself use the console: a report made by a handler reaches
/// the handler in force at once, within the same call (a handler that answers each report with
/// another one therefore never comes to an end). A handler must not wait for another thread that
/// reports.
class PLINTH_EXPORT Console {
 public:
  /// How grave a report is, named after the operation that makes it.
  enum Level : std::int32_t {
    LEVEL_PRINT,    ///< what a person asked to see
    LEVEL_DEBUG,    ///< what only helps to find a fault
    LEVEL_WARNING,  ///< something is wrong, and work goes on
    LEVEL_ERROR     ///< something failed
  };

  /// Takes one report: its level, its message and its second text. The texts are good during the
  /// call only.
  using Handler =
      std::function<void(Level level, const std::string& message, const std::string& second)>;

  constexpr Console() noexcept = default;
  Console(const Console&) = delete;
  Console& operator=(const Console&) = delete;

  // --- Reports -----------------------------------------------------------------------------------

  /// Reports what a person asked to see.
  void print(const std::string& message, const std::string& second);

  /// Reports what only helps to find a fault; the default handler drops it.
  void debug(const std::string& message, const std::string& second);

  /// Reports that something is wrong and that work goes on.
  void warning(const std::string& message, const std::string& second);

  /// Reports that something failed.
  void error(const std::string& message, const std::string& second);

  // --- Handler -----------------------------------------------------------------------------------

  /// Puts `handler` in force for the whole process; an empty one restores the default handler.
  /// Returns the previous handler, empty when that was the default one, so that
  /// `setHandler(previous)` always restores what was.
  ///
  /// When the call returns, the previous handler no longer runs in any other thread. A handler may
  /// replace itself: it runs to its end, and the next report goes to the new one.
  Handler setHandler(Handler handler);
};

/// The console that everyone uses.
extern PLINTH_EXPORT Console console;

}  // namespace Plinth
