// inspect/recognise.h
#pragma once

#include <cstdint>
#include <string_view>

#include "inspect/byte_source.h"
#include "inspect/inspected.h"

namespace tova_fw_builder {

// The format that the file's content shows; kEmbedded if it shows none.
Format recognise(const ByteSource& source);

// Whether private numbers may stand where tables are looked for: the texts
// ahead of them stand there.
bool may_be_private(const ByteSource& source);

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
