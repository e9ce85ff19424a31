#include <Plinth/Exception.h>

#include <gtest/gtest.h>

#include <dlfcn.h>
#include <string>

using Plinth::Error;
using Plinth::Fatal;
using Plinth::InternalError;

namespace {

void* openPlugin() {
  void* plugin = dlopen(PLUGIN_PATH, RTLD_NOW | RTLD_LOCAL);
  if (plugin == nullptr) throw InternalError(dlerror());
  return plugin;
}

// It stays loaded: an exception of its own may live until the program ends.
template <class Function>
Function* findInPlugin(const char* name) {
  static void* const plugin = openPlugin();
  return reinterpret_cast<Function*>(dlsym(plugin, name));
}

void throwFatalHere() { throw Fatal("thrown by the program"); }
void throwInternalErrorHere() { throw InternalError("thrown by the program"); }

}  // namespace

TEST(ExceptionPluginTest, AFatalOfThePluginIsCaughtAsFatalByTheProgram) {
  EXPECT_THROW(findInPlugin<void()>("throwFatal")(), Fatal);
}

TEST(ExceptionPluginTest, AFatalOfThePluginIsCaughtAsAnErrorWithItsPlace) {
  try {
    findInPlugin<void()>("throwFatal")();
    FAIL() << "nothing was thrown";
  } catch (const Error& error) {
    EXPECT_EQ(error.getMessage(), "thrown by the plugin");
    EXPECT_EQ(error.getLine(), 7U);
  }
}

TEST(ExceptionPluginTest, AFatalOfTheProgramIsCaughtAsFatalByThePlugin) {
  const auto catchesFatal = findInPlugin<bool(void (*)(), const char*)>("catchesFatal");
  EXPECT_TRUE(catchesFatal(throwFatalHere, "thrown by the program"));
}

TEST(ExceptionPluginTest, AnInternalErrorOfTheProgramPassesThroughThePlugin) {
  const auto catchesFatal = findInPlugin<bool(void (*)(), const char*)>("catchesFatal");
  EXPECT_THROW(catchesFatal(throwInternalErrorHere, "thrown by the program"), InternalError);
}
