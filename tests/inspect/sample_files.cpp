#include "inspect/sample_files.h"

Bytes& Bytes::text(const std::string& bytes) {
  bytes_ += bytes;
  return *this;
}

Bytes& Bytes::u8(unsigned value) {
  bytes_ += static_cast<char>(value & 0xFF);
  return *this;
}

Bytes& Bytes::u16(unsigned value) { return u8(value).u8(value >> 8); }

Bytes& Bytes::u32(std::uint32_t value) {
  return u16(value & 0xFFFF).u16(value >> 16);
}

Bytes& Bytes::fill(std::size_t count, char byte) {
  bytes_.append(count, byte);
  return *this;
}

std::string header_tables(unsigned pages, std::uint32_t contents) {
  Bytes bytes;
  bytes.text("$TM1").u32(52).text("TINY").fill(4);
  bytes.u32(pages).u32(0x10).u32(0xFF).u16(1).u16(2).u16(3).u16(4);
  bytes.u32(2).u32(0x20000000).u32(4096).u32(0x2000);
  // Loadable, started, LL, core type 2: bits 0, 4, 5 and 10.
  bytes.text("$TME").text("eins").fill(4).fill(16, '\x5A').u32(0x431);
  bytes.fill(32, '\x77').u32(0x10000040).u16(0).u16(0).u32(3).u16(8).u16(2);
  bytes.u8(0x1F).u8(0).u16(1).u32(0x10000000).u32(contents);
  bytes.u8(0x2F).u8(1).u16(1).u32(0x10001000).u32(contents + 4096);
  bytes.u8(0x02).u8(2).u16(3).u32(0x20000000).u32(0);
  // Built in; no rodata and no bss.
  bytes.text("$TME").text("zwei").fill(4).fill(16, '\x5B').u32(0);
  bytes.fill(32).u32(0x10000800).u16(0).u16(1).u32(1).u16(1).u16(1);
  bytes.u8(0x1B).u8(0).u16(1).u32(0x10000000).u32(0);
  bytes.u32(0xF00).u32(0).u32(0).u32(0xF00).u32(0).u32(0);
  for (unsigned number = 1; number <= 11; ++number) bytes.u32(number);
  // Three exported, two with a record: the names stand 3 * 12 + 8 behind.
  bytes.u32(3);
  bytes.u8(1).u8(0).u16(0).u32(44).u32(0x10000044);
  bytes.u8(1).u8(1).u16(0).u32(46).u32(0x10000804);
  bytes.u32(4).text(std::string("a\0b\0", 4));
  return bytes;
}

std::string binary_18() {
  // Pages from the signed file's start: 32768 + 2 * 4096 = 10 * 4096.
  return Bytes()
      .fill(64)
      .text(header_tables(10, 32768))
      .fill_to(24640)
      .fill(8192, 'c');
}

std::string binary_30() {
  std::string tables = header_tables(8, 32768);
  // Its header doesn't know where the second segment is.
  const std::size_t rodata = 52 + 92 + 8;
  tables.replace(rodata, 4, tables.substr(rodata - 12, 4));
  tables.replace(52 + 32, 32, std::string(32, '\0'));  // nor any hash
  return Bytes().text(tables).fill_to(32768).fill(8192, 'c');
}

std::string manifest_15(bool is_signed) {
  Bytes bytes;
  bytes.u32(6).u32(161).u32(0x10000).u32(is_signed ? 0x80000000 : 0);
  bytes.u32(0x7A5C).u32(0x20240229).u32(1024).u32(64).u32(64).u32(1).fill(88);
  if (is_signed) {
    bytes.text("\x01").fill(254, '\x02').text("\x03").u32(65537);
    bytes.text("\x04").fill(254, '\x05').text("\x06");
  } else {
    bytes.fill(516);
  }
  bytes.text(header_tables(3, 4096));
  // 52 + 2 * 116 + 44 = 328 and 644 are 972, so 3124 zeros: behind the symbol
  // table, of 36 bytes, which `size` doesn't count.
  return bytes.fill_to(is_signed ? 4096 : 4096 + 36);
}

std::string metadata_18() {
  return Bytes()
      .u32(17)
      .u32(96)
      .u32(3)
      .fill(24)
      .u32(0)
      .fill(32, '\x42')
      .u32(8192)
      .u32(8192 + 32832)
      .fill(16);
}

std::string extended_manifest() {
  Bytes bytes;
  bytes.text("$TE1").u32(16 + 68 + 40).u32(1).u32(2);
  bytes.u32(68).fill(16, '\x5A').u16(1).u16(2).u16(3).u16(4).u32(27).u32(0);
  bytes.u16(1).u16(1);
  bytes.u16(7).u16(0x8001);
  bytes.u16(1).u16(0).u32(2).u32(0x1FF).u16(4).u16(0).u32(5).u32(6);
  bytes.u32(40).fill(16, '\x5B').u16(0).u16(0).u16(0).u16(0).u32(3).u32(0);
  return bytes.u16(0).u16(0);
}

std::string package_descriptor() {
  return "# TOVA FW Image Builder ver Nov 21 2026 11:00:43\n"
         "\n"
         "ver 1.2.3.4\n"
         "bld 20240229\n"
         "mft 6\n"
         "flg 0x10\n"
         "sku 0xff\n"
         "\n"
         "cfg { eins zwei }\n"
         "\n"
         "bin /tmp/tiny.bin 'It's tiny '\n"
         "bin /tmp/tiny_5A.bin 'Addon ' ver. 10.0.0.1\n";
}

namespace {

std::string public_part() {
  return Bytes()
      .text("(10:public-key(16:rsa-pkcs1-sha256(1:e3:")
      .text(std::string("\x01\x00\x01", 3))
      .text(")(1:n256:\x12")
      .fill(255, '\x11')
      .text(")))");
}

}  // namespace

std::string public_key() { return public_part(); }

std::string key_pair() {
  Bytes bytes;
  bytes.text("(8:sequence" + public_part());
  bytes.text("(11:private-key(16:rsa-pkcs1-sha256(1:e3:");
  bytes.text(std::string("\x01\x00\x01", 3)).text(")(1:n256:\x12");
  bytes.fill(255, '\x11');
  for (const char* number : {"d256", "p128", "q128", "a128", "b128", "c128"}) {
    bytes.text(std::string(")(1:") + number + ':');
    const int length = number[0] == 'd' ? 256 : 128;
    for (int i = 0; i < length; i += 8) bytes.text("SECRET-").text({number[0]});
  }
  return bytes.text("))))");
}

std::vector<SampleFile> sample_files() {
  return {{"binary", binary_18()},
          {"binary", binary_30()},
          {"manifest-1.5", manifest_15(false)},
          {"manifest-1.5", manifest_15(true)},
          {"metadata", metadata_18()},
          {"extended-manifest", extended_manifest()},
          {"package-descriptor", package_descriptor()},
          {"key-pair", key_pair()},
          {"public-key", public_key()}};
}
