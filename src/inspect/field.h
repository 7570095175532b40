// inspect/field.h
// What is in a file, as a tree. Decoders fill it; text, JSON and the list of
// bytes know no format, and comparing and checking know names of fields alone.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace tova_fw_builder {

// A column of a list that is shown as a table: the field of each member that it
// shows. With a `note_first`, the field's note stands for its value where it
// has one.
struct Column {
  std::string_view title;
  std::string_view path;
  bool note_first = false;
};

// One node. A number, a text and so on has the value; an object or a list has
// members. A node with bytes of its own in the file has a `length`; one that
// was derived from others has none.
struct Field {
  enum class Kind : std::uint8_t {
    kObject,    // members by name
    kList,      // members by index; their names are empty
    kNumber,    // `number`
    kBool,      // `number` is 0 or 1
    kText,      // `text`
    kNames,     // `text`: names with one blank between them
    kNothing,   // no value: its bytes are missing or make no sense
    kPrivate,   // a private number: its bytes are named and never shown
    kContents,  // bytes without a form
    kPadding,   // zeros between other fields
    kReserved,  // zeros that may get a meaning; `text` in hexadecimal if not
  };
  enum class Radix : std::uint8_t { kDecimal, kHex };
  // Where it is shown: kAlways; kLong, in the long text, JSON and bytes;
  // kBytes, in the list of bytes alone.
  enum class Shown : std::uint8_t { kAlways, kLong, kBytes };

  std::string_view name;  // of static life; empty in a list
  Kind kind = Kind::kNothing;
  Radix radix = Radix::kDecimal;
  Shown shown = Shown::kAlways;
  std::uint64_t offset = 0;
  std::uint64_t length = 0;
  std::uint64_t number = 0;
  std::string text = {};
  std::string note = {};  // what the value means: "21 November 2026"
  std::vector<Field> members = {};
  // Of a list that the short text shows as a table, a line for each member.
  std::span<const Column> columns = {};

  bool has_members() const {
    return kind == Kind::kObject || kind == Kind::kList;
  }
  // Adds a member and yields it.
  Field& add(Field member);
};

// A field of that kind without bytes of its own.
Field object_field(std::string_view name,
                   Field::Shown shown = Field::Shown::kAlways);
Field list_field(std::string_view name,
                 Field::Shown shown = Field::Shown::kAlways);
Field number_field(std::string_view name, std::uint64_t number,
                   Field::Radix radix = Field::Radix::kDecimal);
Field bool_field(std::string_view name, bool value);
Field text_field(std::string_view name, std::string text);
Field names_field(std::string_view name, std::string names);

// Adds one more to the names of such a field; takes them apart.
void add_name(std::string& names, std::string_view name);
std::vector<std::string> single_names(std::string_view names);

// The same field with bytes of its own.
Field placed(Field field, std::uint64_t offset, std::uint64_t length);
// The same field, shown less often; the same one with a note, unless there is
// nothing to be noted.
Field shown(Field field, Field::Shown where);
Field noted(Field field, std::string note);

// The field at a path such as "modules[2].segments[0].vma" below `field`, which
// itself is the empty path; nullptr if there is none.
const Field* find(const Field& field, std::string_view path);
Field* find(Field& field, std::string_view path);

// The number or bool at a path; `otherwise` if nothing of that kind is there.
std::uint64_t number_at(const Field& field, std::string_view path,
                        std::uint64_t otherwise = 0);
// The text at a path, empty if there is none.
std::string_view text_at(const Field& field, std::string_view path);

// The path of a member: that of its parent, and its name or its index.
std::string member_path(const std::string& parent, const Field& member,
                        std::size_t index);

std::string number_text(std::uint64_t number, Field::Radix radix);

}  // namespace tova_fw_builder
