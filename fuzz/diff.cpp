// Two files, compared: they are equal if their bytes are, either way round, and
// of what differs some change is no echo.
#include <algorithm>
#include <cstdlib>
#include <sstream>

#include "harness.h"
#include "inspect/compare/compare_files.h"
#include "inspect/compare/report.h"

namespace {

using tova_fw_builder::Change;
using tova_fw_builder::Comparison;

// The input holds the first file and what to put over it, a byte at each place:
// "OLD|PLACES", three bytes a place and value.
std::string patched(std::string bytes, const std::string& places) {
  for (std::size_t i = 0; i + 3 <= places.size() && !bytes.empty(); i += 3) {
    const auto byte = [&places](std::size_t at) {
      return static_cast<unsigned char>(places[at]);
    };
    bytes[(byte(i) * 256u + byte(i + 1)) % bytes.size()] = places[i + 2];
  }
  return bytes;
}

void check(const Comparison& comparison, bool same_bytes) {
  const auto is_cause = [](const Change& change) {
    return change.echo.empty();
  };
  const bool told = std::any_of(comparison.changes.begin(),
                                comparison.changes.end(), is_cause);
  if (comparison.is_equal() != same_bytes || told == same_bytes) std::abort();
  std::ostringstream out;
  print_comparison(out, comparison, false, {});
  print_comparison(out, comparison, true, {});
  out << tova_fw_builder::json_text(comparison_json(comparison));
}

}  // namespace

void fuzz_one(const std::string& input) {
  const std::size_t cut = input.rfind('|');
  const std::string old_bytes = input.substr(0, cut);
  const std::string places = cut == input.npos ? "" : input.substr(cut + 1);
  // Sometimes a file of its own, which the places only begin.
  const std::string new_bytes =
      places.size() > 600 ? places : patched(old_bytes, places);
  const std::string old_file = put("old", old_bytes);
  const std::string new_file = put("new", new_bytes);
  const bool same = old_bytes == new_bytes;
  check(tova_fw_builder::compare_paths(old_file, new_file, false), same);
  check(tova_fw_builder::compare_paths(new_file, old_file, false), same);
  tova_fw_builder::compare_paths(old_file, new_file, true);
}
