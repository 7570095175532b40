// inspect/decoders.h
// A decoder for each format, each in a file of its own. It fills the root's
// members, the title and the problems of `out`; padding is named behind it.
#pragma once

#include <cstdint>
#include <optional>

#include "inspect/byte_source.h"
#include "inspect/inspected.h"

namespace tova_fw_builder {

void decode_binary(const ByteSource& source, Inspected& out);
void decode_manifest_15(const ByteSource& source, Inspected& out);
void decode_metadata(const ByteSource& source, Inspected& out);
void decode_extended_manifest(const ByteSource& source, Inspected& out);
void decode_package_descriptor(const ByteSource& source, Inspected& out);
void decode_key_pair(const ByteSource& source, Inspected& out);
void decode_public_key(const ByteSource& source, Inspected& out);
void decode_embedded(const ByteSource& source, Inspected& out);

// Where the binary header stands in a binary, found by its mark: at 0 in 3.0,
// up to 8192 else.
std::optional<std::uint64_t> find_binary_header(const ByteSource& source);

// Whether it is a binary of 1.8 or 2.5 with all that goes in front of it: the
// header stands at 8192, and its page count is that of the file. What a signer
// puts there may begin like any other format.
bool has_signer_part(const ByteSource& source);

// How far tables, texts and lists are taken apart. Nothing that is built comes
// near it, and a hostile file can't fill the memory with fields.
inline constexpr std::uint64_t kTablesLimit = 192 * 1024;

}  // namespace tova_fw_builder
