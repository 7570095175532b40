// SHA-256 and SHA-384 over contexts in bytes of the caller. Both hashes are
// one code with a table of differences; only their compression differs, and
// that stands elsewhere.
#include "crypto/zels_hash.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <span>

#include "crypto/internal/sha_blocks.h"
#include "crypto/internal/sha_constants.h"
#include "crypto/internal/zels_context.h"

namespace tova_fw_builder {

namespace {

struct Sha256 {
  static constexpr ContextTag kTag = {'2', 'S', 'H', 'S'};
  static constexpr std::size_t kBlockBytes = 64;
  static constexpr std::size_t kDigestBytes = 32;
  using Word = std::uint32_t;
  // Message length in bytes, least significant word first.
  using Length = std::array<std::uint64_t, 1>;
  static constexpr const auto& kInitial = kSha256Initial;
  static constexpr auto compression = sha256_blocks;
};

struct Sha384 {
  static constexpr ContextTag kTag = {'5', 'S', 'H', 'S'};
  static constexpr std::size_t kBlockBytes = 128;
  static constexpr std::size_t kDigestBytes = 48;
  using Word = std::uint64_t;
  using Length = std::array<std::uint64_t, 2>;
  static constexpr const auto& kInitial = kSha384Initial;
  static constexpr auto compression = sha512_blocks;
};

template <typename Hash>
struct HashContext {
  ContextTag tag;
  std::uint32_t buffered;  // bytes of `block` that wait for the rest
  typename Hash::Length length;
  std::array<std::uint8_t, Hash::kBlockBytes> block;
  std::array<typename Hash::Word, 8> state;
};
static_assert(sizeof(HashContext<Sha256>) + kContextSpare == 119);
static_assert(sizeof(HashContext<Sha384>) + kContextSpare == 223);

template <typename Hash>
void start(HashContext<Hash>& context) {
  context = {.tag = Hash::kTag,
             .buffered = 0,
             .length = {},
             .block = {},
             .state = Hash::kInitial};
}

template <typename Hash>
void absorb(HashContext<Hash>& context, std::span<const std::uint8_t> data) {
  const auto compress = Hash::compression();
  std::uint64_t carry = data.size();
  for (std::uint64_t& word : context.length) {
    word += carry;
    carry = word < carry ? 1 : 0;
  }

  if (context.buffered > 0) {
    const auto part =
        data.first(std::min(data.size(), Hash::kBlockBytes - context.buffered));
    std::memcpy(&context.block[context.buffered], part.data(), part.size());
    context.buffered += static_cast<std::uint32_t>(part.size());
    data = data.subspan(part.size());
    if (context.buffered < Hash::kBlockBytes) return;
    compress(context.state.data(), context.block.data(), 1);
  }
  // Whole blocks go straight from the caller's memory.
  const std::size_t blocks = data.size() / Hash::kBlockBytes;
  compress(context.state.data(), data.data(), blocks);
  data = data.subspan(blocks * Hash::kBlockBytes);
  std::copy(data.begin(), data.end(), context.block.begin());
  context.buffered = static_cast<std::uint32_t>(data.size());
}

// Closes the message: 0x80, zeros, and its length in bits as a big-endian
// number at the end of a block.
template <typename Hash>
void pad(HashContext<Hash>& context) {
  const typename Hash::Length length = context.length;
  constexpr std::size_t kLengthBytes = sizeof(length);
  std::array<std::uint8_t, Hash::kBlockBytes + kLengthBytes> padding = {0x80};
  // Up to the length field of this block, or of the next if it is too late.
  const std::size_t before_length =
      (2 * Hash::kBlockBytes - kLengthBytes - 1 - context.buffered) %
          Hash::kBlockBytes +
      1;
  // Formed from the last element, since one past it may not be indexed.
  std::uint8_t* end = &padding[before_length + kLengthBytes - 1] + 1;
  std::uint64_t carry = 0;
  for (const std::uint64_t word : length) {
    // Bytes to bits: the three bits that fall out go up into the next word.
    std::uint64_t bits = word << 3 | carry;
    carry = word >> 61;
    for (int i = 0; i < 8; ++i, bits >>= 8) {
      *--end = static_cast<std::uint8_t>(bits);
    }
  }
  absorb(context, std::span(padding).first(before_length + kLengthBytes));
}

template <typename Hash>
ZelStatus get_size(std::int32_t* size) {
  if (size == nullptr) return zelStsNullPtrErr;
  *size = sizeof(HashContext<Hash>) + kContextSpare;
  return zelStsNoErr;
}

template <typename Hash>
ZelStatus init(std::uint8_t* buffer) {
  if (buffer == nullptr) return zelStsNullPtrErr;
  start(*context_in<HashContext<Hash>>(buffer));
  return zelStsNoErr;
}

template <typename Hash>
ZelStatus update(const std::uint8_t* data, std::int32_t length,
                 std::uint8_t* buffer) {
  if (buffer == nullptr) return zelStsNullPtrErr;
  auto* context = context_in<HashContext<Hash>>(buffer);
  if (!has_tag(context, Hash::kTag)) return zelStsContextMatchErr;
  if (length < 0) return zelStsLengthErr;
  // Ahead of the test of `data`: an empty piece may be null.
  if (length == 0) return zelStsNoErr;
  if (data == nullptr) return zelStsNullPtrErr;
  absorb(*context, {data, static_cast<std::size_t>(length)});
  return zelStsNoErr;
}

template <typename Hash>
ZelStatus final(std::uint8_t* digest, std::uint8_t* buffer) {
  if (buffer == nullptr) return zelStsNullPtrErr;
  auto* context = context_in<HashContext<Hash>>(buffer);
  if (!has_tag(context, Hash::kTag)) return zelStsContextMatchErr;
  if (digest == nullptr) return zelStsNullPtrErr;
  pad(*context);
  constexpr std::size_t kWordBytes = sizeof(typename Hash::Word);
  for (std::size_t i = 0; i < Hash::kDigestBytes; ++i) {
    const std::size_t shift = 8 * (kWordBytes - 1 - i % kWordBytes);
    digest[i] =
        static_cast<std::uint8_t>(context->state[i / kWordBytes] >> shift);
  }
  // Ready for the next message, and nothing of this one stays in the buffer.
  start(*context);
  return zelStsNoErr;
}

}  // namespace

ZelStatus zelsSHA256GetSize(std::int32_t* size) {
  return get_size<Sha256>(size);
}

ZelStatus zelsSHA384GetSize(std::int32_t* size) {
  return get_size<Sha384>(size);
}

ZelStatus zelsSHA256Init(std::uint8_t* context) {
  return init<Sha256>(context);
}

ZelStatus zelsSHA384Init(std::uint8_t* context) {
  return init<Sha384>(context);
}

ZelStatus zelsSHA256Update(const std::uint8_t* data, std::int32_t length,
                           std::uint8_t* context) {
  return update<Sha256>(data, length, context);
}

ZelStatus zelsSHA384Update(const std::uint8_t* data, std::int32_t length,
                           std::uint8_t* context) {
  return update<Sha384>(data, length, context);
}

ZelStatus zelsSHA256Final(std::uint8_t* digest, std::uint8_t* context) {
  return final<Sha256>(digest, context);
}

ZelStatus zelsSHA384Final(std::uint8_t* digest, std::uint8_t* context) {
  return final<Sha384>(digest, context);
}

}  // namespace tova_fw_builder
