// companion/ground/json.h
// The only place that knows the JSON library.
#pragma once

#include <nlohmann/json.hpp>
#include <string>
#include <string_view>

#include "companion/ground/trouble.h"

namespace tova_fw_builder {

// Members keep the order in which they were added.
using Json = nlohmann::ordered_json;

// The document with two blanks a level and one newline at its end. Bytes that
// aren't UTF-8 become U+FFFD, so that what is printed is always JSON; what
// would steer a terminal is escaped.
std::string json_text(const Json& document);

// A small value of such a document, in one line.
std::string json_line(const Json& value);

// A text as a string of such a document, with its quotation marks.
std::string json_string(std::string_view text);

// [{file, text}], as each document has it that tells of files.
Json troubles_json(const Troubles& troubles);

}  // namespace tova_fw_builder
