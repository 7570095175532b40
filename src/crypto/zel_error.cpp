// The exception that the wrappers of the crypto library throw.
#include "crypto/zel_error.h"

#include <sstream>

namespace tova_fw_builder {

ZelError::ZelError(ZelStatus status, const char* operation)
    : std::runtime_error("ZelError"), status_(status), operation_(operation) {}

const char* ZelError::what() const noexcept {
  // Built once, so that a pointer given out stays good.
  if (message_.empty()) {
    std::ostringstream text;
    text << std::runtime_error::what() << ' ' << operation_ << " failed 0x"
         << std::hex << static_cast<std::uint32_t>(status_) << std::dec << " ("
         << status_ << ')';
    message_ = text.str();
  }
  return message_.c_str();
}

void throw_unless_ok(ZelStatus status, const char* operation) {
  // A warning fails as hard as an error.
  if (status != zelStsNoErr) throw ZelError(status, operation);
}

}  // namespace tova_fw_builder
