#include "signing/keys/key_file.h"

#include <gtest/gtest.h>

#include "signing/keys/key_list.h"
#include "signing/keys/key_samples.h"
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

TEST(KeyFile, AllFourForms) {
  TempDir dir;
  const CapturedLog quiet;
  const auto shown = [](auto field) {  // in the order of the file
    return std::string(field.rbegin(), field.rend());
  };
  for (const std::string& e : {kE3, std::string("\x05")}) {
    for (const bool pair : {false, true}) {
      const std::string n = counting(256, 9), d = counting(256, 77);
      const std::string file = pair ? pair_key_file(e, kModulus, n, d)
                                    : public_key_file(e, kModulus);
      const auto key = load_key_file(dir.write("key", file + "behind"));
      EXPECT_EQ(e, std::string(key->pub_exponent.begin(),
                               key->pub_exponent.begin() + e.size()));
      EXPECT_EQ(0, key->pub_exponent[e.size()]);
      EXPECT_EQ(kModulus, shown(key->pub_modulus));
      EXPECT_EQ(pair ? n : filled("", 256), shown(key->priv_modulus));
      EXPECT_EQ(pair ? d : filled("", 256), shown(key->priv_d));
    }
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
  // Nothing is read of a file shorter than the search of the form.
  const CapturedLog detail(3);
  message_of([&] { load_key_file(dir.write("key", kPublic.substr(0, 99))); });
  EXPECT_EQ("Reading keys from: " + dir.file("key") + "\n", detail.text());
  message_of([&] { load_key_file(dir.write("key", kPublic.substr(0, 100))); });
  EXPECT_NE(std::string::npos, detail.text().find("pub_exponent"));
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

KeyList list_of(const std::string& text) {
  std::istringstream in(text);
  return KeyList(in);
}

// The hashes are from Python's hashlib, over the modulus reversed and e in four
// bytes.
TEST(KeyList, StoreOfTypesAndHashes) {
  TempDir dir;
  CapturedLog log;
  const std::string a = dir.write("a", kPublic);
  const std::string b = dir.write("b", kPair);
  const KeyList list =
      list_of("debug " + a + " more\n\tproduction\t" + b + "\r\ndebug " + b);
  const std::string hash =
      "\xaa\x17\xc0\x37\x67\xd0\x61\x7b\x93\x3d\xfa\x7a\x71\xe5\x3b\xe0"
      "\x61\x9a\xe7\x4b\x20\x3d\xd6\x4a\x5a\xe8\xbe\x01\x78\x29\x93\xa6";
  EXPECT_EQ(std::string("\3\0\0\0\1\0\0\0", 8) + hash + std::string(4, '\0') +
                hash + std::string("\1\0\0\0", 4) + hash,
            list.stream->str());
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
      {key + std::string("\0tail\n", 6) + key, 2},
  };
  for (const auto& c : cases) {
    const std::string store = list_of(c.text).stream->str();
    EXPECT_EQ(c.count, store[0]);
    EXPECT_EQ(4u + 36u * static_cast<unsigned>(c.count), store.size());
  }
}

TEST(KeyList, RefusedLines) {
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
    EXPECT_EQ(c.message, message_of([&] { list_of(c.text); }));
  }
  EXPECT_EQ("Failed to open file: /none/list",
            message_of([] { KeyList("/none/list"); }));
  const TempDir dir;
  const std::string empty = dir.write("list", "");
  EXPECT_EQ(empty, KeyList(empty).path);
}

}  // namespace
}  // namespace tova_fw_builder
