// crypto/zel_error.h
// The exception that the wrappers of the crypto library throw.
#pragma once

#include <stdexcept>
#include <string>

#include "crypto/zels_status.h"

namespace tova_fw_builder {

// A library operation that ended with a status other than 0, a warning
// included.
class ZelError : public std::runtime_error {
 public:
  // `operation` must outlive the error: a literal.
  ZelError(ZelStatus status, const char* operation);

  // As in "ZelError zelsRSADecrypt failed 0xfffffff8 (-8)".
  const char* what() const noexcept override;

 private:
  ZelStatus status_;
  const char* operation_;
  mutable std::string message_;
};

void throw_unless_ok(ZelStatus status, const char* operation);

}  // namespace tova_fw_builder
