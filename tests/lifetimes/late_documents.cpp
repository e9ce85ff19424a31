// Documents that outlive main, their thread, and what the library itself holds. Each says that it
// is whole, and is changed once more, when it goes.

#include <Plinth/Console.h>
#include <Quarry/ParserFile.h>
#include <Quarry/ParserItem.h>

#include <pthread.h>

#include <cstdio>
#include <cstdlib>
#include <memory>
#include <string>
#include <thread>
#include <utility>

namespace {

constexpr unsigned long ITEMS = 5000;

void say(const std::string& line) {
  std::printf("%s\n", line.c_str());
  std::fflush(stdout);
}

std::string makeText() {
  std::string text;
  for (unsigned long i = 0; i < ITEMS; ++i)
    text +=
        "\nitem " + std::to_string(i) + " \"a string that does not lie in the value\" { b yes }";
  return text;
}

std::string write(const Quarry::ParserGroup& root) {
  std::string text;
  root.getText(text, false, false, 1);
  return text;
}

/// A document that is empty until fill() and says how it finds itself when it is destroyed.
class Document {
 public:
  explicit Document(std::string title) : name(std::move(title)) {}
  Document(const Document&) = delete;
  Document& operator=(const Document&) = delete;

  ~Document() {
    const unsigned long before = file.getRoot().getItemCount();
    const bool isWhole = write(Quarry::ParserGroup(file.getRoot())) == write(file.getRoot());
    file.getRoot().removeItem("item");
    file.getRoot().setText("late 1 , , 2", 1.1);
    say(name + ": " + std::to_string(before) + " items, " + (isWhole ? "whole" : "broken") + "," +
        write(file.getRoot()));
  }

  void fill() { file.getRoot().setText(makeText(), 1.1); }

 private:
  std::string name;
  Quarry::ParserFile file;
};

/// Holds a document and uses nothing of the library before it does.
struct Holder {
  std::unique_ptr<Document> document;

  void make(const std::string& name) {
    document = std::make_unique<Document>(name);
    document->fill();
  }
};

// --- Statics -------------------------------------------------------------------------------------

/// Made before main and before the library was ever used.
Document firstStatic("static made first");
Document secondStatic("static made second");

void destroyAtExit() {
  Document document("document of a function called at the exit");
  document.fill();
}

// --- Threads -------------------------------------------------------------------------------------

/// Goes after what the library holds for the thread, because it was there before.
thread_local Holder early;

void useEarlyHolder(const std::string& name) {
  early.document = nullptr;
  early.make(name);
}

void useThreadLocalDocument() {
  thread_local Document document("document of a thread");
  document.fill();
}

void destroyHolder(void* holder) { delete static_cast<Holder*>(holder); }

/// Goes after everything else that belongs to the thread.
void useThreadKey(pthread_key_t key) {
  auto* holder = new Holder;
  holder->make("document of a thread's key");
  pthread_setspecific(key, holder);
}

/// Makes a document in one thread and destroys it in another, after the first has ended.
void passOn() {
  Holder passed;
  std::thread([&passed] { passed.make("document of a thread that has ended"); }).join();
  std::thread([&passed] { passed.document = nullptr; }).join();
}

}  // namespace

int main() {
  std::atexit(destroyAtExit);
  Plinth::console.setHandler(
      [](Plinth::Console::Level, const std::string& message, const std::string&) {
        std::printf("warning: %s", message.c_str());
      });
  pthread_key_t key = 0;
  if (pthread_key_create(&key, destroyHolder) != 0) return EXIT_FAILURE;

  std::thread(useThreadLocalDocument).join();
  std::thread(useEarlyHolder, "document held before the library was used").join();
  std::thread(useThreadKey, key).join();
  passOn();

  firstStatic.fill();
  secondStatic.fill();
  // Ends the process in another thread than the one that read the documents. This thread does not
  // end, and what belongs to it stays.
  useEarlyHolder("document of the main thread");
  std::thread([] { std::exit(EXIT_SUCCESS); }).join();
}
