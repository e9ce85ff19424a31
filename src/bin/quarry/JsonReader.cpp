#include "JsonReader.h"

#include "JsonItems.h"
#include "JsonObject.h"

namespace Tool {

JsonResult readJson(std::string_view text, Quarry::ParserGroup& root,
                    const JsonSettings& settings) {
  const std::size_t begin = text.find_first_of("[{");
  if (begin == std::string_view::npos) throw JsonFault("it is neither an array nor an object");
  if (text[begin] == '{') {
    JsonObject listener(root, settings);
    parseJson(text, listener);
    return listener.getResult();
  }
  JsonItems listener(root, settings);
  parseJson(text, listener);
  return listener.getResult();
}

}  // namespace Tool
