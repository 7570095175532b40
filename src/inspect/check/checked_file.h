// inspect/check/checked_file.h
// What goes into a check; and of what comes out, the files that it can't judge.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "inspect/byte_source.h"
#include "inspect/inspected.h"
#include "signing/keys/public_key_hash.h"

namespace tova_fw_builder {

// A file of the image. What has no form of its own, such as the contents of
// 1.5, is told by its name, its length and the other files.
struct CheckedFile {
  std::string path;
  ByteSource source;
  Inspected inspected;
  bool in_folder =
      false;  // nobody named it: it lies in a folder that was given
};

struct CheckOptions {
  std::vector<PublicKeyHash> trusted;
  bool release = false;  // debug signatures, and none at all, are failures
  // The store of a key list, as it stands in an image.
  std::optional<std::string> key_store;
};

// In which nothing is known, and which no other file tells of.
struct UnknownFile {
  enum class Kind {
    kTrouble,  // it has to be of the image: it was given, or is named so
    kLength,   // contents, and the manifest tells another length
    kBeside,   // beside the image: in a folder, or of a kind that is known
  };
  const CheckedFile* file = nullptr;
  Kind kind = Kind::kTrouble;
  bool is_gap = false;  // of kBeside: it may be a part of the image
  std::string text;     // what to tell of it
};

}  // namespace tova_fw_builder
