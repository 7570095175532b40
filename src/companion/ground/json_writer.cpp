#include "companion/ground/json_writer.h"

namespace tova_fw_builder {

void JsonWriter::open(char bracket) {
  begin_element();
  out_ << bracket;
  brackets_ += bracket;
  is_empty_ = true;
}

void JsonWriter::open(std::string_view key, char bracket) {
  begin_member(key);
  out_ << bracket;
  brackets_ += bracket;
  is_empty_ = true;
}

void JsonWriter::close() {
  const char bracket = brackets_.back();
  brackets_.pop_back();
  if (!is_empty_) begin_line();
  out_ << (bracket == '{' ? '}' : ']');
  is_empty_ = false;
  if (brackets_.empty() && text_of_ == nullptr) out_ << '\n';
}

void JsonWriter::value(const Json& value) {
  begin_element();
  print(value);
}

void JsonWriter::value(std::string_view key, const Json& value) {
  begin_member(key);
  print(value);
}

void JsonWriter::members(const Json& object) {
  for (const auto& [key, member] : object.items()) value(key, member);
}

void JsonWriter::begin_element() {
  if (brackets_.empty()) return;
  if (!is_empty_) out_ << ',';
  begin_line();
  is_empty_ = false;
}

void JsonWriter::begin_member(std::string_view key) {
  begin_element();
  out_ << (text_of_ ? text_of_(Json(key)) + ':' : json_string(key) + ": ");
}

void JsonWriter::begin_line() {
  if (text_of_ == nullptr)
    out_ << '\n' << std::string(2 * brackets_.size(), ' ');
}

void JsonWriter::print(const Json& value) {
  const std::string text = text_of_ ? text_of_(value) : json_text(value);
  // Within a string a line feed is escaped: each one here ends a line, the last
  // one the document.
  std::string_view rest(text);
  for (auto end = rest.find('\n'); end != rest.npos; end = rest.find('\n')) {
    out_ << rest.substr(0, end);
    rest.remove_prefix(end + 1);
    if (!rest.empty()) begin_line();
  }
  out_ << rest;
}

}  // namespace tova_fw_builder
