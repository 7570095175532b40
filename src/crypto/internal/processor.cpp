// Asks the processor. A processor of another kind can do none of it.
#include "crypto/internal/processor.h"

#if defined(__x86_64__)
#include <cpuid.h>
#elif defined(__aarch64__) && defined(__linux__)
#include <asm/hwcap.h>
#include <sys/auxv.h>
#endif

namespace tova_fw_builder {

#if defined(__x86_64__)

bool has_sha256_instructions() {
  unsigned a = 0, b = 0, c = 0, d = 0;
  // Needs nothing of the system: it keeps these registers for every program.
  if (__get_cpuid(1, &a, &b, &c, &d) == 0) return false;
  if ((c & bit_SSSE3) == 0 || (c & bit_SSE4_1) == 0) return false;
  if (__get_cpuid_count(7, 0, &a, &b, &c, &d) == 0) return false;
  return (b & bit_SHA) != 0;
}

bool has_avx2_and_bmi2() {
  // Also asks whether the system keeps the upper halves of the registers.
  return __builtin_cpu_supports("avx2") && __builtin_cpu_supports("bmi2");
}

#elif defined(__aarch64__) && defined(__ARM_FEATURE_SHA2)

// The compiler was told that every processor has them: all of Apple's do.
bool has_sha256_instructions() { return true; }

bool has_avx2_and_bmi2() { return false; }

#elif defined(__aarch64__) && defined(__linux__)

bool has_sha256_instructions() {
  return (getauxval(AT_HWCAP) & HWCAP_SHA2) != 0;
}

bool has_avx2_and_bmi2() { return false; }

#else

bool has_sha256_instructions() { return false; }

bool has_avx2_and_bmi2() { return false; }

#endif

}  // namespace tova_fw_builder
