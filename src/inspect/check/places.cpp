// The header of 1.8 and 2.5 tells where each segment stands. That of 1.5 counts
// file_off on by more than the contents of a module, so there it tells how the
// segments of one module stand to one another; the modules of the main binary
// follow each other without a gap.
#include "inspect/check/places.h"

#include <algorithm>
#include <string_view>

#include "image/records/binary_header.h"
#include "layout/records/out_map.h"

namespace tova_fw_builder {
namespace {

constexpr std::uint64_t kContents = 1;
constexpr std::uint64_t kLoad = 4;
constexpr std::uint64_t kMostPages = 0x10000;  // `len` has 16 bits

bool is_stored(const Field& segment) {
  return (number_at(segment, "flags_value") & kContents) != 0 &&
         (number_at(segment, "flags_value") & kLoad) != 0 &&
         number_at(segment, "len") != 0;
}

// The flags are those of the first section of the group: behind one without
// contents, or one that isn't loaded, others may be stored at an unknown place.
const Field* hidden_segment(const Field& module) {
  for (const Field& segment : find(module, "segments")->members) {
    const std::string_view type = text_at(segment, "type");
    if ((type == "text" || type == "rodata") && !is_stored(segment) &&
        number_at(segment, "len") != 0) {
      return &segment;
    }
  }
  return nullptr;
}

// Where they stand by file_off, rising.
std::vector<Span> stored_spans(const Field& module) {
  std::vector<Span> spans;
  for (const Field* segment : stored_segments(module)) {
    spans.push_back({number_at(*segment, "file_off"), bytes_of(*segment)});
  }
  std::ranges::sort(spans, {}, &Span::offset);
  return spans;
}

bool overlap(const std::vector<Span>& rising) {
  for (std::size_t i = 1; i < rising.size(); ++i) {
    if (rising[i].offset < rising[i - 1].offset + rising[i - 1].length) {
      return true;
    }
  }
  return false;
}

ModulePlace place_of(const Field& module) {
  ModulePlace place;
  place.module = &module;
  place.spans = stored_spans(module);
  if (const Field* hidden = hidden_segment(module)) {
    place.unknown = "the header doesn't tell where its " +
                    std::string(text_at(*hidden, "type")) +
                    " stands, whose first section isn't loaded";
  } else if (overlap(place.spans)) {
    place.unknown = "its segments share bytes of the file";
  }
  return place;
}

bool is_loadable(const Field& module) {
  return number_at(module, "type.loadable") != 0;
}

// Modules that share bytes with others aren't hashed: a header could name the
// same contents thousands of times.
void refuse_shared(std::vector<ModulePlace>& places) {
  struct Owned {
    Span span;
    ModulePlace* place;
  };
  std::vector<Owned> all;
  for (ModulePlace& place : places) {
    for (const Span& span : place.spans) all.push_back({span, &place});
  }
  std::ranges::stable_sort(
      all, {}, [](const Owned& owned) { return owned.span.offset; });
  std::uint64_t end = 0;
  ModulePlace* last = nullptr;
  for (const Owned& owned : all) {
    if (last != nullptr && owned.span.offset < end) {
      last->unknown = owned.place->unknown =
          "its segments share bytes of the file with others";
    } else if (last != nullptr &&
               owned.span.offset - end >= kMostPages * kPageSize) {
      last->doubt = "a segment may be longer than its entry can tell";
    }
    if (owned.span.offset + owned.span.length >= end) {
      end = owned.span.offset + owned.span.length;
      last = owned.place;
    }
  }
}

// The tail of an addon's file name: _UUID.bin, in any letter case.
std::string addon_tail(const Field& module) {
  std::string tail("_");
  tail += text_at(module, "uuid");
  return tail += ".bin";
}

bool is_named_so(std::string_view path, std::string_view tail) {
  return path.size() >= tail.size() &&
         std::ranges::equal(
             path.substr(path.size() - tail.size()), tail, [](char a, char b) {
               const auto lower = [](char c) {
                 return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a')
                                             : c;
               };
               return lower(a) == lower(b);
             });
}

// Which of the modules of a manifest stand where.
class ManifestPlanner {
 public:
  ManifestPlanner(const CheckedFile& manifest,
                  const std::vector<const CheckedFile*>& bare,
                  const std::vector<const CheckedFile*>& packages)
      : manifest_(manifest), bare_(bare), package_(nullptr) {
    if (!packages.empty()) package_ = &packages[0]->inspected.root;
    const std::uint64_t told = main_length(manifest);
    for (const Field& module :
         find(manifest.inspected.root, "modules")->members) {
      if (!is_loadable(module)) continue;
      modules_.push_back({place_of(module), false, 0});
      Placed& placed = modules_.back();
      make_relative(placed.place);
      placed.is_addon = number_at(module, "type.library") == 0 &&
                        (is_listed_addon(module) ||
                         placed.place.length > told - std::min(told, in_main_));
      if (!placed.is_addon) {
        placed.offset = in_main_;
        in_main_ += placed.place.length;
      }
    }
    is_full_ = in_main_ == told;
  }

  std::vector<ContentsPlan> plans() {
    std::vector<ContentsPlan> plans;
    for (const CheckedFile* file : bare_) {
      if (is_joined(*file)) plans.push_back(together(*file));
    }
    ContentsPlan apart = separate(main_file());
    if (plans.empty() || !apart.bare.empty()) plans.push_back(std::move(apart));
    return plans;
  }

 private:
  struct Placed {
    ModulePlace place;  // its spans count from the module's start
    bool is_addon;
    std::uint64_t offset;  // in the main binary
  };

  static void make_relative(ModulePlace& place) {
    if (place.spans.empty()) return;
    const std::uint64_t start = place.spans.front().offset;
    for (Span& span : place.spans) {
      span.offset -= start;
      place.length = std::max(place.length, span.offset + span.length);
    }
    place.spans = {{0, place.length}};
  }

  const CheckedFile* addon_file(const Field& module) const {
    const std::string tail = addon_tail(module);
    const auto found = std::ranges::find_if(
        bare_,
        [&](const CheckedFile* file) { return is_named_so(file->path, tail); });
    return found == bare_.end() ? nullptr : *found;
  }

  const Placed* addon_of(const CheckedFile& file) const {
    const auto found =
        std::ranges::find_if(modules_, [&](const Placed& placed) {
          return is_named_so(file.path, addon_tail(*placed.place.module));
        });
    return found == modules_.end() ? nullptr : &*found;
  }

  bool is_listed_addon(const Field& module) const {
    if (addon_file(module) != nullptr) return true;
    if (package_ == nullptr) return false;
    const std::string tail = addon_tail(module);
    return std::ranges::any_of(
        find(*package_, "files")->members, [&](const Field& file) {
          return is_named_so(text_at(file, "path"), tail);
        });
  }

  bool is_main_by_name(const CheckedFile& file) const {
    return package_ != nullptr &&
           base_name(text_at(*package_, "files[0].path")) ==
               base_name(file.path);
  }

  bool is_joined(const CheckedFile& file) const {
    const std::uint64_t joined = joined_length();
    return is_full_ && joined > in_main_ && file.inspected.length == joined &&
           addon_of(file) == nullptr && !is_main_by_name(file);
  }

  // By its name in the package descriptor, by its length, by the name of the
  // manifest, or because no other is left.
  const CheckedFile* main_file() const {
    std::vector<const CheckedFile*> left;
    for (const CheckedFile* file : bare_) {
      if (is_main_by_name(*file)) return file;
      if (addon_of(*file) == nullptr && !is_joined(*file)) left.push_back(file);
    }
    const auto stem = [](const CheckedFile& file) {
      const std::string name = base_name(file.path);
      return name.substr(0, name.find('.'));
    };
    const CheckedFile* best = nullptr;
    int most = 0;
    for (const CheckedFile* file : left) {
      const int points =
          (file->inspected.length == main_length(manifest_) ? 2 : 0) +
          (is_named_so(file->path, ".bin") && stem(*file) == stem(manifest_)
               ? 1
               : 0) +
          (left.size() == 1 ? 1 : 0);
      if (points > most) {
        most = points;
        best = file;
      }
    }
    return best;
  }

  std::uint64_t joined_length() const {
    std::uint64_t length = in_main_;
    for (const Placed& placed : modules_) {
      if (placed.is_addon) length += placed.place.length;
    }
    return length;
  }

  std::string main_name() const {
    const std::string_view told =
        package_ == nullptr ? "" : text_at(*package_, "files[0].path");
    return told.empty() ? "the binary, NAME.bin" : base_name(told);
  }

  ModulePlace put(const Placed& placed, const CheckedFile* file,
                  std::uint64_t offset) const {
    ModulePlace place = placed.place;
    for (Span& span : place.spans) span.offset += offset;
    place.file = file;
    if (!placed.is_addon && !is_full_) {
      place.doubt =
          "which modules stand in the binary isn't known: give the package "
          "descriptor, too";
    }
    if (file == nullptr && place.unknown.empty()) {
      place.unknown =
          "its contents are not at hand: give " +
          (placed.is_addon ? "NAME" + addon_tail(*place.module) : main_name());
    }
    return place;
  }

  ContentsPlan separate(const CheckedFile* main) const {
    ContentsPlan plan{&manifest_, {}, {}};
    if (main != nullptr) plan.bare.push_back({main, main_length(manifest_)});
    for (const Placed& placed : modules_) {
      const CheckedFile* file =
          placed.is_addon ? addon_file(*placed.place.module) : main;
      if (placed.is_addon && file != nullptr && placed.place.unknown.empty()) {
        plan.bare.push_back({file, placed.place.length});
      }
      plan.modules.push_back(put(placed, file, placed.offset));
      if (placed.is_addon && file != nullptr &&
          std::ranges::count(plan.modules, file, &ModulePlace::file) > 1) {
        plan.modules.back().unknown = "another module has the same file";
      }
    }
    return plan;
  }

  ContentsPlan together(const CheckedFile& joined) const {
    ContentsPlan plan{&manifest_, {}, {{&joined, joined_length()}}};
    std::uint64_t addons = in_main_;
    for (const Placed& placed : modules_) {
      plan.modules.push_back(
          put(placed, &joined, placed.is_addon ? addons : placed.offset));
      if (placed.is_addon) addons += placed.place.length;
    }
    return plan;
  }

  const CheckedFile& manifest_;
  const std::vector<const CheckedFile*>& bare_;
  const Field* package_;
  std::vector<Placed> modules_;
  std::uint64_t in_main_ = 0;
  bool is_full_ = false;  // the modules fill the main binary
};

}  // namespace

std::string base_name(std::string_view path) {
  return std::string(path.substr(path.find_last_of("/\\") + 1));
}

std::vector<const Field*> stored_segments(const Field& module) {
  std::vector<const Field*> stored;
  if (!is_loadable(module)) return stored;
  for (const Field& segment : find(module, "segments")->members) {
    if (is_stored(segment)) stored.push_back(&segment);
  }
  return stored;
}

std::uint64_t bytes_of(const Field& segment) {
  return number_at(segment, "len") * kPageSize;
}

std::uint64_t main_length(const CheckedFile& manifest) {
  const Field& root = manifest.inspected.root;
  const std::uint64_t end =
      number_at(root, "header.preload_page_count") * kPageSize;
  return end - std::min(end, number_at(root, "css.size") * 4);
}

ContentsPlan plan_binary(const CheckedFile& binary) {
  ContentsPlan plan{&binary, {}, {}};
  const Field& root = binary.inspected.root;
  const std::uint64_t room =
      kSignedHeaderOffset - number_at(root, "header_offset");
  for (const Field& module : find(root, "modules")->members) {
    if (!is_loadable(module)) continue;
    ModulePlace place = place_of(module);
    place.file = &binary;
    for (Span& span : place.spans) {
      if (span.offset < room) {
        place.unknown = "its contents lie ahead of the file";
      }
      span.offset -= std::min(room, span.offset);
    }
    plan.modules.push_back(std::move(place));
  }
  refuse_shared(plan.modules);
  return plan;
}

std::vector<ContentsPlan> plan_manifest(
    const CheckedFile& manifest, const std::vector<const CheckedFile*>& bare,
    const std::vector<const CheckedFile*>& packages) {
  return ManifestPlanner(manifest, bare, packages).plans();
}

}  // namespace tova_fw_builder
