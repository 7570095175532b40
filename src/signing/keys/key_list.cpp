// Reads the key list and makes the public key store. There are no comments in a
// list: a line that looks like one fails as a key of unknown type.
#include "signing/keys/key_list.h"

#include <algorithm>
#include <iterator>
#include <stdexcept>
#include <string_view>

#include "driver/ground/files.h"
#include "driver/ground/line_fields.h"
#include "driver/ground/line_reader.h"
#include "driver/ground/log.h"
#include "driver/ground/wire.h"
#include "signing/keys/key_file.h"

namespace tova_fw_builder {

namespace {

struct KeyTypeValue {
  std::string_view word;
  std::uint32_t value;
};

// The words differ from those of signing, where "release" is the other kind.
constexpr KeyTypeValue key_type_values[] = {{"debug", 1}, {"production", 0}};

// Of the key nothing but its hash outlives this function.
std::shared_ptr<KeyList::KeyData> read_key(const std::string& type_word,
                                           const std::string& key_path) {
  const auto* type =
      std::ranges::find(key_type_values, type_word, &KeyTypeValue::word);
  if (type == std::end(key_type_values)) {
    throw std::runtime_error("Not recognized key type : " + type_word +
                             " file path : " + key_path);
  }
  return std::make_shared<KeyList::KeyData>(KeyList::KeyData{
      type->value, key_path, digest_public_key(*load_key_file(key_path))});
}

}  // namespace

KeyList::KeyList(const std::string& list_path) {
  log_detail("Reading Key list...");
  *this = KeyList(*open_input(list_path));
  path = list_path;
}

KeyList::KeyList(std::istream& list) {
  LineReader lines(list);
  std::string_view line;
  // Behind the last line feed stands an empty line, which is no key; so the
  // first one ends the list.
  while (lines.next(line) && !line.empty()) {
    // What follows the path is ignored; hence no path can hold blanks.
    LineFields words(line);
    const std::string type_word(words.word());
    keys.push_back(read_key(type_word, std::string(words.word())));
  }
  write_record(*stream, Le32(static_cast<std::uint32_t>(keys.size())));
  for (const auto& key : keys) {
    write_record(*stream, StoreEntry{key->key_type, key->hash});
  }
}

}  // namespace tova_fw_builder
