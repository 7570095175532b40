// inspect/coverage.h
#pragma once

#include <cstdint>
#include <map>
#include <vector>

namespace tova_fw_builder {

// Bytes of a file from `offset` on.
struct Span {
  std::uint64_t offset = 0;
  std::uint64_t length = 0;
};

// Which bytes of a file are taken. Spans that touch are kept as one, so that
// claims over the same bytes cost nothing after the first one.
class Coverage {
 public:
  explicit Coverage(std::uint64_t length) : length_(length) {}

  // Takes what of the span is inside the file and still free; yields that.
  std::vector<Span> take(Span span);

  // What is free.
  std::vector<Span> gaps() const;

 private:
  std::uint64_t length_;
  std::map<std::uint64_t, std::uint64_t> taken_;  // offset to end
};

}  // namespace tova_fw_builder
