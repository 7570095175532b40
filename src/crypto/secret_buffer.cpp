// Memory for private key material. The stores of the wipe are volatile: plain
// ones into memory that is about to be freed are dead to the compiler.
#include "crypto/secret_buffer.h"

namespace tova_fw_builder {

void secure_wipe(void* data, std::size_t size) {
  auto* byte = static_cast<volatile std::uint8_t*>(data);
  for (; size > 0; --size) *byte++ = 0;
}

}  // namespace tova_fw_builder
