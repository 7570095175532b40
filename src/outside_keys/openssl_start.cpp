// OpenSSL gives back a block without saying how long it is, so the length
// stands ahead of each.
#include "outside_keys/openssl_start.h"

#include <openssl/crypto.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>

#include "crypto/secret_buffer.h"

namespace tova_fw_builder {
namespace {

struct alignas(std::max_align_t) Ahead {
  std::size_t length;
};

Ahead* ahead_of(void* block) { return static_cast<Ahead*>(block) - 1; }

// Null for no bytes, as OpenSSL has it by itself.
void* take(std::size_t length, const char*, int) {
  if (length == 0 || length > SIZE_MAX - sizeof(Ahead)) return nullptr;
  auto* const ahead = static_cast<Ahead*>(std::malloc(sizeof(Ahead) + length));
  if (ahead == nullptr) return nullptr;
  ahead->length = length;
  return ahead + 1;
}

void give_back(void* block, const char*, int) {
  if (block == nullptr) return;
  secure_wipe(block, ahead_of(block)->length);
  std::free(ahead_of(block));
}

void* resize(void* block, std::size_t length, const char* file, int line) {
  void* const other = take(length, file, line);
  if (block == nullptr) return other;
  if (other == nullptr && length != 0) return nullptr;  // the block stays
  if (other != nullptr) {
    std::memcpy(other, block, std::min(length, ahead_of(block)->length));
  }
  give_back(block, file, line);
  return other;
}

}  // namespace

void start_openssl() {
  // It takes them once, and only as long as it has no memory.
  CRYPTO_set_mem_functions(take, resize, give_back);
  // Without the system's openssl.cnf: it may ask for modules that are made for
  // another version of the library, or of the C library, than is linked in
  // here.
  OPENSSL_init_crypto(OPENSSL_INIT_NO_LOAD_CONFIG, nullptr);
}

}  // namespace tova_fw_builder
