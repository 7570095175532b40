// inspect/record_fields.h
#pragma once

#include <algorithm>
#include <array>
#include <concepts>
#include <string>
#include <string_view>
#include <utility>

#include "companion/ground/byte_text.h"
#include "driver/ground/wire.h"
#include "inspect/byte_source.h"
#include "inspect/field.h"

namespace tova_fw_builder {

// One wire record at a place of a file, and the fields for its members. Of a
// member that the file's end cuts off, the field is of kind kNothing and has
// the bytes that are there.
template <typename Record>
class RecordFields {
 public:
  RecordFields(const ByteSource& source, std::uint64_t offset)
      : offset_(offset),
        file_end_(source.size()),
        record_(record_at<Record>(source, offset)) {}

  const Record& operator*() const { return record_; }
  const Record* operator->() const { return &record_; }

  std::uint64_t offset() const { return offset_; }
  std::uint64_t end() const { return offset_ + sizeof(Record); }
  bool is_whole() const { return end() <= file_end_; }

  // Where a member of the record stands in the file.
  template <typename Member>
  std::uint64_t place(const Member& member) const {
    return offset_ +
           static_cast<std::uint64_t>(reinterpret_cast<const char*>(&member) -
                                      reinterpret_cast<const char*>(&record_));
  }

  template <std::unsigned_integral T>
  Field number(std::string_view name, const LittleEndian<T>& member,
               Field::Radix radix = Field::Radix::kDecimal) const {
    return at(number_field(name, member, radix), place(member), sizeof(T));
  }

  // Characters up to the first zero.
  template <std::size_t N>
  Field text(std::string_view name, const std::array<char, N>& member) const {
    const auto end = std::find(member.begin(), member.end(), '\0');
    return at(text_field(name, std::string(member.begin(), end)), place(member),
              N);
  }

  // Bytes as hexadecimal digits, in the order of the file.
  template <std::size_t N>
  Field hex(std::string_view name,
            const std::array<std::uint8_t, N>& member) const {
    return at(text_field(name, hexadecimal(characters(member))), place(member),
              N);
  }

  // The same from the last byte to the first: numbers as people read them.
  template <std::size_t N>
  Field reversed_hex(std::string_view name,
                     std::array<std::uint8_t, N> const& member) const {
    std::string bytes(characters(member));
    std::reverse(bytes.begin(), bytes.end());
    return at(text_field(name, hexadecimal(bytes)), place(member), N);
  }

  template <typename Member>
  Field reserved(std::string_view name, const Member& member) const {
    const std::string_view bytes(reinterpret_cast<const char*>(&member),
                                 sizeof(Member));
    Field field = shown(text_field(name, ""), Field::Shown::kBytes);
    field.kind = Field::Kind::kReserved;
    if (bytes.find_first_not_of('\0') != bytes.npos) {
      field.text = hexadecimal(bytes);
    }
    return at(std::move(field), place(member), sizeof(Member));
  }

  // A field that follows from the member: nothing without it.
  template <typename Member>
  Field derived(Field field, const Member& member) const {
    if (place(member) + sizeof(Member) > file_end_) {
      field.kind = Field::Kind::kNothing;
      field.text.clear();
    }
    return field;
  }

  // The field, placed; with no value if the file ends before it does.
  Field at(Field field, std::uint64_t offset, std::uint64_t length) const {
    const std::uint64_t there = file_end_ - std::min(offset, file_end_);
    if (there < length) {
      field.kind = Field::Kind::kNothing;
      field.text.clear();
    }
    return placed(std::move(field), offset, std::min(length, there));
  }

 private:
  template <std::size_t N>
  static std::string_view characters(
      const std::array<std::uint8_t, N>& member) {
    return {reinterpret_cast<const char*>(member.data()), N};
  }

  std::uint64_t offset_;
  std::uint64_t file_end_;
  Wiped<Record> record_;
};

}  // namespace tova_fw_builder
