// Rules about the files themselves, which the statements never see: how one
// begins, and what leaves no line.
#include "lint/rule_functions.h"

namespace tova_fw_builder {

void find_byte_order_marks(const Definition& definition, Findings& out) {
  const auto& files = definition.source.files;
  for (std::uint32_t i = 0; i < files.size(); ++i) {
    if (files[i].lines.empty()) continue;
    const std::string_view line = files[i].lines[0];
    if (line.starts_with("\xEF\xBB\xBF")) {
      out.add({i, 1, 0, 3},
              "the file begins with a byte order mark, which joins its first "
              "word: save it as UTF-8 without one");
    } else if (line.starts_with("\xFF\xFE") || line.starts_with("\xFE\xFF")) {
      out.add({i, 1, 0, 2},
              "the file is UTF-16: save it as UTF-8 without a "
              "byte order mark");
    }
  }
}

void find_empty_definitions(const Definition& definition, Findings& out) {
  const SourceMap& source = definition.source;
  // Fragments have defines or includes at least.
  if (!definition.statements.empty() || definition.refusal ||
      source.files.size() > 1 || !source.defines.empty()) {
    return;
  }
  out.add({0, 1, 0, 0}, "no statement stands in it: name the image definition");
}

void find_empty_includes(const Definition& definition, Findings& out) {
  for (const SourceMap::Place place : definition.source.empty_includes) {
    const bool is_top = place.file == 0;
    out.add(spot_of_word(definition.source, place, 1),
            std::string("the included file leaves no line, which ends this "
                        "file here") +
                (is_top ? " and loses all that is above it, too" : "") +
                ": begin the included file with an empty line");
  }
}

}  // namespace tova_fw_builder
