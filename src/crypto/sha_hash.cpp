// Hash objects over the function library. A length is cut to 32 bits without
// a test, so that its users see the library's own status for one of 2^31.
#include "crypto/sha_hash.h"

#include "crypto/zel_error.h"
#include "crypto/zels_hash.h"

namespace tova_fw_builder {

namespace {

// The table of differences: functions, and the names that the log shows.
struct Operations {
  ZelStatus (*get_size)(std::int32_t*);
  ZelStatus (*init)(std::uint8_t*);
  ZelStatus (*update)(const std::uint8_t*, std::int32_t, std::uint8_t*);
  ZelStatus (*final)(std::uint8_t*, std::uint8_t*);
  const char* init_name;
  const char* update_name;
  const char* final_name;
};

template <std::size_t kHashBytes>
constexpr Operations kLibrary = {
    zelsSHA256GetSize, zelsSHA256Init,     zelsSHA256Update, zelsSHA256Final,
    "zelsSHA256Init",  "zelsSHA256Update", "zelsSHA256Final"};
template <>
constexpr Operations kLibrary<48> = {
    zelsSHA384GetSize, zelsSHA384Init,     zelsSHA384Update, zelsSHA384Final,
    "zelsSHA384Init",  "zelsSHA384Update", "zelsSHA384Final"};

std::int32_t low_32_bits(std::uint64_t length) {
  return static_cast<std::int32_t>(static_cast<std::uint32_t>(length));
}

}  // namespace

template <std::size_t kHashBytes>
ShaHash<kHashBytes>::ShaHash(const std::uint8_t* data, std::uint64_t length) {
  const Operations& library = kLibrary<kHashBytes>;
  std::int32_t size = 0;
  // Log watchers know the one name for both.
  throw_unless_ok(library.get_size(&size), "zelsSHA256GetSize");
  context_ = std::make_unique<std::uint8_t[]>(static_cast<std::size_t>(size));
  throw_unless_ok(library.init(context_.get()), library.init_name);
  // Null is no message here, whatever the length says; the library would refuse
  // it.
  if (data != nullptr && length != 0) update(data, length);
}

template <std::size_t kHashBytes>
void ShaHash<kHashBytes>::update(const std::uint8_t* data,
                                 std::uint64_t length) {
  const Operations& library = kLibrary<kHashBytes>;
  throw_unless_ok(library.update(data, low_32_bits(length), context_.get()),
                  library.update_name);
}

template <std::size_t kHashBytes>
std::uint64_t ShaHash<kHashBytes>::taken_at_once(std::uint64_t length) {
  const std::int32_t taken = low_32_bits(length);
  if (taken < 0) {
    throw ZelError(zelStsLengthErr, kLibrary<kHashBytes>.update_name);
  }
  return static_cast<std::uint64_t>(taken);
}

template <std::size_t kHashBytes>
void ShaHash<kHashBytes>::final(std::uint8_t* out) {
  const Operations& library = kLibrary<kHashBytes>;
  throw_unless_ok(library.final(out, context_.get()), library.final_name);
}

template class ShaHash<32>;
template class ShaHash<48>;

}  // namespace tova_fw_builder
