// Asks the processor. A processor of another kind can do none of it.
#include "crypto/internal/processor.h"

#if defined(__x86_64__)
#include <cpuid.h>
#elif defined(__aarch64__) && defined(__linux__)
#include <asm/hwcap.h>
#include <sys/auxv.h>
#endif

namespace tova_fw_builder {

bool has_sha256_instructions() {
#if defined(__x86_64__)
  unsigned a = 0, b = 0, c = 0, d = 0;
  // Needs nothing of the system: it keeps these registers for every program.
  if (__get_cpuid(1, &a, &b, &c, &d) == 0) return false;
  if ((c & bit_SSSE3) == 0 || (c & bit_SSE4_1) == 0) return false;
  if (__get_cpuid_count(7, 0, &a, &b, &c, &d) == 0) return false;
  return (b & bit_SHA) != 0;
#elif defined(__aarch64__) && defined(__ARM_FEATURE_SHA2)
  // The compiler was told that every processor has them: all of Apple's do.
  return true;
#elif defined(__aarch64__) && defined(__linux__)
  return (getauxval(AT_HWCAP) & HWCAP_SHA2) != 0;
#else
  return false;
#endif
}

bool has_avx2_and_bmi2() {
#if defined(__x86_64__)
  // Also asks whether the system keeps the upper halves of the registers.
  return __builtin_cpu_supports("avx2") && __builtin_cpu_supports("bmi2");
#else
  return false;
#endif
}

}  // namespace tova_fw_builder
