// crypto/internal/processor.h
// What the processor that the tool runs on can do. For the library's sources
// alone.
#pragma once

namespace tova_fw_builder {

// x86-64: SHA-256 instructions, with SSSE3 and SSE4.1.
// 64-bit Arm: SHA-256 instructions of the crypto extension.
bool has_sha256_instructions();

// x86-64: AVX2 and BMI2, enabled by the operating system too.
bool has_avx2_and_bmi2();

}  // namespace tova_fw_builder
