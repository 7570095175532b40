#include "companion/ground/nearest.h"

#include <algorithm>
#include <vector>

namespace tova_fw_builder {
namespace {

// How many steps lead from one word to the other: a table of the distances of
// all their heads, of which three rows are at hand.
std::size_t distance(std::string_view a, std::string_view b) {
  std::vector<std::size_t> before_last;
  std::vector<std::size_t> last(b.size() + 1);
  for (std::size_t j = 0; j <= b.size(); ++j) last[j] = j;
  for (std::size_t i = 1; i <= a.size(); ++i) {
    std::vector<std::size_t> row(b.size() + 1, i);
    for (std::size_t j = 1; j <= b.size(); ++j) {
      row[j] = std::min({last[j] + 1, row[j - 1] + 1,
                         last[j - 1] + (a[i - 1] == b[j - 1] ? 0 : 1)});
      if (i > 1 && j > 1 && a[i - 1] == b[j - 2] && a[i - 2] == b[j - 1]) {
        row[j] = std::min(row[j], before_last[j - 2] + 1);
      }
    }
    before_last = std::move(last);
    last = std::move(row);
  }
  return last.back();
}

}  // namespace

std::string nearest_word(std::string_view word,
                         std::span<const std::string> words) {
  constexpr std::size_t kLongest = 64;  // nobody means a longer one
  std::string nearest;
  if (word.size() > kLongest) return nearest;
  std::size_t fewest = kLongest;
  for (const std::string& candidate : words) {
    const std::size_t steps = distance(word, candidate);
    const std::size_t most = std::max<std::size_t>(candidate.size() / 3, 1);
    if (steps <= most && steps < fewest) {
      fewest = steps;
      nearest = candidate;
    }
  }
  return nearest;
}

}  // namespace tova_fw_builder
