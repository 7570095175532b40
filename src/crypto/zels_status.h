// crypto/zels_status.h
// Status numbers of the crypto function library.
#pragma once

#include <cstdint>

namespace tova_fw_builder {

// 0 is success, a negative number an error, a positive one a warning. Only the
// values that the library itself returns have a constant.
//
// Every operation of the library tests its arguments in the order in which its
// comment names the statuses, and the first failing test ends it with nothing
// changed.
using ZelStatus = std::int32_t;

inline constexpr ZelStatus zelStsIncompleteContextErr = -1013;
inline constexpr ZelStatus zelStsLengthErr = -15;
inline constexpr ZelStatus zelStsNotSupportedModeErr = -14;
inline constexpr ZelStatus zelStsContextMatchErr = -13;
inline constexpr ZelStatus zelStsOutOfRangeErr = -11;
inline constexpr ZelStatus zelStsMemAllocErr = -9;
inline constexpr ZelStatus zelStsNullPtrErr = -8;
inline constexpr ZelStatus zelStsSizeErr = -6;
inline constexpr ZelStatus zelStsBadArgErr = -5;
inline constexpr ZelStatus zelStsNoErr = 0;

// The text of a status, of "unknown status code" for one that has none. The
// tool itself prints numbers only.
const char* zels_status_text(ZelStatus status);

}  // namespace tova_fw_builder
