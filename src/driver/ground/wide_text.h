// driver/ground/wide_text.h
// The text that functions of Windows take and give. For that system alone.
#pragma once

#include <string>
#include <string_view>

namespace tova_fw_builder {

// What can't be converted becomes U+FFFD.
std::wstring wide_text(std::string_view utf8);
std::string utf8_text(std::wstring_view wide);

}  // namespace tova_fw_builder
