// inspect/format.h
// The formats that are told apart.
#pragma once

#include <optional>
#include <span>
#include <string_view>

namespace tova_fw_builder {

enum class Format {
  kBinary,             // of 1.8, 2.5 and 3.0
  kManifest15,         // unsigned or signed
  kMetadata,           // the manifest of 1.8 and 2.5
  kExtendedManifest,   //
  kPackageDescriptor,  //
  kKeyPair,            //
  kPublicKey,          //
  kEmbedded,           // anything else: what is found inside
};

// "binary", "manifest-1.5" and so on, in the order of the enumeration.
std::span<const std::string_view> format_names();
std::string_view format_name(Format format);
std::optional<Format> format_named(std::string_view name);

}  // namespace tova_fw_builder
