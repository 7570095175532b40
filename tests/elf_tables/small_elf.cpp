#include "small_elf.h"

namespace {

// Numbers in one byte order.
class Writer {
 public:
  explicit Writer(const SmallElf& elf) : elf_(elf) {}

  Writer& number(std::uint64_t value, int length) {
    for (int i = 0; i < length; ++i) {
      const int shift = 8 * (elf_.big ? length - 1 - i : i);
      text_ += static_cast<char>(value >> shift & 0xFF);
    }
    return *this;
  }
  Writer& half(std::uint64_t value) { return number(value, 2); }
  Writer& word(std::uint64_t value) { return number(value, 4); }
  // What has as many bits as the ELF.
  Writer& address(std::uint64_t value) {
    return number(value, elf_.wide ? 8 : 4);
  }
  const std::string& text() const { return text_; }

 private:
  const SmallElf& elf_;
  std::string text_;
};

std::string section_header(const SmallElf& elf, const SmallElf::Section& from,
                           std::size_t name) {
  const std::uint64_t entry = from.type == 2 ? (elf.wide ? 24 : 16) : 0;
  Writer out(elf);
  out.word(name).word(from.type).address(from.flags).address(from.address);
  out.address(from.offset).address(from.size).word(from.link).word(from.info);
  return out.address(from.align).address(entry).text();
}

std::string segment_header(const SmallElf& elf, const SmallElf::Segment& from) {
  Writer out(elf);
  out.word(from.type);
  if (elf.wide) out.word(5);
  out.address(from.offset).address(from.vaddr).address(from.paddr);
  out.address(from.filesz).address(from.memsz);
  if (!elf.wide) out.word(5);
  return out.address(4).text();
}

std::string symbol_entry(const SmallElf& elf, const SmallElf::Symbol& from,
                         std::size_t name) {
  Writer out(elf);
  out.word(name);
  if (!elf.wide) out.word(from.value).word(from.size);
  out.number(from.info, 1).number(0, 1).half(from.section);
  if (elf.wide) out.address(from.value).address(from.size);
  return out.text();
}

}  // namespace

std::string SmallElf::bytes() const {
  const std::size_t header = wide ? 64 : 52;
  std::string body(0x2100 - header, '\xCC');
  std::string names(1, '\0'), strings(1, '\0');
  std::string table = symbol_entry(*this, {"", 0, 0, 0, 0}, 0);
  for (const Symbol& symbol : symbols) {
    table += symbol_entry(*this, symbol, strings.size());
    strings += symbol.name + '\0';
  }
  std::string programs;
  for (const Segment& segment : segments) {
    programs += segment_header(*this, segment);
  }
  body.replace(0, programs.size(), programs);

  std::vector<Section> all = sections;
  const auto last = static_cast<std::uint32_t>(all.size());
  all.push_back({".symtab", 2, 0, 0, 0x2100, table.size(), 4, last + 2, 1});
  all.push_back({".strtab", 3, 0, 0, 0x2100 + table.size(), strings.size()});
  all.push_back({".shstrtab", 3});
  std::string headers = section_header(*this, {"", 0}, 0);
  for (Section& section : all) {
    const std::size_t name = names.size();
    names += section.name + '\0';
    if (&section == &all.back()) {
      section.offset = 0x2100 + table.size() + strings.size();
      section.size = names.size();
    }
    headers += section_header(*this, section, section.name.empty() ? 0 : name);
  }
  body += table + strings + names;

  Writer out(*this);
  out.half(type).half(machine).word(1).address(0);
  out.address(segments.empty() ? 0 : header).address(header + body.size());
  out.word(0).half(header).half(wide ? 56 : 32).half(segments.size());
  out.half(wide ? 64 : 40).half(all.size() + 1).half(all.size());
  const std::string start = {
      '\x7F', 'E', 'L', 'F', wide ? '\2' : '\1', big ? '\2' : '\1', '\1'};
  return start + std::string(9, '\0') + out.text() + body + headers;
}
