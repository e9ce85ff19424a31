/// Gives words what no text gives them.
#pragma once

#include <Quarry/ParserWord.h>

namespace Quarry {

/// Sets the parts of a word that the grammar knows but no text produces: its template, its array
/// size, and the type WORD_BRACE.
class WordEditor {
 public:
  explicit WordEditor(ParserWord& edited) : word(edited) {}

  void setType(ParserWord::Type type) { word.type = type; }
  void setArraySize(unsigned long size) { word.arraySize = size; }

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
