// inspect/check/digests.h
// Hashes of parts of files, and what is searched in them, in one reading.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "inspect/byte_source.h"
#include "inspect/coverage.h"

namespace tova_fw_builder {

// Those who want bytes say which; then each file is read once, and everyone
// gets theirs.
class Digests {
 public:
  enum class Kind { kSha256, kSha384 };
  using Take = std::function<void(std::uint64_t offset, std::string_view)>;

  // The hash of parts of a file, which rise and don't overlap. What was asked
  // for before isn't hashed twice. Yields the number to ask text() for.
  std::size_t add(Kind kind, const ByteSource& source, std::vector<Span> spans);

  // Calls `take` with all bytes of a file in pieces.
  void add(const ByteSource& source, Take take);

  // Reads the files; to be called once, ahead of text().
  void read();

  // The hash as lower-case digits.
  const std::string& text(std::size_t number) const {
    return wishes_[number].text;
  }

 private:
  struct Wish {
    Kind kind = Kind::kSha256;
    const ByteSource* source = nullptr;
    std::vector<Span> spans;
    Take take;  // null for a hash
    std::string text;
  };

  static void read_file(const ByteSource& source,
                        const std::vector<Wish*>& wishes);

  std::vector<Wish> wishes_;
};

}  // namespace tova_fw_builder
