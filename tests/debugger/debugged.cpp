// Holds documents of every kind for a debugger to look at.
#include <Plinth/Expression.h>
#include <Quarry/ParserGroup.h>
#include <Quarry/ParserValue.h>
#include <Quarry/ParserWord.h>

#include <cstring>
#include <string>

using Plinth::Expression;
using Quarry::ParserGroup;
using Quarry::ParserItem;
using Quarry::ParserItems;
using Quarry::ParserValue;
using Quarry::ParserWord;

// Optimisation leaves these where they are.
ParserGroup* document;
ParserGroup* written;
ParserGroup* empty;
ParserGroup* detached;
ParserGroup* noGroup;
ParserItem* noItem;
ParserItem* zeroItem;
ParserItems* noItems;
ParserWord* noWord;
ParserItem* asked;
ParserItems* plain;
ParserItems* matching;
ParserItems* none;
ParserWord* word;
ParserValue* readBool;
ParserValue* readChar;
ParserValue* readInt;
ParserValue* readLongInt;
ParserValue* readDouble;
ParserValue* readHexadecimal;
ParserValue* readInfinity;
ParserValue* readNothing;
ParserValue* readString;
ParserValue* readEmpty;
ParserValue* madeBool;
ParserValue* madeChar;
ParserValue* madeInt;
ParserValue* madeDouble;
ParserValue* madeString;
ParserValue* madeBlock;
ParserValue* madeEmptyBlock;
ParserValue* madeGroup;
ParserValue* cleared;
ParserValue* clearedGroup;
ParserValue* converted;
ParserValue* writtenInt;
ParserValue* askedString;
ParserValue* noValue;
ParserValue* noType;
ParserValue* noGroupAtAll;
ParserValue* noText;
ParserValue* zeroValue;

namespace {

const char TEXT[] =
    "title \"Harbor, \\\"second\\\" cut\" nothing <empty>\n"
    "#revision 7\n"
    "camera {\n"
    "    fov 39.60\n"
    "    target { position -6.996 4.3479 1e3 }\n"
    "}\n"
    "logo 0x0102FF02010000\n"
    "blur(4, yes)\n"
    "note \"a text that is too long to lie within the value itself\"\n";

ParserGroup* makeWritten() {
  auto* root = new ParserGroup("written");
  ParserItem* keys = root->addItem("keys", 0, 0);
  keys->setArray(true, 3);
  keys->setTemplate("image");
  keys->addInt(10);
  keys->addDouble(0.5);
  root->addGroup("folded", true);
  return root;
}

/// Memory that never was an object, or is none any more.
template <class T>
T* makeGarbage(int byte) {
  void* memory = ::operator new(sizeof(T));
  std::memset(memory, byte, sizeof(T));
  return static_cast<T*>(memory);
}

}  // namespace

/// Where the debugger stops.
extern "C" __attribute__((noinline)) void lookHere(const ParserGroup& shown) {
  asm volatile("" : : "r"(&shown) : "memory");
}

int main() {
  document = new ParserGroup("root");
  document->setText(TEXT, 1.1);
  written = makeWritten();
  empty = new ParserGroup("");
  detached = new ParserGroup("root");
  detached->setText("first 1 second 2", 1.1);
  const ParserItem* owned = detached->getItem(0UL);
  detached->detachItem(0);
  delete owned;

  noGroup = makeGarbage<ParserGroup>(0xDB);
  noItem = makeGarbage<ParserItem>(0xDB);
  zeroItem = makeGarbage<ParserItem>(0);
  noItems = makeGarbage<ParserItems>(0xDB);
  noWord = makeGarbage<ParserWord>(0xDB);
  asked = document->getItem("title");
  plain = new ParserItems(document->getItems(""));
  matching = new ParserItems(plain->getMatching(Expression("^c")));
  none = new ParserItems();
  const std::string text = "0x10 more";
  word = new ParserWord(text, true, 1.1);

  char block[] = "\x01\x02\xFF\x7F";
  readBool = new ParserValue(ParserValue::TYPE_BOOL, "yes");
  readChar = new ParserValue(ParserValue::TYPE_CHAR, "65");
  readInt = new ParserValue(ParserValue::TYPE_INT, "-12");
  readLongInt = new ParserValue(ParserValue::TYPE_INT, "4294967297 and more");
  readDouble = new ParserValue(ParserValue::TYPE_DOUBLE, "1.50");
  readHexadecimal = new ParserValue(ParserValue::TYPE_DOUBLE, "0x1.8p1");
  readInfinity = new ParserValue(ParserValue::TYPE_DOUBLE, "-inf");
  readNothing = new ParserValue(ParserValue::TYPE_DOUBLE, "no number");
  readString = new ParserValue(ParserValue::TYPE_STRING, "short");
  readEmpty = new ParserValue(ParserValue::TYPE_EMPTY, "<empty>");
  madeBool = new ParserValue(true);
  madeChar = new ParserValue('A');
  madeInt = new ParserValue(7);
  madeDouble = new ParserValue(0.1);
  madeString = new ParserValue("two\nlines");
  madeBlock = new ParserValue(block, 5);
  madeEmptyBlock = new ParserValue(block, 0);
  madeGroup = new ParserValue(nullptr);
  cleared = new ParserValue(3);
  clearedGroup = new ParserValue(nullptr);
  converted = new ParserValue(ParserValue::TYPE_DOUBLE, "1.50");
  writtenInt = new ParserValue(65);
  askedString = new ParserValue("asked for");
  noValue = makeGarbage<ParserValue>(0xDB);
  noType = makeGarbage<ParserValue>(0x03);
  zeroValue = makeGarbage<ParserValue>(0);
  noGroupAtAll = new ParserValue(nullptr);
  std::memset(reinterpret_cast<char*>(noGroupAtAll) + sizeof(void*) + 8, 0, sizeof(void*));
  noText = new ParserValue(ParserValue::TYPE_STRING, "a text that lies somewhere else altogether");
  std::memset(reinterpret_cast<char*>(noText) + sizeof(void*) + 8, 0x7F, 2 * sizeof(void*));

  cleared->clear();
  clearedGroup->clear();
  converted->getAsDouble();
  std::string byte;
  writtenInt->getText(byte, true, 1);
  askedString->getAsString();
  lookHere(*empty);
}
