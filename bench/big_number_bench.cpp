// The RSA operations with keys of 2048 bits, as signing and verifying use them.
// The time depends on the sizes alone, so any odd modulus will do, and an
// exponent of full length.
#include <benchmark/benchmark.h>

#include <array>

#include "crypto/zels_bignum.h"
#include "crypto/zels_rsa.h"

namespace tova_fw_builder {
namespace {

constexpr std::int32_t kBits = 2048;
constexpr std::int32_t kBytes = kBits / 8;

using Number = std::array<std::uint8_t, kBytes>;

// Odd, with the top bit set unless `below` asks for a smaller number.
Number some_number(bool below) {
  Number bytes;
  for (std::size_t i = 0; i < bytes.size(); ++i) {
    bytes[i] = static_cast<std::uint8_t>(i * 151 + 1);
  }
  bytes.back() = below ? 0x40 : 0xC0;
  return bytes;
}

void private_operation(benchmark::State& state) {
  std::int32_t size = 0;
  zelsRSA_GetSizePrivateKey(kBits, kBits, &size);
  SecretBuffer key(static_cast<std::size_t>(size));
  zelsRSA_InitPrivateKey(kBits, kBits, key.data(), size);
  const SecretBuffer n = MakeBigNum(kBytes, some_number(false).data());
  const SecretBuffer d = MakeBigNum(kBytes, some_number(false).data());
  zelsRSA_SetPrivateKey(n.data(), d.data(), key.data());
  zelsRSA_GetBufferSizePrivateKey(&size, key.data());
  const SecretBuffer work(static_cast<std::size_t>(size));
  const SecretBuffer input = MakeBigNum(kBytes, some_number(true).data());
  const SecretBuffer output = MakeBigNum(kBytes, nullptr);
  for (auto _ : state) {
    if (zelsRSADecrypt(input.data(), output.data(), key.data(), work.data()) !=
        zelStsNoErr) {
      state.SkipWithError("private operation failed");
      break;
    }
  }
}

void public_operation(benchmark::State& state) {
  std::int32_t size = 0;
  zelsRSA_GetSizePublicKey(kBits, 32, &size);
  SecretBuffer key(static_cast<std::size_t>(size));
  zelsRSA_InitPublicKey(kBits, 32, key.data(), size);
  constexpr std::array<std::uint8_t, 4> kExponent{1, 0, 1, 0};
  const SecretBuffer n = MakeBigNum(kBytes, some_number(false).data());
  const SecretBuffer e = MakeBigNum(4, kExponent.data());
  zelsRSA_SetPublicKey(n.data(), e.data(), key.data());
  zelsRSA_GetBufferSizePublicKey(&size, key.data());
  const SecretBuffer work(static_cast<std::size_t>(size));
  const SecretBuffer input = MakeBigNum(kBytes, some_number(true).data());
  const SecretBuffer output = MakeBigNum(kBytes, nullptr);
  for (auto _ : state) {
    if (zelsRSAEncrypt(input.data(), output.data(), key.data(), work.data()) !=
        zelStsNoErr) {
      state.SkipWithError("public operation failed");
      break;
    }
  }
}

void make_number(benchmark::State& state) {
  const Number bytes = some_number(false);
  for (auto _ : state) {
    benchmark::DoNotOptimize(MakeBigNum(kBytes, bytes.data()));
  }
}

BENCHMARK(private_operation)->Unit(benchmark::kMicrosecond);
BENCHMARK(public_operation)->Unit(benchmark::kMicrosecond);
BENCHMARK(make_number);

}  // namespace
}  // namespace tova_fw_builder
