// crypto/internal/zels_context.h
// What all contexts of the crypto library share: they live inside plain byte
// buffers of the caller and begin with a tag. For the library's sources alone.
#pragma once

#include <array>
#include <cstdint>

namespace tova_fw_builder {

// Four bytes that tell the kinds of context apart.
using ContextTag = std::array<char, 4>;

inline constexpr std::uintptr_t kContextAlignment = 8;

// What a caller's buffer needs beyond the context.
inline constexpr std::int32_t kContextSpare = kContextAlignment - 1;

// The context inside a caller's buffer: the first multiple of 8. The buffer is
// not null. What it holds counts only if has_tag() says so.
template <typename Context>
Context* context_in(std::uint8_t* buffer) {
  static_assert(alignof(Context) <= kContextAlignment);
  const auto address = reinterpret_cast<std::uintptr_t>(buffer);
  const std::uintptr_t skip = -address % kContextAlignment;
  return reinterpret_cast<Context*>(buffer + skip);
}

// Every context has its tag as first field.
template <typename Context>
bool has_tag(const Context* context, const ContextTag& tag) {
  return context->tag == tag;
}

}  // namespace tova_fw_builder
