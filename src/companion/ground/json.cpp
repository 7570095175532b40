#include "companion/ground/json.h"

#include <algorithm>

#include "companion/ground/printable.h"

namespace tova_fw_builder {

namespace {

// The same document, with what a terminal would obey as \uNNNN. It is UTF-8,
// and none of these characters has more than three bytes.
std::string escaped(std::string_view json) {
  constexpr char kDigits[] = "0123456789abcdef";
  std::string text;
  while (!json.empty()) {
    const auto byte = [&json](std::size_t i) -> unsigned {
      return static_cast<unsigned char>(json[i]);
    };
    const std::size_t shown = byte(0) == '\n' ? 1 : printable_length(json);
    if (shown != 0) {
      text += json.substr(0, shown);
      json.remove_prefix(shown);
      continue;
    }
    const std::size_t length = byte(0) < 0x80 ? 1 : byte(0) < 0xE0 ? 2 : 3;
    const unsigned character =
        length == 1 ? byte(0)
        : length == 2
            ? (byte(0) & 0x1F) << 6 | (byte(1) & 0x3F)
            : (byte(0) & 0x0F) << 12 | (byte(1) & 0x3F) << 6 | (byte(2) & 0x3F);
    text += "\\u";
    for (const int shift : {12, 8, 4, 0}) {
      text += kDigits[character >> shift & 15];
    }
    json.remove_prefix(length);
  }
  return text;
}

}  // namespace

std::string json_text(const Json& document) {
  return escaped(document.dump(2, ' ', false, Json::error_handler_t::replace)) +
         '\n';
}

std::string json_line(const Json& value) {
  return escaped(value.dump(-1, ' ', false, Json::error_handler_t::replace));
}

std::string json_string(std::string_view text) {
  const auto is_plain = [](char c) {
    return c >= 0x20 && c < 0x7F && c != '"' && c != '\\';
  };
  if (std::ranges::all_of(text, is_plain)) {
    return std::string(1, '"').append(text) += '"';
  }
  return json_line(Json(text));
}

Json troubles_json(const Troubles& troubles) {
  Json list = Json::array();
  for (const Trouble& trouble : troubles.list()) {
    list.push_back({{"file", trouble.file}, {"text", trouble.text}});
  }
  return list;
}

}  // namespace tova_fw_builder
