// Looks into every block of memory that signing gives back: none may hold a
// piece of the private key. Blocks are zero at first, so that all of their
// bytes have a value.
#include <gtest/gtest.h>
#include <malloc.h>

#include <algorithm>
#include <cstdlib>
#include <new>
#include <span>
#include <string>
#include <vector>

#include "signing/commands.h"
#include "signing/manifest_sample.h"
#include "support/captured_log.h"
#include "support/temp_dir.h"

namespace {

// Pieces of d, p and q, in either order of bytes; none while nobody looks.
std::span<const std::string> secrets;
std::size_t found;

void look_and_free(void* block) {
  const std::string_view bytes(
      static_cast<const char*>(block),
      block == nullptr ? 0 : malloc_usable_size(block));
  found += static_cast<std::size_t>(std::ranges::count_if(
      secrets,
      [&](const auto& secret) { return bytes.find(secret) != bytes.npos; }));
  std::free(block);
}

}  // namespace

void* operator new(std::size_t size) {
  void* const block = std::calloc(1, size);
  return block != nullptr ? block : throw std::bad_alloc();
}

void operator delete(void* block) noexcept { look_and_free(block); }
void operator delete(void* block, std::size_t) noexcept {
  look_and_free(block);
}

namespace tova_fw_builder {
namespace {

TEST(Secrets, LeaveNoTraceInFreedMemory) {
  std::vector<std::string> pieces;
  for (const std::string& number :
       {bytes_of(kSamplePrivateExponent), counting(128, 'p'),
        counting(128, 'q'), counting(128, 'c')}) {
    const std::string reversed(number.rbegin(), number.rend());
    for (const std::string& bytes : {number, reversed}) {
      for (const std::size_t at : {0u, 64u, 112u}) {
        pieces.push_back(bytes.substr(at, 16));
      }
    }
  }
  const TempDir dir;
  const CapturedLog quiet;
  const std::string key = dir.write("key", sample_pair_file());
  const std::string manifest = dir.write("manifest", unsigned_manifest());
  const std::string out = dir.file("out");
  secrets = pieces;
  found = 0;
  const std::string message =
      message_of([&] { sign_command("release", key, manifest, out); });
  // That the eyes are open: this block is given back as it is.
  const std::size_t found_by_signing = found;
  { const std::string unwiped = pieces[0] + std::string(100, ' '); }
  secrets = {};
  EXPECT_EQ("no exception", message);
  EXPECT_EQ(0u, found_by_signing);
  EXPECT_NE(0u, found);
}

}  // namespace
}  // namespace tova_fw_builder
