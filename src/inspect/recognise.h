// inspect/recognise.h
// What a file is, by its content.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>

#include "inspect/byte_source.h"
#include "inspect/inspected.h"

namespace tova_fw_builder {

// The format that the file's content shows; kEmbedded if it shows none.
Format recognise(const ByteSource& source);

// The format that a file is shown and compared as: the one that is asked for,
// else as it is recognised. A file with the texts of a private key in it is
// taken as a key pair, or searched, whatever is asked for: no private number is
// ever shown under another name.
Format safe_format(const ByteSource& source, std::optional<Format> as = {});

// Whether the file may be one of a build: false for one in which nothing was
// found, unless it is empty or has whole pages, as the contents of 1.5 have.
bool is_known(const Inspected& inspected);

// Whether private numbers may stand where tables are looked for: the texts
// ahead of them stand there.
bool may_be_private(const ByteSource& source);

// Whether it is a private key as PEM or DER, of any kind, that isn't encrypted;
// of PEM also an encrypted one.
bool is_private_key(const ByteSource& source);

// A structure that begins at the head of some bytes.
struct Found {
  Format format = Format::kEmbedded;
  std::uint64_t length = 0;  // 0 for nothing
};

// What begins at the head of `bytes`, the first kProbe or fewer of them; one of
// the formats that can be told by a few bytes anywhere.
inline constexpr std::size_t kProbe = 128;
Found structure_at(std::string_view bytes);

}  // namespace tova_fw_builder
