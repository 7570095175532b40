// crypto/secret_buffer.h
// Memory for private key material: it is wiped before it is given back.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>

namespace tova_fw_builder {

// Sets `size` bytes to zero, also when nobody reads the memory again: plain
// stores into memory that is about to be freed are dead to the compiler.
inline void secure_wipe(void* data, std::size_t size) {
  auto* byte = static_cast<volatile std::uint8_t*>(data);
  for (; size > 0; --size) *byte++ = 0;
}

// Bytes on the heap, zero at first, wiped when the buffer ends.
class SecretBuffer {
 public:
  explicit SecretBuffer(std::size_t size)
      : bytes_(new std::uint8_t[size](), Wipe{size}) {}

  std::uint8_t* data() const { return bytes_.get(); }
  std::size_t size() const { return bytes_.get_deleter().size; }

 private:
  struct Wipe {
    std::size_t size;
    void operator()(std::uint8_t* bytes) const {
      secure_wipe(bytes, size);
      delete[] bytes;
    }
  };
  std::unique_ptr<std::uint8_t[], Wipe> bytes_;
};

}  // namespace tova_fw_builder
