// companion/ground/json_writer.h
#pragma once

#include <ostream>
#include <string>
#include <string_view>

#include "companion/ground/json.h"

namespace tova_fw_builder {

// Prints a document one piece after the other, for those that would take too
// much memory as a whole: open() and close() make the objects and lists that
// grow, and values are what stands in them.
class JsonWriter {
 public:
  // As json_text has it.
  explicit JsonWriter(std::ostream& out) : out_(out) {}

  // In one line, without a newline; `text_of` makes keys and values.
  JsonWriter(std::ostream& out, std::string (*text_of)(const Json&))
      : out_(out), text_of_(text_of) {}

  // An object or a list: '{' or '['. The key is for members of an object.
  void open(char bracket);
  void open(std::string_view key, char bracket);
  void close();

  void value(const Json& value);
  void value(std::string_view key, const Json& value);
  // All that an object holds.
  void members(const Json& object);

  // Whether the rest of a long list would go nowhere.
  bool has_failed() const { return out_.fail(); }

 private:
  void begin_element();
  void begin_member(std::string_view key);
  void begin_line();
  void print(const Json& value);

  std::ostream& out_;
  std::string (*text_of_)(const Json&) = nullptr;
  std::string brackets_;  // that are open
  bool is_empty_ = true;  // what was opened last
};

}  // namespace tova_fw_builder
