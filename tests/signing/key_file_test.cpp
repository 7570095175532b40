#include "signing/key_file.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "signing/key_list.h"
#include "signing/key_samples.h"
#include "support/captured_log.h"
#include "support/temp_dir.h"

namespace tova_fw_builder {
namespace {

constexpr char kNotFound[] = "Expected std::string not found";
const std::string kE3 = "\x01\x02\x03";
const std::string kModulus = counting(256, 1);
const std::string kPublic = public_key_file(kE3, kModulus);
const std::string kPair =
    pair_key_file(kE3, kModulus, counting(256, 9), counting(256, 77));

template <std::size_t kSize>
std::string reversed(const std::array<std::uint8_t, kSize>& bytes) {
  return {bytes.rbegin(), bytes.rend()};
}

TEST(KeyFile, AllFourForms) {
  TempDir dir;
  CapturedLog log;
  for (const std::string& e : {kE3, std::string("\x05")}) {
    const std::string e4 = e + std::string(4 - e.size(), '\0');
    for (const bool pair : {true, false}) {
      const std::string file =
          pair ? pair_key_file(e, kModulus, counting(256, 9), counting(256, 77))
               : public_key_file(e, kModulus);
      const auto key = load_key_file(dir.write("key", file + "behind"));
      const std::string none(256, '\0');
      EXPECT_EQ(
          e4, std::string(key->pub_exponent.begin(), key->pub_exponent.end()));
      EXPECT_EQ(kModulus, reversed(key->pub_modulus));
      EXPECT_EQ(
          pair ? e4 : std::string(4, '\0'),
          std::string(key->priv_exponent.begin(), key->priv_exponent.end()));
      EXPECT_EQ(pair ? counting(256, 9) : none, reversed(key->priv_modulus));
      EXPECT_EQ(pair ? counting(256, 77) : none, reversed(key->priv_d));
      EXPECT_EQ(pair ? counting(128, 'c') : std::string(128, '\0'),
                reversed(key->priv_c));
    }
  }
}

// Label and first dumped byte of each field, which tells its order and place.
TEST(KeyFile, LogsEachFieldAtDetail) {
  TempDir dir;
  const std::string path = dir.write("key", kPair);
  std::string info;
  {
    CapturedLog log;
    load_key_file(path);
    info = log.text();
  }
  EXPECT_EQ("Reading keys from: " + path + "\n", info);

  CapturedLog log(3);
  load_key_file(path);
  const struct {
    const char* label;
    int first;
    int length;
  } fields[] = {
      {"priv_modulus", 9, 256}, {"priv_d", 77, 256},  {"priv_p", 'p', 128},
      {"priv_q", 'q', 128},     {"priv_a", 'a', 128}, {"priv_b", 'b', 128},
      {"priv_c", 'c', 128},
  };
  std::string text = log.text();
  const std::string head = info + "pub_exponent\n01 02 03 \npub_modulus\n00 ff";
  EXPECT_EQ(head, text.substr(0, head.size()));
  EXPECT_NE(text.npos,
            text.find("02 01 \n\npriv_exponent\n01 02 03 \npriv_mod"));
  for (const auto& field : fields) {
    const std::size_t at = text.find(std::string("\n") + field.label + "\n");
    ASSERT_NE(text.npos, at) << field.label;
    const char* digits = "0123456789abcdef";
    const int last = (field.first + field.length - 1) & 255;
    EXPECT_EQ(digits[last >> 4],
              text[at + 2 + std::string(field.label).size()]);
    EXPECT_EQ(digits[last & 15],
              text[at + 3 + std::string(field.label).size()]);
    text.erase(0, at + 1);
  }
}

// A cut in any field or piece and a change in any literal piece are refused,
// and where the form's first piece is hit, so is the file's head shown.
TEST(KeyFile, CutAndDamagedFiles) {
  TempDir dir;
  CapturedLog log;
  for (const std::string& file : {kPublic, kPair}) {
    for (std::size_t length = 0; length < file.size();
         length += length < 110 ? 1 : 7) {
      const std::string cut = file.substr(0, length);
      const std::string message =
          message_of([&] { load_key_file(dir.write("key", cut)); });
      const bool known = cut.find("(1:e3:") != cut.npos;
      EXPECT_EQ(known ? kNotFound : "Key type not recognized :\r\n" + cut,
                message)
          << length;
    }
  }
  for (const char* piece : {"11:private", "(1:d", "(1:p", "(1:c", "))))"}) {
    std::string damaged = kPair;
    damaged[damaged.rfind(piece) + 2] ^= 1;
    EXPECT_EQ(kNotFound,
              message_of([&] { load_key_file(dir.write("key", damaged)); }));
  }
}

TEST(KeyFile, FormIsSoughtInTheFirst100Bytes) {
  TempDir dir;
  CapturedLog log;
  const auto message = [&dir](const std::string& file) {
    return message_of([&] { load_key_file(dir.write("key", file)); });
  };
  EXPECT_EQ(kNotFound, message("x" + kPublic));
  // A zero byte ahead doesn't end the search, the piece may end at byte 100.
  EXPECT_EQ(kNotFound, message(std::string(60, '\0') + kPublic));
  EXPECT_EQ("Key type not recognized :\r\nab",
            message(std::string("ab\0", 3) + std::string(58, 'x') + kPublic));
  EXPECT_EQ("Key type not recognized :\r\n" + std::string(100, 'y'),
            message(std::string(200, 'y')));
  EXPECT_EQ("Failed to open file: " + dir.file("none"),
            message_of([&] { load_key_file(dir.file("none")); }));
}

// A file that ends inside a field still logs it, as far as it was read.
TEST(KeyFile, ShortFieldIsLogged) {
  TempDir dir;
  CapturedLog log(3);
  const std::string cut = kPublic.substr(0, kPublic.find(":n256:") + 6 + 60);
  EXPECT_EQ(kNotFound,
            message_of([&] { load_key_file(dir.write("key", cut)); }));
  EXPECT_NE(std::string::npos, log.text().find("00 00 00 00 3c 3b 3a 39"));
}

std::string store_of(const KeyList& list) { return list.stream->str(); }

// The hashes are from Python's hashlib, over the modulus reversed and e in four
// bytes.
TEST(KeyList, StoreOfTypesAndHashes) {
  TempDir dir;
  CapturedLog log;
  const std::string a = dir.write("a", kPublic);
  const std::string b = dir.write("b", kPair);
  const KeyList list(dir.write(
      "list", "debug " + a + " more\n\tproduction\t" + b + "\r\ndebug " + b));
  const std::string hash =
      "\xaa\x17\xc0\x37\x67\xd0\x61\x7b\x93\x3d\xfa\x7a\x71\xe5\x3b\xe0"
      "\x61\x9a\xe7\x4b\x20\x3d\xd6\x4a\x5a\xe8\xbe\x01\x78\x29\x93\xa6";
  EXPECT_EQ(std::string("\3\0\0\0\1\0\0\0", 8) + hash + std::string(4, '\0') +
                hash + std::string("\1\0\0\0", 4) + hash,
            store_of(list));
  EXPECT_EQ(3u, list.keys.size());
  EXPECT_EQ(b, list.keys[1]->path);
  EXPECT_EQ("Reading keys from: " + a + "\nReading keys from: " + b +
                "\nReading keys from: " + b + "\n",
            log.text());
}

TEST(KeyList, WhereTheListEnds) {
  TempDir dir;
  CapturedLog log;
  const std::string key = "debug " + dir.write("k", kPublic);
  const struct {
    std::string text;
    char count;
  } cases[] = {
      {"", 0},
      {"\n" + key + "\n", 0},
      {key + "\n\n" + key + "\n", 1},
      {key + std::string(2000, ' ') + "\n" + key + "\n", 1},
      {key + std::string(1023 - key.size(), ' ') + "\n" + key + "\n", 2},
      {key + std::string("\0tail\n", 6) + key, 2},
  };
  for (const auto& c : cases) {
    const std::string store = store_of(KeyList(dir.write("list", c.text)));
    EXPECT_EQ(c.count, store[0]);
    EXPECT_EQ(4u + 36u * static_cast<unsigned>(c.count), store.size());
  }
}

TEST(KeyList, RefusedLines) {
  TempDir dir;
  CapturedLog log;
  const struct {
    const char* text;
    const char* message;
  } cases[] = {
      {"release path", "Not recognized key type : release file path : path"},
      {"# our keys", "Not recognized key type : # file path : our"},
      {"  ", "Not recognized key type :  file path : "},
      {"debug", "Failed to open file: "},
      {"production /none x", "Failed to open file: /none"},
  };
  for (const auto& c : cases) {
    const std::string list = dir.write("list", c.text);
    EXPECT_EQ(c.message, message_of([&] { KeyList{list}; }));
  }
  EXPECT_EQ("Failed to open file: /none/list",
            message_of([] { KeyList("/none/list"); }));
}

}  // namespace
}  // namespace tova_fw_builder
