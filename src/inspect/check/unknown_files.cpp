#include "inspect/check/unknown_files.h"

#include <algorithm>
#include <set>
#include <string_view>

#include "companion/ground/message_text.h"
#include "driver/ground/numbers.h"
#include "inspect/compare/byte_difference.h"
#include "inspect/inspect.h"

namespace tova_fw_builder {
namespace {

constexpr std::uint64_t kHead = 4096;
constexpr std::uint64_t kSearched = 1024 * 1024;

// What tools leave beside an image that is no text.
constexpr std::string_view kOtherFiles[] = {".elf", ".o",  ".a",  ".sig",
                                            ".der", ".gz", ".xz", ".zip"};

bool has_ending(const std::string& path, std::string_view ending) {
  if (path.size() < ending.size()) return false;
  return std::ranges::equal(
      ending, std::string_view(path).substr(path.size() - ending.size()),
      [](char a, char b) { return a == (b >= 'A' && b <= 'Z' ? b + 32 : b); });
}

bool is_text(std::string_view bytes) {
  return std::ranges::none_of(bytes, [](char c) {
    const auto byte = static_cast<unsigned char>(c);
    return (byte < ' ' && !is_white_space(c)) || byte == 0x7F;
  });
}

bool may_be_contents(const CheckedFile& file) {
  if (has_ending(file.path, ".bin") || has_ending(file.path, ".img")) {
    return true;
  }
  if (std::ranges::any_of(kOtherFiles, [&](std::string_view ending) {
        return has_ending(file.path, ending);
      })) {
    return false;
  }
  const std::string head = file.source.bytes(0, kHead);
  return !is_text(head) && !head.starts_with("\177ELF");
}

// Such as a flash image. Its beginning tells: it may be long.
bool has_structures(const CheckedFile& file) {
  const ByteSource head = ByteSource::of(file.source.bytes(0, kSearched));
  return !find(inspect(head, Format::kEmbedded).root, "embedded")
              ->members.empty();
}

bool is_of_image_by_name(const CheckedFile& file, const ImageFiles& image) {
  for (const char* ending : {".man", ".man.ext", ".man.signed", ".pkg"}) {
    if (has_ending(file.path, ending)) return true;
  }
  const std::string name = base_name(file.path);
  return std::ranges::any_of(image.packages, [&](const CheckedFile* package) {
    return std::ranges::any_of(find(package->inspected.root, "files")->members,
                               [&](const Field& listed) {
                                 return base_name(text_at(listed, "path")) ==
                                        name;
                               });
  });
}

bool is_of_15(const ContentsPlan& plan) {
  return plan.header->inspected.format == Format::kManifest15;
}

// Whether all bytes have one value, as those of cleared memory have.
bool is_uniform(const ByteSource& source, Span span) {
  const std::string first = source.bytes(span.offset, 1);
  bool result = true;
  source.pieces(span.offset, span.length, [&](std::string_view piece) {
    result = piece.find_first_not_of(first) == piece.npos;
    return result;
  });
  return result;
}

// Whether it begins with the very contents of the main binary, or is their
// beginning.
bool begins_like(const CheckedFile& file, const ContentsPlan& plan) {
  constexpr std::uint64_t kLeast = 256;
  if (!plan.has_main || file.inspected.length < kLeast) return false;
  const ByteSource& main = plan.bare[0].file->source;
  const Span both{0,
                  std::min(file.inspected.length, main_length(*plan.header))};
  const std::uint64_t head = std::min(kHead, both.length);
  return file.source.bytes(0, head) == main.bytes(0, head) &&
         compare_bytes(file.source, both, main, both).is_equal() &&
         !is_uniform(file.source, both);
}

// The manifest that tells how long the file has to be, which is named like
// contents or was given: those of the manifest aren't at hand, or the file has
// their beginning. nullptr if there is none.
const ContentsPlan* judge_of(const CheckedFile& file, const ImageFiles& image) {
  if (file.in_folder ? !has_ending(file.path, ".bin")
                     : !may_be_contents(file)) {
    return nullptr;
  }
  const bool has_main =
      std::ranges::any_of(image.plans, &ContentsPlan::has_main);
  for (const ContentsPlan& plan : image.plans) {
    if (!is_of_15(plan)) continue;
    const bool is_one = file.inspected.length == main_length(*plan.header);
    if (has_main && (is_one || !begins_like(file, plan))) continue;
    if (!has_structures(file)) return &plan;
  }
  return nullptr;
}

std::string lengths_of(const ContentsPlan& plan) {
  const std::uint64_t main = main_length(*plan.header);
  std::string text = "the contents have " + counted(main, "byte");
  if (plan.joined_length > main) {
    text += ", or with the addons " + std::to_string(plan.joined_length);
  }
  return text;
}

bool may_be_joined(const ContentsPlan& plan) {
  return is_of_15(plan) && plan.joined_length > main_length(*plan.header);
}

std::string unknown_text(const ImageFiles& image) {
  const auto plan = std::ranges::find_if(image.plans, is_of_15);
  std::string text =
      "nothing known is in it, and it belongs to none of the other files";
  if (plan != image.plans.end()) return text + " (" + lengths_of(*plan) + ')';
  if (!image.headers.empty()) return text;
  return text + " (contents of generation 1.5 need their manifest)";
}

// Of 1.8 and later all contents stand in the binary; of 1.5, the file may be
// the joined package if no other one is.
UnknownFile beside(const CheckedFile& file, const ImageFiles& image) {
  UnknownFile unknown{&file, UnknownFile::Kind::kBeside, false, ""};
  if (has_structures(file)) {
    unknown.text =
        "structures stand in it, which tova_fw show lists; with --script it "
        "compares a flash image with what it was made of";
  } else {
    unknown.is_gap =
        has_ending(file.path, ".bin") &&
        std::ranges::any_of(image.plans, may_be_joined) &&
        std::ranges::none_of(image.plans, &ContentsPlan::is_joined);
    unknown.text = unknown_text(image);
  }
  return unknown;
}

}  // namespace

std::vector<UnknownFile> unknown_files(const std::vector<CheckedFile>& files,
                                       const ImageFiles& image) {
  using enum UnknownFile::Kind;
  std::set<const CheckedFile*> known;
  for (const ContentsPlan& plan : image.plans) {
    for (const BareFile& bare : plan.bare) known.insert(bare.file);
    for (const ModulePlace& place : plan.modules) known.insert(place.file);
  }
  const bool has_30 = std::ranges::any_of(
      image.binaries, [](const CheckedFile* binary) { return is_30(*binary); });
  std::vector<UnknownFile> unknown;
  for (const CheckedFile& file : files) {
    if (file.inspected.format != Format::kEmbedded || known.contains(&file)) {
      continue;
    }
    // The manifests of 3.0 are empty.
    const bool is_manifest_30 = has_30 && file.inspected.length == 0 &&
                                !has_ending(file.path, ".pkg") &&
                                !has_ending(file.path, ".bin");
    if (is_manifest_30) continue;
    const bool is_named = is_of_image_by_name(file, image);
    const ContentsPlan* judge = is_named ? nullptr : judge_of(file, image);
    if (judge != nullptr) {
      unknown.push_back({&file, kLength, false,
                         counted(file.inspected.length, "byte") + ", and " +
                             lengths_of(*judge)});
    } else if (!file.in_folder || is_named) {
      unknown.push_back(
          {&file, kTrouble, false,
           file.inspected.length == 0 ? "an empty file" : unknown_text(image)});
    } else if (may_be_contents(file)) {
      unknown.push_back(beside(file, image));
    }
  }
  return unknown;
}

}  // namespace tova_fw_builder
