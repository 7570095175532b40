// What the builder refuses ahead of all statements: files that could not be
// joined, or of which nothing is left.
#include <filesystem>
#include <set>
#include <system_error>

#include "companion/ground/nearest.h"
#include "definitions/includes_and_defines.h"
#include "driver/ground/paths.h"
#include "lint/refusal.h"

namespace tova_fw_builder {

void note_define(const SourceMap& source, std::uint32_t number,
                 Finding& finding) {
  const SourceMap::Define& define = source.defines[number];
  finding.notes.push_back(
      {spot_of_word(source, define.place, kLastWord),
       in_quotes(std::string_view(define.name)) + " becomes " +
           in_quotes(std::string_view(define.value)) + " here"});
}

namespace {

// A file of the folder that the including one stands in.
std::string nearest_file(const std::string& including, std::string_view name) {
  constexpr std::size_t kMostFiles = 10000;
  std::error_code error;
  std::filesystem::directory_iterator file(native_path(including).parent_path(),
                                           error);
  std::set<std::string> names;  // in an order that is everywhere the same
  while (!error && file != std::filesystem::directory_iterator() &&
         names.size() < kMostFiles) {
    names.insert(path_text(file->path().filename()));
    file.increment(error);
  }
  Nearest near(name);
  for (const std::string& each : names) near.offer(each);
  return near.question();
}

void explain_missing_file(const SourceMap& source, std::string_view operand,
                          Finding& finding) {
  if (operand.empty()) {
    finding.text += "; the name is missing";
    return;
  }
  const std::string name = finding.text.substr(finding.text.find(" : ") + 3);
  finding.text +=
      "; it is looked for beside this file, and then where the tool was "
      "started" +
      nearest_file(source.files[source.open.back().file].path, name);
  for (std::uint32_t i = 0; i < source.defines.size(); ++i) {
    if (operand.find("$(" + source.defines[i].name + ")") == operand.npos) {
      continue;
    }
    note_define(source, i, finding);
  }
}

}  // namespace

void explain_files(const Definition& definition, Finding& finding) {
  const SourceMap& source = definition.source;
  finding.spot = spot_of_word(source, source.open.back(), 1);
  const auto words = words_of_place(source, source.open.back(), 2);
  const std::string_view operand =
      words.size() > 1 ? words[1].text : std::string_view();
  if (finding.text.starts_with("Define name conflict")) {
    for (const SourceMap::Define& define : source.defines) {
      if (define.name != operand) continue;
      finding.notes.push_back(
          {spot_of_word(source, define.place, 1), "it is defined here"});
    }
  } else if (finding.text.starts_with("Not recognized define : ")) {
    const std::string name =
        finding.text.substr(std::string("Not recognized define : ").size());
    Nearest near(name);
    for (const auto& define : source.defines) near.offer(define.name);
    if (name.find(")$(") != name.npos) {
      finding.text += "; a name holds one macro at the most";
    } else if (near.name().empty() && source.open.size() == 1) {
      finding.text +=
          "; a file that includes this one may define it: name the topmost one";
    }
    finding.text += near.question();
  } else if (finding.text.starts_with("Failed to open image defs file")) {
    explain_missing_file(source, operand, finding);
  } else if (finding.text.find("canonical") != finding.text.npos) {
    finding.text +=
        "; include it by its bare name or by an absolute path, as the folder "
        "is entered before the name is looked up again";
  } else if (finding.text == "Max inclusion") {
    static_assert(kMaxIncludeDepth == 5);
    finding.text += "; files nest four deep below the top file";
    for (std::size_t i = source.open.size() - 1; i-- > 0;) {
      const SourceMap::Place place = source.open[i];
      finding.notes.push_back(
          {{place.file, place.line, 0, 0}, "included from here"});
    }
  }
}

void find_lost_text(const Definition& definition, Findings& out) {
  for (const SourceMap::Place place : definition.source.empty_includes) {
    if (place.file != 0) continue;
    out.add(spot_of_word(definition.source, place, kLastWord),
            "Unrecognized binary version; the included file leaves no line, "
            "and so nothing of the definition is read");
    return;
  }
}

}  // namespace tova_fw_builder
