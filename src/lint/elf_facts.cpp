// Section headers and symbols of ELFs of 32 and 64 bits in either byte order.
// Every number in the file may be a lie: all reads are held to its length.
#include "lint/elf_facts.h"

#include <algorithm>
#include <span>
#include <string_view>
#include <utility>
#include <vector>

#include "driver/ground/files.h"
#include "driver/ground/line_reader.h"

namespace tova_fw_builder {

namespace {

using Bytes = std::vector<std::uint8_t>;

constexpr std::uint32_t kSymbolTable = 2;
// More than any linker makes; what is larger isn't looked at.
constexpr std::uint64_t kLargestTable = 64 << 20;
// The same of all names together: a file may name one text any number of times.
constexpr std::size_t kMostText = 64 << 20;

class Reader {
 public:
  explicit Reader(const std::string& path)
      : in_(open_binary_input(path)), length_(file_length(*in_, path)) {}

  std::uint64_t length() const { return length_; }

  // Empty if the file doesn't have them all.
  Bytes bytes(std::uint64_t offset, std::uint64_t size) {
    if (size > kLargestTable || offset > length_ || size > length_ - offset) {
      return {};
    }
    Bytes read(size);
    in_->clear();
    in_->seekg(static_cast<std::streamoff>(offset));
    in_->read(reinterpret_cast<char*>(read.data()),
              static_cast<std::streamsize>(size));
    if (static_cast<std::uint64_t>(in_->gcount()) != size) return {};
    return read;
  }

 private:
  std::unique_ptr<std::ifstream> in_;
  std::uint64_t length_;
};

// How the numbers of one file stand.
struct Form {
  bool is_wide = false;
  bool is_big_endian = false;

  std::uint64_t number(std::span<const std::uint8_t> bytes, std::size_t offset,
                       std::size_t size) const {
    std::uint64_t value = 0;
    for (std::size_t i = 0; i < size; ++i) {
      const std::size_t at = is_big_endian ? i : size - 1 - i;
      value = value << 8 | bytes[offset + at];
    }
    return value;
  }
  // A field that has another place and width in files of 64 bits.
  std::uint64_t word(std::span<const std::uint8_t> bytes, std::size_t narrow,
                     std::size_t wide) const {
    return is_wide ? number(bytes, wide, 8) : number(bytes, narrow, 4);
  }
  std::size_t header_size() const { return is_wide ? 64 : 40; }
  std::size_t symbol_size() const { return is_wide ? 24 : 16; }
};

struct Header {
  std::uint32_t name;
  std::uint32_t type;
  std::uint64_t address;
  std::uint64_t offset;
  std::uint64_t size;
  std::uint32_t link;
};

std::vector<Header> read_headers(Reader& reader, const Form& form,
                                 std::span<const std::uint8_t> start,
                                 std::uint32_t& names) {
  const std::uint64_t offset = form.word(start, 32, 40);
  std::uint64_t count = form.number(start, form.is_wide ? 60 : 48, 2);
  names =
      static_cast<std::uint32_t>(form.number(start, form.is_wide ? 62 : 50, 2));
  const std::size_t size = form.header_size();
  if (form.number(start, form.is_wide ? 58 : 46, 2) != size) return {};
  const Bytes first = reader.bytes(offset, size);
  if (first.empty()) return {};
  // What doesn't fit the fields stands in the first header.
  if (count == 0) count = form.word(first, 20, 32);
  if (names == 0xFFFF) {
    names = static_cast<std::uint32_t>(
        form.number(first, form.is_wide ? 40 : 24, 4));
  }
  if (count > kLargestTable / size) return {};
  const Bytes table = reader.bytes(offset, count * size);
  std::vector<Header> headers;
  for (std::size_t at = 0; at < table.size(); at += size) {
    const auto one = std::span(table).subspan(at, size);
    headers.push_back({static_cast<std::uint32_t>(form.number(one, 0, 4)),
                       static_cast<std::uint32_t>(form.number(one, 4, 4)),
                       form.word(one, 12, 16), form.word(one, 16, 24),
                       form.word(one, 20, 32),
                       static_cast<std::uint32_t>(
                           form.number(one, form.is_wide ? 40 : 24, 4))});
  }
  return headers;
}

// Empty for one that no line of a table has room for: what asks for names has
// them from there. One text of any length may be the name of many.
std::string_view text_at(const Bytes& texts, std::uint64_t offset) {
  if (offset >= texts.size()) return {};
  const std::string_view head(
      reinterpret_cast<const char*>(texts.data()) + offset,
      std::min<std::size_t>(texts.size() - offset, kLongestLine + 1));
  const std::size_t end = head.find('\0');
  return end == head.npos ? std::string_view() : head.substr(0, end);
}

void read_symbols(Reader& reader, const Form& form,
                  const std::vector<Header>& headers, const Header& table,
                  const std::map<std::string, bool>& wanted, ElfFacts& out) {
  if (table.link >= headers.size()) return;
  const Header& texts = headers[table.link];
  const Bytes names = reader.bytes(texts.offset, texts.size);
  const Bytes symbols = reader.bytes(table.offset, table.size);
  const std::size_t size = form.symbol_size();
  out.has_symbols = symbols.size() >= 2 * size && !names.empty();
  std::size_t text = 0;
  for (std::size_t at = 0; at + size <= symbols.size(); at += size) {
    const auto one = std::span(symbols).subspan(at, size);
    const std::string name(text_at(names, form.number(one, 0, 4)));
    if (!wanted.contains(name)) continue;
    text += name.size();
    if (text > kMostText) {
      out.has_symbols = false;
      return;
    }
    out.symbols.emplace(name, static_cast<std::uint32_t>(form.word(one, 4, 8)));
  }
}

}  // namespace

ElfFacts read_elf_facts(const std::string& path,
                        const std::map<std::string, bool>& wanted_symbols) {
  Reader reader(path);
  ElfFacts out;
  out.length = reader.length();
  const Bytes start = reader.bytes(0, std::min<std::uint64_t>(out.length, 64));
  constexpr std::uint8_t kMark[] = {0x7F, 'E', 'L', 'F'};
  if (start.size() < 52 || !std::equal(kMark, kMark + 4, start.begin())) {
    return out;
  }
  const Form form{start[4] == 2, start[5] == 2};
  if (form.is_wide && start.size() < 64) return out;
  std::uint32_t names_number = 0;
  const auto headers = read_headers(reader, form, start, names_number);
  if (names_number >= headers.size()) return out;
  const Bytes names =
      reader.bytes(headers[names_number].offset, headers[names_number].size);
  // The first table alone: each could name the largest text for its own.
  bool has_table = false;
  std::size_t text = 0;
  for (std::size_t i = 1; i < headers.size(); ++i) {
    const Header& header = headers[i];
    const std::string_view name = text_at(names, header.name);
    text += name.size();
    if (text > kMostText) {
      ElfFacts unread;
      unread.length = out.length;
      return unread;
    }
    out.sections.emplace(
        name, ElfFacts::Section{static_cast<std::uint32_t>(header.address),
                                static_cast<std::uint32_t>(header.offset),
                                static_cast<std::uint32_t>(header.size)});
    if (header.type == kSymbolTable && !std::exchange(has_table, true)) {
      read_symbols(reader, form, headers, header, wanted_symbols, out);
    }
  }
  return out;
}

}  // namespace tova_fw_builder
