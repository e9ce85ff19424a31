/// Sets what a word is not given by its own tests.
#pragma once

#include <Quarry/ParserWord.h>

namespace Quarry {

/// Sets the parts of a word that the grammar knows but no text produces: its template, its array
/// size, and the type WORD_BRACE; and where it stands, for a word that was seen before.
class WordEditor {
 public:
  explicit WordEditor(ParserWord& edited) : word(edited) {}

  void setType(ParserWord::Type type) { word.type = type; }
  void setArraySize(unsigned long size) { word.arraySize = size; }

  /// @param start in the text, from 0
  void setExtent(unsigned long start, unsigned long length) {
    word.start = start;
    word.length = length;
  }

  /// @param name copied
  void setTemplateWord(const ParserWord& name) {
    ParserWord* copy = new ParserWord(name);
    delete word.templateWord;
    word.templateWord = copy;
  }

 private:
  ParserWord& word;
};

}  // namespace Quarry
