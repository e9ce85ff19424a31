#include <nlohmann/json.hpp>

#include "ItemDisplay.h"
#include "JsonReader.h"

#include <utility>
#include <vector>

namespace Tool {

namespace {

using Json = nlohmann::json;

/// Knows where in a JSON text the parser is, as a JSON pointer: `/0/values/1`.
class JsonPlace {
 public:
  void enterObject() { steps.push_back({false, 0, std::string()}); }
  void enterArray() { steps.push_back({true, 0, std::string()}); }
  void leave() { steps.pop_back(); }
  void setMember(const std::string& name) { steps.back().name = name; }

  /// Has to be called behind each value.
  void passValue() {
    if (!steps.empty()) ++steps.back().index;
  }

  std::string getPointer() const {
    std::string pointer;
    for (const Step& step : steps)
      pointer += '/' + (step.isArray ? std::to_string(step.index) : escape(step.name));
    return pointer;
  }

 private:
  struct Step {
    bool isArray;
    unsigned long index;
    std::string name;
  };

  static std::string escape(const std::string& name) {
    std::string escaped;
    for (const char character : name) {
      if (character == '~') {
        escaped += "~0";
      } else if (character == '/') {
        escaped += "~1";
      } else {
        escaped += character;
      }
    }
    return escaped;
  }

  std::vector<Step> steps;
};

/// A fault with line and column: it needs no other place.
class SyntaxFault : public JsonFault {
 public:
  using JsonFault::JsonFault;
};

/// Listens to the parser, which keeps its levels in a list and so reads any depth.
class Handler : public nlohmann::json_sax<Json> {
 public:
  explicit Handler(JsonListener& told) : listener(told) {}

  const JsonPlace& getPlace() const { return place; }

  bool null() override { return tell({}); }

  bool boolean(bool value) override {
    JsonScalar scalar;
    scalar.kind = JsonScalar::BOOL;
    scalar.boolean = value;
    return tell(scalar);
  }

  bool number_integer(number_integer_t value) override {
    JsonScalar scalar;
    scalar.kind = JsonScalar::INTEGER;
    scalar.integer = value;
    scalar.number = static_cast<double>(value);
    scalar.text = std::to_string(value);
    return tell(scalar);
  }

  bool number_unsigned(number_unsigned_t value) override {
    if (value <= static_cast<number_unsigned_t>(INT64_MAX)) {
      return number_integer(static_cast<number_integer_t>(value));
    }
    return number_float(static_cast<double>(value), std::to_string(value));
  }

  bool number_float(number_float_t value, const string_t& text) override {
    JsonScalar scalar;
    scalar.kind = JsonScalar::NUMBER;
    scalar.number = value;
    scalar.text = restorePoint(text);
    return tell(scalar);
  }

  bool string(string_t& value) override {
    JsonScalar scalar;
    scalar.kind = JsonScalar::STRING;
    scalar.text = std::move(value);
    return tell(scalar);
  }

  bool binary(binary_t&) override { return false; }  // JSON has none

  bool start_object(std::size_t) override {
    listener.beginObject();
    place.enterObject();
    return true;
  }

  bool key(string_t& name) override {
    place.setMember(name);
    listener.member(name);
    return true;
  }

  bool end_object() override {
    place.leave();
    listener.endObject();
    place.passValue();
    return true;
  }

  bool start_array(std::size_t) override {
    listener.beginArray();
    place.enterArray();
    return true;
  }

  bool end_array() override {
    place.leave();
    listener.endArray();
    place.passValue();
    return true;
  }

  bool parse_error(std::size_t, const std::string&, const Json::exception& error) override {
    const std::string text = error.what();
    const std::size_t begin = text.find("] ");
    throw SyntaxFault("it is no JSON: " + text.substr(begin == std::string::npos ? 0 : begin + 2));
  }

 private:
  /// The parser puts the locale's decimal point in the place of the one that was written.
  static std::string restorePoint(std::string number) {
    const std::size_t point = number.find_first_not_of("0123456789+-eE");
    if (point != std::string::npos) number[point] = '.';
    return number;
  }

  bool tell(const JsonScalar& scalar) {
    listener.scalar(scalar);
    place.passValue();
    return true;
  }

  JsonListener& listener;
  JsonPlace place;
};

}  // namespace

void parseJson(std::string_view text, JsonListener& listener) {
  constexpr std::string_view BYTE_ORDER_MARK = "\xEF\xBB\xBF";
  if (text.starts_with(BYTE_ORDER_MARK)) text.remove_prefix(BYTE_ORDER_MARK.size());
  Handler handler(listener);
  try {
    Json::sax_parse(text.begin(), text.end(), &handler);
  } catch (const SyntaxFault&) {
    throw;
  } catch (const JsonFault& fault) {
    const std::string pointer = shortenPath(handler.getPlace().getPointer());
    throw JsonFault(pointer.empty() ? fault.what() : "at " + pointer + ": " + fault.what());
  }
}

}  // namespace Tool
