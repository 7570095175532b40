// Throughput of the hashes: the objects that the commands use, on pieces of
// 16 KiB as `openssl speed -bytes 16384` takes them, and every compression
// function that this processor can run, the portable one first.
#include <benchmark/benchmark.h>

#include <array>

#include "crypto/internal/sha_blocks.h"
#include "crypto/sha_hash.h"

namespace tova_fw_builder {
namespace {

constexpr std::size_t kPiece = 16384;
const std::array<std::uint8_t, kPiece> kMessage{1, 2, 3};

void count_bytes(benchmark::State& state) {
  state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations()) *
                          static_cast<std::int64_t>(kPiece));
}

template <typename Hash>
void hash_object(benchmark::State& state) {
  std::array<std::uint8_t, 48> digest;
  for (auto _ : state) {
    Hash hash(kMessage.data(), kPiece);
    hash.final(digest.data());
    benchmark::DoNotOptimize(digest);
  }
  count_bytes(state);
}

void sha256_variant(benchmark::State& state, Sha256Blocks blocks) {
  std::array<std::uint32_t, 8> words{};
  for (auto _ : state) blocks(words.data(), kMessage.data(), kPiece / 64);
  count_bytes(state);
}

void sha512_variant(benchmark::State& state, Sha512Blocks blocks) {
  std::array<std::uint64_t, 8> words{};
  for (auto _ : state) blocks(words.data(), kMessage.data(), kPiece / 128);
  count_bytes(state);
}

BENCHMARK(hash_object<Sha256Hash>)->Name("Sha256Hash");
BENCHMARK(hash_object<Sha384Hash>)->Name("Sha384Hash");

BENCHMARK_CAPTURE(sha256_variant, portable, sha256_blocks_portable);
BENCHMARK_CAPTURE(sha256_variant, fastest, sha256_blocks());
BENCHMARK_CAPTURE(sha512_variant, portable, sha512_blocks_portable);
BENCHMARK_CAPTURE(sha512_variant, fastest, sha512_blocks());

}  // namespace
}  // namespace tova_fw_builder
