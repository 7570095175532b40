// The decoders and all forms of their tree. The first byte says which format
// the rest is taken as, beyond the last one: as what it looks like.
#include "inspect/inspect.h"

#include <cstdlib>
#include <sstream>

#include "harness.h"
#include "inspect/bytes.h"
#include "inspect/json.h"
#include "inspect/text.h"

using namespace tova_fw_builder;

void fuzz_one(const std::string& input) {
  if (input.empty()) return;
  const auto choice = static_cast<std::size_t>(input[0] - 'a');
  std::optional<Format> as;
  if (choice < format_names().size()) as = static_cast<Format>(choice);
  const ByteSource source = ByteSource::of(input.substr(1));
  const Inspected inspected = inspect(source, as, Depth::kWhole);

  std::uint64_t end = 0;
  for (const ByteRange& range : byte_ranges(inspected)) {
    if (range.offset != end || range.length == 0) std::abort();
    end += range.length;
  }
  if (end != source.size()) std::abort();
  std::ostringstream out;
  print_fields(out, inspected.root, false, {});
  print_fields(out, inspected.root, true, {});
  print_byte_ranges(out, inspected);
  print_problems(out, inspected, {});
  print_member(out, inspected.root, 0);
  print_ranges_member(out, inspected, 0);
  print_problems_member(out, inspected, 0);
}
