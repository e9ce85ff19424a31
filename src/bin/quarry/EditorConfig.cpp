#include "EditorConfig.h"

#include "Failure.h"
#include "Texts.h"

#include <editorconfig/editorconfig.h>

#include <charconv>
#include <filesystem>
#include <memory>
#include <new>
#include <optional>

namespace Tool {

namespace {

struct HandleDeleter {
  void operator()(void* handle) const { editorconfig_handle_destroy(handle); }
};

std::string getProperty(const EditorProperties& properties, const std::string& name) {
  const auto found = properties.find(name);
  return found == properties.end() || found->second == "unset" ? std::string() : found->second;
}

std::optional<unsigned long> getSize(const EditorProperties& properties, const std::string& name) {
  constexpr unsigned long MOST = 64;
  const std::string value = getProperty(properties, name);
  unsigned long size = 0;
  const char* end = value.data() + value.size();
  const auto result = std::from_chars(value.data(), end, size);
  const bool isSize = result.ec == std::errc() && result.ptr == end && size <= MOST;
  return isSize ? std::optional(size) : std::nullopt;
}

}  // namespace

EditorProperties readEditorProperties(const std::string& path) {
  const std::unique_ptr<void, HandleDeleter> handle(editorconfig_handle_init());
  if (handle == nullptr) throw std::bad_alloc();
  const std::string whole = std::filesystem::absolute(path).lexically_normal().string();
  const int result = editorconfig_parse(whole.c_str(), handle.get());
  if (result > 0) {
    throw Failure(Texts::badEditorConfig(editorconfig_handle_get_err_file(handle.get()), result));
  }
  if (result < 0) throw std::bad_alloc();
  EditorProperties properties;
  for (int i = 0; i < editorconfig_handle_get_name_value_count(handle.get()); ++i) {
    const char* name = nullptr;
    const char* value = nullptr;
    editorconfig_handle_get_name_value(handle.get(), i, &name, &value);
    properties[name] = value;
  }
  return properties;
}

/// A size of indentation that is not given is the tab's.
FormatStyle makeFormatStyle(const EditorProperties& properties) {
  FormatStyle style;
  const auto tabWidth = getSize(properties, "tab_width");
  const auto size = getSize(properties, "indent_size");
  if (const auto width = size ? size : tabWidth) style.indent = std::string(*width, ' ');
  if (getProperty(properties, "indent_style") == "tab") style.indent = "\t";
  const std::string lineEnd = getProperty(properties, "end_of_line");
  if (lineEnd == "lf") style.lineEnd = "\n";
  if (lineEnd == "crlf") style.lineEnd = "\r\n";
  const std::string finalLineEnd = getProperty(properties, "insert_final_newline");
  if (finalLineEnd == "true") style.endsInLineEnd = true;
  if (finalLineEnd == "false") style.endsInLineEnd = false;
  return style;
}

}  // namespace Tool
