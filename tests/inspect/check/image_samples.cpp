#include "inspect/check/image_samples.h"

#include "crypto/sha_hash.h"
#include "support/bytes.h"

namespace {

// By Python's hashlib.
constexpr char kBaseHash[] =
    "99d6e55848e9c8ec1b3f9cff5424fd80cb7a9755241539a8668560d80d00ba6c";
constexpr char kAddonHash[] =
    "6896d9ea3f73a4434f5832bc65714e7d066f177373f36f34dc8a6f735daa41b1";

constexpr unsigned kCode = 0x1F;    // contents, alloc, load, readonly, code
constexpr unsigned kData = 0x2F;    // contents, alloc, load, readonly, data
constexpr unsigned kNoLoad = 0x1B;  // of what is built in
constexpr unsigned kBss = 0x02;

const std::string kBase = std::string(8192, 'T') + std::string(4096, 'R');
const std::string kAddon(4096, 'A');

struct Places {
  std::uint32_t base = 0;  // file_off of each module's contents
  std::uint32_t addon = 0;
  bool has_hashes = true;
  bool all_alike = false;  // in 3.0
};

void add_entry(Bytes& to, const std::string& name, char uuid,
               std::uint32_t type, const std::string& hash,
               std::uint32_t entry) {
  to.text("$TME").text(filled(name, 8)).fill(16, uuid).u32(type).text(hash);
  to.u32(entry).u16(0).u16(0).u32(1).u16(1).u16(1);
}

void add_segment(Bytes& to, unsigned flags, unsigned type, unsigned pages,
                 std::uint32_t address, std::uint32_t place) {
  to.u8(flags).u8(type).u16(pages).u32(address).u32(place);
}

// Header, entries and a table of one symbol: 52 + 3 * 116 + 26 bytes.
std::string tables(unsigned pages, const Places& places) {
  const std::string none(32, '\0');
  Bytes bytes;
  bytes.text("$TM1").u32(52).text(filled("SAMPLE", 8)).u32(pages);
  bytes.u32(0x10).u32(0xFF).u16(1).u16(2).u16(3).u16(4);
  bytes.u32(3).u32(0x20000000).u32(4096).u32(0x2000);

  const std::uint32_t rodata = places.base + (places.all_alike ? 0 : 8192);
  add_entry(bytes, "base", 'B', 1,
            places.has_hashes ? bytes_of(kBaseHash) : none, 0x10000000);
  add_segment(bytes, kCode, 0, 2, 0x10000000, places.base);
  add_segment(bytes, kData, 1, 1, 0x10002000, rodata);
  add_segment(bytes, kBss, 2, 1, 0x20000000, 0);
  add_entry(bytes, "in", 'I', 0, none, 0x10000100);
  add_segment(bytes, kNoLoad, 0, 1, 0x10000000, 0);
  add_segment(bytes, 0, 15, 0, 0, 0);
  add_segment(bytes, 0, 15, 0, 0, 0);
  add_entry(bytes, "addon1", 'A', 1,
            places.has_hashes ? bytes_of(kAddonHash) : none, 0x10003000);
  add_segment(bytes, kCode, 0, 1, 0x10003000, places.addon);
  add_segment(bytes, 0, 15, 0, 0, 0);
  add_segment(bytes, 0, 15, 0, 0, 0);

  bytes.u32(1).u8(1).u8(0).u16(0).u32(20).u32(0x10000040);
  return bytes.u32(6).text(std::string("start\0", 6));
}

std::string manifest() {
  // The manifest counts as 4096 bytes ahead of the contents. Behind a module
  // that isn't of type 0, places go on by its own length.
  const Places places = {4096, 4096 + 12288};
  Bytes bytes;
  bytes.u32(6).u32(161).u32(0x10000).u32(0).u32(0x7A5C).u32(0x20240229);
  bytes.u32(1024).u32(64).u32(64).u32(1).fill(88).fill(516);
  return bytes.text(tables(4, places)).fill_to(4096 + 26);
}

template <typename Hash>
std::string digest_of(const std::string& bytes) {
  Hash hash;
  hash.update(reinterpret_cast<const std::uint8_t*>(bytes.data()),
              bytes.size());
  typename Hash::Digest digest{};
  hash.final(digest.data());
  return {digest.begin(), digest.end()};
}

std::string metadata(const std::string& binary, bool is_18) {
  using namespace tova_fw_builder;
  Bytes bytes;
  bytes.u32(17).u32(is_18 ? 96 : 112).u32(3).fill(24).u32(0);
  bytes.text(is_18 ? digest_of<Sha256Hash>(binary)
                   : digest_of<Sha384Hash>(binary));
  return bytes.u32(8192)
      .u32(8192 + static_cast<std::uint32_t>(binary.size()))
      .fill(16);
}

std::string extended() {
  Bytes bytes;
  bytes.text("$TE1").u32(16 + 3 * 40).u32(1).u32(3);
  for (const char uuid : {'B', 'I', 'A'}) {
    bytes.u32(40).fill(16, uuid).u16(1).u16(0).u16(0).u16(uuid & 7).u32(2);
    bytes.fill(8);
  }
  return bytes;
}

std::string package(bool is_15) {
  return std::string("# TOVA FW Image Builder ver Nov 21 2026 11:00:43\n") +
         "\nver 1.2.3.4\nbld " + (is_15 ? "20240229" : "0") + "\nmft " +
         (is_15 ? '6' : '4') + "\nflg 0x10\nsku 0xff\n\ncfg { base in }\n\n" +
         "bin /none/firmware.bin 'Base '\nbin /none/" + kAddonFile +
         " 'Addon ' ver. 1.0.0.1\n";
}

}  // namespace

std::size_t entries_offset(const std::string& generation) {
  return 52 + (generation == "1.5" ? 644 : generation == "3.0" ? 0 : 64);
}

ImageSample image_sample(const std::string& generation) {
  ImageSample files = {{"firmware.man.ext", extended()},
                       {"firmware.pkg", package(generation == "1.5")}};
  std::string& binary = files["firmware.bin"];
  if (generation == "1.5") {
    files["firmware.man"] = manifest();
    binary = kBase;
    files[kAddonFile] = kAddon;
  } else if (generation == "3.0") {
    const Places places = {32768, 32768, false, true};
    binary =
        Bytes().text(tables(8, places)).fill_to(32768).text(kBase).text(kAddon);
    files["firmware.man"] = "";
  } else {
    const Places places = {32768, 32768 + 12288};
    binary = Bytes()
                 .fill(64)
                 .text(tables(12, places))
                 .fill_to(24640)
                 .text(kBase)
                 .text(kAddon);
    files["firmware.man"] = metadata(binary, generation == "1.8");
  }
  return files;
}
