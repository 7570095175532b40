#include "companion/ground/nearest.h"

#include <algorithm>
#include <utility>
#include <vector>

namespace tova_fw_builder {

namespace {

// Longer words aren't misspelt, and would cost the square of their length.
constexpr std::size_t kLongestWord = 100;

char small_letter(char c) {
  return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

bool differ_in_case_alone(std::string_view a, std::string_view b) {
  return a != b && std::ranges::equal(a, b, {}, small_letter, small_letter);
}

}  // namespace

std::size_t edit_distance(std::string_view a, std::string_view b,
                          std::size_t limit) {
  const std::size_t longer = std::max(a.size(), b.size());
  const std::size_t shorter = std::min(a.size(), b.size());
  if (longer - shorter > limit || longer > kLongestWord) return limit + 1;
  // Distances of the first letters of `a` to those of `b`: three rows, as a
  // swap looks two letters back.
  std::vector<std::size_t> before, last(b.size() + 1), row(b.size() + 1);
  for (std::size_t j = 0; j <= b.size(); ++j) last[j] = j;
  for (std::size_t i = 1; i <= a.size(); ++i) {
    row[0] = i;
    for (std::size_t j = 1; j <= b.size(); ++j) {
      const bool same = a[i - 1] == b[j - 1];
      row[j] =
          std::min({last[j] + 1, row[j - 1] + 1, last[j - 1] + (same ? 0 : 1)});
      if (i > 1 && j > 1 && a[i - 1] == b[j - 2] && a[i - 2] == b[j - 1]) {
        row[j] = std::min(row[j], before[j - 2] + 1);
      }
    }
    before = std::exchange(last, row);
  }
  return std::min(last.back(), limit + 1);
}

Nearest::Nearest(std::string_view word)
    : word_(word), limit_((word.size() + 2) / 3) {}

void Nearest::offer(std::string_view name) {
  const std::size_t limit = name_.empty() ? limit_ : limit_ - 1;
  // However many capitals there are, it is one mistake.
  const std::size_t distance =
      differ_in_case_alone(word_, name) ? 1 : edit_distance(word_, name, limit);
  // A word isn't its own neighbour, nor one of which nothing is left.
  if (distance > limit || distance == 0 || distance >= word_.size()) return;
  limit_ = distance;
  name_ = name;
}

std::string Nearest::question() const {
  if (name_.empty()) return "";
  return std::string("; did you mean '").append(name_).append("'?");
}

}  // namespace tova_fw_builder
