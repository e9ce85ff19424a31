// A library of somebody else's, loaded while the program runs; ExceptionPluginTest.cpp calls it.

#include <Plinth/Exception.h>

extern "C" {

PLINTH_EXPORT void throwFatal() {
  Plinth::Fatal fatal("thrown by the plugin");
  fatal.locate("Plugin", "throwFatal", 7);
  throw fatal;
}

// Returns whether `call` throws a Fatal that says `message`.
PLINTH_EXPORT bool catchesFatal(void (*call)(), const char* message) {
  try {
    call();
  } catch (const Plinth::Fatal& fatal) {
    return fatal.getMessage() == message;
  }
  return false;
}
}
