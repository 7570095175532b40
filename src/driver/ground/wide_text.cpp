#include "driver/ground/wide_text.h"

#include <windows.h>

namespace tova_fw_builder {

std::wstring wide_text(std::string_view utf8) {
  const int length = static_cast<int>(utf8.size());
  std::wstring wide(utf8.size(), L'\0');  // never more units than bytes
  wide.resize(static_cast<std::size_t>(
      MultiByteToWideChar(CP_UTF8, 0, utf8.data(), length, wide.data(),
                          static_cast<int>(wide.size()))));
  return wide;
}

std::string utf8_text(std::wstring_view wide) {
  const int length = static_cast<int>(wide.size());
  std::string utf8(3 * wide.size(), '\0');  // no unit takes more
  utf8.resize(static_cast<std::size_t>(
      WideCharToMultiByte(CP_UTF8, 0, wide.data(), length, utf8.data(),
                          static_cast<int>(utf8.size()), nullptr, nullptr)));
  return utf8;
}

}  // namespace tova_fw_builder
