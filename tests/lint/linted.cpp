#include "lint/linted.h"

#include <filesystem>
#include <fstream>
#include <map>
#include <sstream>

#include "driver/ground/log.h"
#include "lint/report_text.h"
#include "lint/shown_columns.h"

namespace tova_fw_builder {

namespace {

const std::map<char, std::string> kShown = {
    {'/', "\n"},
    {'~', "\t"},
    {'^', "\r"},
    {';', " "},
    {'@',
     "module d m\nuuid 01234567-89AB-CDEF-0123-456789ABCDEF\ngroup text\n"
     "section ep .t\n"}};

// Of sections as add_elf takes them.
std::string section_table(const std::string& sections) {
  std::istringstream in(sections);
  std::ostringstream out;
  out << "Idx Name Size VMA LMA File off Algn\n";
  for (std::string one; std::getline(in, one, ',');) {
    std::istringstream words(one);
    std::string name, address, size, flags, load, alignment = "2**12";
    words >> name >> address >> size >> flags >> load >> alignment;
    if (load.empty()) load = address;
    if (alignment.empty()) alignment = "2**12";
    out << " 0 " << name << ' ' << size << ' ' << address << ' ' << load
        << " 00000040 " << alignment << "\n  "
        << (flags == "t"   ? "CONTENTS, ALLOC, LOAD, CODE"
            : flags == "r" ? "CONTENTS, ALLOC, LOAD, READONLY, DATA"
            : flags == "b" ? "ALLOC"
            : flags == "c" ? "CONTENTS, ALLOC"
                           : "CONTENTS, READONLY")
        << '\n';
  }
  return out.str();
}

}  // namespace

LintTree::LintTree(const std::string& files) {
  set_log_level(kLogError - 1);
  std::istringstream in(files);
  for (std::string name, text; std::getline(in, name, '=');) {
    std::getline(in, text, '|');
    std::string bytes;
    for (const char c : text) {
      bytes += kShown.contains(c) ? kShown.at(c) : std::string(1, c);
    }
    const std::string path = dir.write(name, bytes);
    auto& top = options.inputs.image_def_path;
    if (top.empty()) top = path;
  }
  options.inputs.default_dir = dir.path();
}

LintReport LintTree::lint() const { return tova_fw_builder::lint(options); }

std::string LintTree::findings() const { return findings_of(lint()); }

std::string LintTree::printed(bool shows_lines) const {
  std::ostringstream out;
  print_findings(out, lint(), dir.path(), shows_lines, {});
  return out.str();
}

void add_elf(LintTree& tree, const std::string& name,
             const std::string& sections, const std::string& symbols) {
  tree.dir.write(name + ".elf", std::string(0x20000, 'e'));
  tree.dir.write(name + ".sections", section_table(sections));
  tree.dir.write(name + ".symbols", symbols);
  auto& list = tree.options.inputs.elf_list_path;
  list = tree.dir.file("elfs");
  std::ofstream out(list, std::ios::app);
  for (const char* kind : {".elf", ".sections", ".symbols"}) {
    out << tree.dir.file(name + kind) << '\n';
  }
}

std::string findings_of(const LintReport& report) {
  std::string all;
  ShownColumns columns(report);
  for (const Finding& finding : report.findings) {
    if (!all.empty()) all += ", ";
    if (finding.spot.file != 0) {
      const std::filesystem::path path(report.sources[finding.spot.file].path);
      all += path.filename().string() + ':';
    }
    all += std::to_string(finding.spot.line) + ':' +
           std::to_string(columns.of(finding.spot)) + ' ' +
           std::string(finding.rule);
  }
  return all;
}

}  // namespace tova_fw_builder
