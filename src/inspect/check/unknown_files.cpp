#include "inspect/check/unknown_files.h"

#include <algorithm>
#include <optional>
#include <set>
#include <string_view>

#include "companion/ground/message_text.h"
#include "inspect/check/beside_files.h"
#include "inspect/check/memory_bank.h"
#include "inspect/compare/byte_difference.h"
#include "inspect/format.h"
#include "inspect/inspect.h"

namespace tova_fw_builder {
namespace {

constexpr std::uint64_t kHead = 4096;
constexpr std::uint64_t kSearched = 1024 * 1024;

bool is_named_like_contents(const CheckedFile& file) {
  return has_ending(file.path, ".bin") || has_ending(file.path, ".img");
}

bool may_be_contents(const CheckedFile& file) {
  if (is_named_like_contents(file)) return true;
  if (is_other_file(file)) return false;
  const WipedBytes head = file.source.bytes(0, kHead);
  return !is_text(view_of(head)) && beside_kind(file).empty();
}

// Those at its beginning, which tells enough: it may be long.
std::vector<Field> structures_in(const CheckedFile& file) {
  const ByteSource head = ByteSource::of(file.source.bytes(0, kSearched));
  return find(inspect(head, Format::kEmbedded).root, "embedded")->members;
}

// Such as a flash image.
bool has_structures(const CheckedFile& file) {
  return !structures_in(file).empty();
}

bool stands_at(const CheckedFile& header, const CheckedFile& file,
               std::uint64_t offset) {
  const std::uint64_t length = header.inspected.length;
  return offset <= file.inspected.length &&
         length <= file.inspected.length - offset &&
         compare_bytes(file.source, {offset, length}, header.source,
                       {0, length})
             .is_equal();
}

// Whether the manifests and binaries in the file are the image's, as in a flash
// image of it.
bool holds_headers_of(const ImageFiles& image, const CheckedFile& file) {
  std::size_t found = 0;
  for (const Field& structure : structures_in(file)) {
    const std::string_view format = text_at(structure, "format");
    if (format != format_name(Format::kManifest15) &&
        format != format_name(Format::kBinary)) {
      continue;
    }
    ++found;
    const std::uint64_t offset = number_at(structure, "offset");
    if (std::ranges::none_of(image.headers, [&](const CheckedFile* header) {
          return format == format_name(header->inspected.format) &&
                 stands_at(*header, file,
                           offset - number_at(header->inspected.root,
                                              "header_offset"));
        })) {
      return false;
    }
  }
  return found != 0;
}

bool is_of_15(const ContentsPlan& plan) {
  return plan.header->inspected.format == Format::kManifest15;
}

// Whether all bytes have one value, as those of cleared memory have.
bool is_uniform(const ByteSource& source, Span span) {
  const WipedBytes first = source.bytes(span.offset, 1);
  bool result = true;
  source.pieces(span.offset, span.length, [&](std::string_view piece) {
    result = piece.find_first_not_of(view_of(first)) == piece.npos;
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

std::string unknown_text(const ImageFiles& image) {
  const auto plan = std::ranges::find_if(image.plans, is_of_15);
  std::string text =
      "nothing known is in it, and it belongs to none of the other files";
  if (plan != image.plans.end()) return text + " (" + lengths_of(*plan) + ')';
  if (!image.headers.empty()) return text;
  return text + " (contents of generation 1.5 need their manifest)";
}

// What is to be said of a file that has to be of the image, and isn't.
std::string trouble_text(const CheckedFile& file, const ImageFiles& image) {
  if (file.inspected.length == 0) return "an empty file";
  if (has_structures(file)) {
    return "it begins with nothing known, but structures stand in it: tova_fw "
           "show lists them; cut them out to have them checked";
  }
  return unknown_text(image) + (image.headers.empty() ? "" : ": leave it out");
}

// Whether nothing of the contents of 1.5 lacks that a file could be.
bool has_all_contents(const ImageFiles& image) {
  return !image.headers.empty() &&
         std::ranges::all_of(image.plans, [&](const ContentsPlan& plan) {
           return !is_of_15(plan) || plan.has_main ||
                  std::ranges::any_of(image.plans, &ContentsPlan::has_main);
         });
}

// The contents at hand that the file is a copy of, as the joined package is
// where there are no addons; nullptr if there are none.
const CheckedFile* original_of(const CheckedFile& file,
                               const ImageFiles& image) {
  const Span all{0, file.inspected.length};
  for (const ContentsPlan& plan : image.plans) {
    for (const BareFile& bare : plan.bare) {
      if (bare.file->inspected.length == all.length &&
          compare_bytes(file.source, all, bare.file->source, all).is_equal()) {
        return bare.file;
      }
    }
  }
  return nullptr;
}

// Even where no contents lack, it may be those of another build.
UnknownFile beside(const CheckedFile& file, const ImageFiles& image) {
  UnknownFile unknown{&file, UnknownFile::Kind::kBeside,
                      is_named_like_contents(file), unknown_text(image)};
  if (has_structures(file)) {
    unknown.is_gap = unknown.is_gap && !holds_headers_of(image, file);
    unknown.text =
        "structures stand in it, which tova_fw show lists; with --script it "
        "compares a flash image with what it was made of";
  }
  return unknown;
}

// What is to be told of a file that isn't known; nothing of one in a folder
// that has nothing to do with the image.
std::optional<UnknownFile> judged(const CheckedFile& file,
                                  const std::vector<CheckedFile>& files,
                                  const ImageFiles& image) {
  using enum UnknownFile::Kind;
  const bool is_named = is_of_image_by_name(file, files);
  const MemoryBank bank = is_named ? MemoryBank{} : memory_bank(file, files);
  if (bank.of != nullptr) {
    return UnknownFile{&file, kBeside, false,
                       std::string("the ") + (bank.is_odd ? "odd" : "even") +
                           " words of " + bank.of->path +
                           ", as split deals them out"};
  }
  if (const CheckedFile* original = original_of(file, image)) {
    return UnknownFile{&file, kBeside, false,
                       "the same bytes as " + original->path};
  }
  if (std::ranges::count(image.pieces, &file) != 0) {
    return UnknownFile{&file, kBeside, true,
                       "it begins like a binary, but no module is in its "
                       "header: a memory bank, or a binary that was damaged"};
  }
  const ContentsPlan* judge = is_named ? nullptr : judge_of(file, image);
  if (judge != nullptr) {
    return UnknownFile{
        &file, kLength, false,
        counted(file.inspected.length, "byte") + ", and " + lengths_of(*judge)};
  }
  if (!file.in_folder && !is_named) {
    if (const std::string_view kind = beside_kind(file); !kind.empty()) {
      return UnknownFile{
          &file, kBeside, false,
          std::string(kind) + ", in which nothing is to be checked"};
    }
    if (has_all_contents(image) && has_structures(file)) {
      return beside(file, image);
    }
  }
  if (!file.in_folder || is_named) {
    return UnknownFile{&file, kTrouble, false, trouble_text(file, image)};
  }
  if (!may_be_contents(file)) return std::nullopt;
  return beside(file, image);
}

// The manifests of 3.0 are empty.
bool is_manifest_30(const CheckedFile& file, const ImageFiles& image) {
  return file.inspected.length == 0 && !has_ending(file.path, ".pkg") &&
         !has_ending(file.path, ".bin") &&
         std::ranges::any_of(image.binaries, [](const CheckedFile* binary) {
           return is_30(*binary);
         });
}

}  // namespace

std::vector<UnknownFile> unknown_files(const std::vector<CheckedFile>& files,
                                       const ImageFiles& image) {
  std::set<const CheckedFile*> known;
  for (const ContentsPlan& plan : image.plans) {
    for (const BareFile& bare : plan.bare) known.insert(bare.file);
    for (const ModulePlace& place : plan.modules) known.insert(place.file);
  }
  std::vector<const CheckedFile*> left = image.bare;
  left.insert(left.end(), image.pieces.begin(), image.pieces.end());
  std::vector<UnknownFile> unknown;
  for (const CheckedFile* file : left) {
    if (known.contains(file) || is_manifest_30(*file, image)) continue;
    if (auto found = judged(*file, files, image)) {
      unknown.push_back(std::move(*found));
    }
  }
  return unknown;
}

}  // namespace tova_fw_builder
