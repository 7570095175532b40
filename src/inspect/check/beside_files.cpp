#include "inspect/check/beside_files.h"

#include <algorithm>

#include "driver/ground/numbers.h"
#include "image/records/binary_header.h"
#include "inspect/check/memory_bank.h"
#include "layout/records/out_map.h"

namespace tova_fw_builder {
namespace {

constexpr std::uint64_t kHead = 4096;

struct Kind {
  std::string_view mark;
  std::string_view name;
};

constexpr Kind kByBeginning[] = {
    {"binary_parts:", "a dependency file"},
    {"<memory_footprint ", "a memory description"},
    {"unsigned char rawData[", "a C array"},
    {"\177ELF", "an ELF"},
};

// Of texts without a form of their own.
constexpr Kind kByEnding[] = {
    {".elfs", "an ELF list"},
    {".sections", "a section table"},
    {".symbols", "a symbol list"},
    {".hex", "a memory file"},
    {".def", "a definition"},
    {".h", "a header of constants"},
    {".script", "an image script"},
    {".list", "a key list"},
    {".log", "a log"},
    {".json", "a report"},
    {".sarif", "a report"},
    {".html", "a page"},
};

// Of what is no text, and has no contents of an image.
constexpr std::string_view kOtherEndings[] = {".elf", ".o",  ".a",  ".sig",
                                              ".der", ".gz", ".xz", ".zip"};

// A manifest of 1.5 or a binary.
bool has_modules(const CheckedFile& file) {
  const Format format = file.inspected.format;
  return (format == Format::kBinary || format == Format::kManifest15) &&
         !find(file.inspected.root, "modules")->members.empty();
}

// Whether the page count of a binary's header is its own: then it is a whole
// one, whatever became of its tables.
bool has_own_page_count(const CheckedFile& binary) {
  const Field& root = binary.inspected.root;
  const std::uint64_t bytes =
      number_at(root, "header.preload_page_count") * kPageSize;
  return bytes == kContentsOffset ||  // in 3.0
         bytes == binary.inspected.length + kSignedHeaderOffset -
                      number_at(root, "header_offset");
}

std::string stem(const CheckedFile& file) {
  const std::string name = base_name(file.path);
  return name.substr(0, name.find('.'));
}

// Whether it has the name of a manifest of 1.8 or 2.5, or of an extended one.
bool has_name_of_another(const CheckedFile& file,
                         const std::vector<CheckedFile>& files) {
  return std::ranges::any_of(files, [&](const CheckedFile& other) {
    const Format format = other.inspected.format;
    return (format == Format::kMetadata ||
            format == Format::kExtendedManifest) &&
           stem(other) == stem(file);
  });
}

}  // namespace

std::string_view beside_kind(const CheckedFile& file) {
  const WipedBytes bytes = file.source.bytes(0, kHead);
  const std::string_view head = view_of(bytes);
  for (const Kind& kind : kByBeginning) {
    if (head.starts_with(kind.mark)) return kind.name;
  }
  if (!is_text(head)) return "";
  for (const Kind& kind : kByEnding) {
    if (has_ending(file.path, kind.mark)) return kind.name;
  }
  return "";
}

bool is_other_file(const CheckedFile& file) {
  return std::ranges::any_of(kOtherEndings, [&](std::string_view ending) {
    return has_ending(file.path, ending);
  });
}

bool is_of_image_by_name(const CheckedFile& file,
                         const std::vector<CheckedFile>& files) {
  for (const char* ending : {".man", ".man.ext", ".man.signed", ".pkg"}) {
    if (has_ending(file.path, ending)) return true;
  }
  const std::string name = base_name(file.path);
  return std::ranges::any_of(files, [&](const CheckedFile& package) {
    const Field* listed = find(package.inspected.root, "files");
    return package.inspected.format == Format::kPackageDescriptor &&
           std::ranges::any_of(listed->members, [&](const Field& entry) {
             return base_name(text_at(entry, "path")) == name;
           });
  });
}

bool is_piece(const CheckedFile& file, const std::vector<CheckedFile>& files) {
  if (file.inspected.problems.empty()) return false;
  if (memory_bank(file, files).of != nullptr) return true;
  return file.in_folder && file.inspected.format == Format::kBinary &&
         !has_modules(file) && !has_own_page_count(file) &&
         std::ranges::any_of(files, has_modules) &&
         !is_of_image_by_name(file, files) && !has_name_of_another(file, files);
}

bool is_text(std::string_view bytes) {
  return std::ranges::none_of(bytes, [](char c) {
    const auto byte = static_cast<unsigned char>(c);
    return (byte < ' ' && !is_white_space(c)) || byte == 0x7F;
  });
}

bool has_ending(std::string_view path, std::string_view ending) {
  if (path.size() < ending.size()) return false;
  return std::ranges::equal(
      ending, path.substr(path.size() - ending.size()),
      [](char a, char b) { return a == (b >= 'A' && b <= 'Z' ? b + 32 : b); });
}

std::string base_name(std::string_view path) {
  return std::string(path.substr(path.find_last_of("/\\") + 1));
}

}  // namespace tova_fw_builder
