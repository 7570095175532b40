// The header of 1.5 counts file_off on by more than the contents of a module,
// so that it tells how the segments of one module stand to one another and no
// more. The modules of the main binary follow each other without a gap.
#include <algorithm>
#include <iterator>
#include <string_view>

#include "inspect/addon_name.h"
#include "inspect/check/addon_roles.h"
#include "inspect/check/beside_files.h"
#include "inspect/check/contents_plan.h"
#include "layout/records/addon_file.h"
#include "layout/records/out_map.h"

namespace tova_fw_builder {
namespace {

bool is_file_of(std::string_view path, const Field& module) {
  return uuid_of_addon_file(path) == text_at(module, "uuid");
}

// Which of the modules of a manifest stand where.
class ManifestPlanner {
 public:
  ManifestPlanner(const CheckedFile& manifest,
                  const std::vector<const CheckedFile*>& bare,
                  const std::vector<const CheckedFile*>& packages)
      : manifest_(manifest), bare_(bare), package_(nullptr) {
    if (!packages.empty()) package_ = &packages[0]->inspected.root;
    std::vector<RoleQuestion> questions;
    const std::size_t base_modules = named_modules();
    for (const Field& module :
         find(manifest.inspected.root, "modules")->members) {
      const bool is_base = questions.size() < base_modules;
      questions.push_back({is_loadable(module), {}, {}, 0});
      if (!is_loadable(module)) continue;
      modules_.push_back({place_of(module), false, 0});
      questions.back() = question(modules_.back().place, is_base);
      make_relative(modules_.back().place);
    }
    const Roles roles = find_roles(questions);
    place_modules(questions, roles);
    is_sure_ = roles.is_sure && in_main_ == main_length(manifest);
  }

  std::vector<ContentsPlan> plans() {
    std::vector<ContentsPlan> plans;
    for (const CheckedFile* file : bare_) {
      if (is_joined(*file)) plans.push_back(together(*file));
    }
    ContentsPlan apart = separate(main_files());
    if (plans.empty() || !apart.bare.empty()) plans.push_back(std::move(apart));
    return plans;
  }

 private:
  struct Placed {
    ModulePlace place;  // its spans count from the module's start
    bool is_addon;
    std::uint64_t offset;  // in the main binary
  };

  // The descriptor names the modules ahead of the first addon or library.
  std::size_t named_modules() const {
    return package_ == nullptr
               ? 0
               : single_names(text_at(*package_, "modules")).size();
  }

  // A module behind these that has no line of its own in the descriptor is one
  // of the main binary, unless the places alone say that a line is missing.
  Roles find_roles(std::vector<RoleQuestion>& questions) const {
    const std::uint64_t total = main_length(manifest_);
    Roles roles = roles_of(questions, total);
    if (roles.is_sure || package_ == nullptr) return roles;
    for (RoleQuestion& question : questions) {
      if (!question.is_addon) question.is_addon = false;
    }
    return roles_of(questions, total);
  }

  RoleQuestion question(const ModulePlace& place, bool is_base) const {
    RoleQuestion question{true, {}, {}, length_of(place)};
    const Field& module = *place.module;
    if (is_listed_addon(module)) {
      question.is_addon = true;
    } else if (is_base || question.length == 0 ||
               number_at(module, "type.library") != 0) {
      question.is_addon = false;
    }
    const std::uint64_t size =
        number_at(manifest_.inspected.root, "css.size") * 4;
    if (!place.spans.empty()) {
      question.place = place.spans.front().offset - size;
    }
    return question;
  }

  void place_modules(const std::vector<RoleQuestion>& questions,
                     const Roles& roles) {
    auto next = modules_.begin();
    for (std::size_t i = 0; i < questions.size(); ++i) {
      if (!questions[i].is_loadable) continue;
      Placed& placed = *next++;
      placed.is_addon = placed.place.is_addon = roles.is_addon[i];
      if (placed.is_addon) continue;
      placed.offset = in_main_;
      in_main_ += placed.place.length;
    }
  }

  static std::uint64_t length_of(const ModulePlace& place) {
    std::uint64_t end = 0;
    for (const Span& span : place.spans) {
      end = std::max(end, span.offset + span.length);
    }
    return place.spans.empty() ? 0 : end - place.spans.front().offset;
  }

  static void make_relative(ModulePlace& place) {
    place.length = length_of(place);
    if (!place.spans.empty()) place.spans = {{0, place.length}};
  }

  // All that have its UUID in their names: of two folders there may be two.
  std::vector<const CheckedFile*> addon_files(const Field& module) const {
    std::vector<const CheckedFile*> found;
    std::ranges::copy_if(bare_, std::back_inserter(found),
                         [&](const CheckedFile* file) {
                           return is_file_of(file->path, module);
                         });
    return found;
  }

  const Placed* addon_of(const CheckedFile& file) const {
    const auto found =
        std::ranges::find_if(modules_, [&](const Placed& placed) {
          return is_file_of(file.path, *placed.place.module);
        });
    return found == modules_.end() ? nullptr : &*found;
  }

  bool is_listed_addon(const Field& module) const {
    if (!addon_files(module).empty()) return true;
    if (package_ == nullptr) return false;
    return std::ranges::any_of(
        find(*package_, "files")->members, [&](const Field& file) {
          return is_file_of(text_at(file, "path"), module);
        });
  }

  bool is_main_by_name(const CheckedFile& file) const {
    return package_ != nullptr &&
           base_name(text_at(*package_, "files[0].path")) ==
               base_name(file.path);
  }

  bool is_joined(const CheckedFile& file) const {
    const std::uint64_t joined = joined_length();
    return is_sure_ && joined > in_main_ && file.inspected.length == joined &&
           addon_of(file) == nullptr && !is_main_by_name(file);
  }

  // By its name in the package descriptor, by its length, or by the name of the
  // manifest. Of two folders there may be two.
  std::vector<const CheckedFile*> main_files() const {
    std::vector<const CheckedFile*> named;
    std::vector<const CheckedFile*> left;
    for (const CheckedFile* file : bare_) {
      if (is_main_by_name(*file)) {
        named.push_back(file);
      } else if (addon_of(*file) == nullptr && !is_joined(*file)) {
        left.push_back(file);
      }
    }
    return named.empty() ? most_alike(left) : named;
  }

  std::vector<const CheckedFile*> most_alike(
      const std::vector<const CheckedFile*>& files) const {
    const auto stem = [](const CheckedFile& file) {
      const std::string name = base_name(file.path);
      return name.substr(0, name.find('.'));
    };
    std::vector<const CheckedFile*> best;
    int most = 1;
    for (const CheckedFile* file : files) {
      const bool is_bin =
          file->path.ends_with(".bin") || file->path.ends_with(".BIN");
      const int points =
          (file->inspected.length == main_length(manifest_) ? 2 : 0) +
          (is_bin && stem(*file) == stem(manifest_) ? 1 : 0);
      if (points > most) best.clear();
      if (points >= most) best.push_back(file);
      most = std::max(most, points);
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

  // As the builder writes it.
  static std::string uuid_in_name(const Field& module) {
    std::string uuid(text_at(module, "uuid"));
    std::ranges::transform(uuid, uuid.begin(), [](char c) {
      return 'a' <= c && c <= 'f' ? static_cast<char>(c - 'a' + 'A') : c;
    });
    return uuid;
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
    if (!placed.is_addon && !is_sure_) {
      place.doubt =
          "which modules stand in the binary isn't known: give the package "
          "descriptor, too";
    }
    if (file == nullptr && place.unknown.empty() && place.length == 0) {
      place.file = &manifest_;  // any file has no contents
    } else if (file == nullptr && place.unknown.empty()) {
      place.is_missing = true;
      place.unknown =
          "its contents are not at hand: give " +
          (placed.is_addon
               ? "NAME" + addon_file_suffix(uuid_in_name(*place.module))
               : main_name());
    }
    return place;
  }

  ContentsPlan empty_plan() const {
    ContentsPlan plan{&manifest_, {}};
    plan.is_sure = is_sure_;
    if (is_sure_) plan.joined_length = joined_length();
    return plan;
  }

  ContentsPlan separate(const std::vector<const CheckedFile*>& mains) const {
    ContentsPlan plan = empty_plan();
    plan.has_main = !mains.empty();
    for (const CheckedFile* main : mains) {
      plan.bare.push_back({main, main_length(manifest_)});
    }
    for (const Placed& placed : modules_) {
      const auto files =
          placed.is_addon ? addon_files(*placed.place.module) : mains;
      if (files.empty()) plan.modules.push_back(put(placed, nullptr, 0));
      for (const CheckedFile* file : files) {
        if (placed.is_addon) {
          add_addon(placed, *file, plan);
        } else {
          plan.modules.push_back(put(placed, file, placed.offset));
        }
      }
    }
    return plan;
  }

  void add_addon(const Placed& placed, const CheckedFile& file,
                 ContentsPlan& plan) const {
    if (placed.place.unknown.empty()) {
      plan.bare.push_back({&file, placed.place.length});
    }
    plan.modules.push_back(put(placed, &file, 0));
    if (std::ranges::count(plan.modules, &file, &ModulePlace::file) > 1) {
      plan.modules.back().unknown = "another module has the same file";
    }
  }

  ContentsPlan together(const CheckedFile& joined) const {
    ContentsPlan plan = empty_plan();
    plan.bare.push_back({&joined, joined_length()});
    plan.has_main = plan.is_joined = true;
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
  bool is_sure_ = false;  // of which modules fill the main binary
};

}  // namespace

std::uint64_t main_length(const CheckedFile& manifest) {
  const Field& root = manifest.inspected.root;
  const std::uint64_t end =
      number_at(root, "header.preload_page_count") * kPageSize;
  return end - std::min(end, number_at(root, "css.size") * 4);
}

std::vector<ContentsPlan> plan_manifest(
    const CheckedFile& manifest, const std::vector<const CheckedFile*>& bare,
    const std::vector<const CheckedFile*>& packages) {
  return ManifestPlanner(manifest, bare, packages).plans();
}

}  // namespace tova_fw_builder
