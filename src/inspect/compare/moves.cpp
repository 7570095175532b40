#include "inspect/compare/moves.h"

#include <algorithm>
#include <map>
#include <string>
#include <utility>

#include "companion/ground/printable.h"
#include "inspect/compare/pairing.h"
#include "layout/records/out_map.h"

namespace tova_fw_builder {
namespace {

// Where something stands: from `at` to `end`.
struct Range {
  std::uint64_t at = 0;
  std::uint64_t end = 0;
};

// A segment of both files, or of one of them.
struct Segment {
  std::string path;  // "modules[mixer].segments[text]"
  const Field* old_field = nullptr;
  const Field* new_field = nullptr;
  bool is_resized = false;
  bool is_changed = false;  // its size, or contents of its module
};

const Field* in_use(const Field* segment) {
  return segment == nullptr || text_at(*segment, "type") == "unused" ? nullptr
                                                                     : segment;
}

// The range of a segment along its vma or its file_off.
Range range_of(const Field& segment, std::string_view along) {
  const std::uint64_t at = number_at(segment, along);
  return {at, at + number_at(segment, "len") * kPageSize};
}

// Why the next segment may stand elsewhere.
struct Push {
  bool all_shifted = false;
  bool resized = false;        // one ahead grew, shrank, came or went
  bool contents = false;       // of one ahead changed
  std::uint64_t distance = 0;  // by which the one ahead moved
  std::uint64_t reach = 0;     // the end of these; what lies inside counts not

  bool explains(std::uint64_t by) const {
    const bool is_short = by < kPageSize || by > std::uint64_t{0} - kPageSize;
    return all_shifted || resized || (contents && is_short) || by == distance;
  }
};

// Disjoint ranges, in order.
std::vector<Range> merged(std::vector<Range> ranges) {
  std::sort(ranges.begin(), ranges.end(),
            [](const Range& a, const Range& b) { return a.at < b.at; });
  std::vector<Range> result;
  for (const Range& range : ranges) {
    if (!result.empty() && range.at <= result.back().end) {
      result.back().end = std::max(result.back().end, range.end);
    } else {
      result.push_back(range);
    }
  }
  return result;
}

bool is_in(const std::vector<Range>& ranges, std::uint64_t address) {
  const auto behind = std::upper_bound(
      ranges.begin(), ranges.end(), address,
      [](std::uint64_t at, const Range& range) { return at < range.at; });
  return behind != ranges.begin() && address < std::prev(behind)->end;
}

class Moves {
 public:
  Moves(const Field& old_root, const Field& new_root,
        std::vector<Change>& changes)
      : old_root_(old_root), new_root_(new_root) {
    for (Change& change : changes) by_path_[change.path] = &change;
    const Field* old_modules = find(old_root, "modules");
    const Field* new_modules = find(new_root, "modules");
    if (old_modules == nullptr || new_modules == nullptr) return;
    modules_ = pair_members(*old_modules, *new_modules);
    for (const MemberPair& module : modules_) add_segments(module);
  }

  void mark() {
    mark_along("vma", false);
    const bool all_shifted =
        changed("css.size") ||
        std::any_of(modules_.begin(), modules_.end(),
                    [](const MemberPair& module) { return module.is_moved; });
    mark_along("file_off", all_shifted);
    find_changed_ranges();
    for (const MemberPair& module : modules_) mark_entry(module);
    mark_symbols();
    give_addresses();
  }

 private:
  static std::string module_path(const MemberPair& module) {
    return "modules[" + printable(module.key) + ']';
  }

  Change* changed(const std::string& path) const {
    const auto found = by_path_.find(path);
    return found == by_path_.end() ? nullptr : found->second;
  }

  void add_segments(const MemberPair& module) {
    const Field none = list_field("segments");
    const auto segments = [&none](const Field* member) -> const Field& {
      const Field* found =
          member == nullptr ? nullptr : find(*member, "segments");
      return found == nullptr ? none : *found;
    };
    const std::string path = module_path(module);
    bool is_changed =
        changed("contents") != nullptr || changed(path + ".hash") != nullptr;
    const std::size_t first = segments_.size();
    for (const MemberPair& pair : pair_members(segments(module.old_member),
                                               segments(module.new_member))) {
      Segment segment;
      segment.path = path + ".segments[" + printable(pair.key) + ']';
      segment.old_field = in_use(pair.old_member);
      segment.new_field = in_use(pair.new_member);
      if (!segment.old_field && !segment.new_field) continue;
      segment.is_resized = changed(segment.path + ".len") != nullptr;
      is_changed |=
          segment.is_resized || changed(segment.path + ".contents") != nullptr;
      segments_.push_back(std::move(segment));
    }
    for (std::size_t i = first; i < segments_.size(); ++i) {
      segments_[i].is_changed = is_changed;
    }
  }

  // Goes through the segments by rising place, and carries along why the next
  // one may have moved; a segment that stayed ends it.
  void mark_along(const std::string& along, bool all_shifted) {
    std::vector<std::pair<std::uint64_t, const Segment*>> order;
    for (const Segment& segment : segments_) {
      const Field& any =
          segment.old_field ? *segment.old_field : *segment.new_field;
      const std::uint64_t at = number_at(any, along);
      if (at != 0) order.emplace_back(at, &segment);
    }
    std::stable_sort(
        order.begin(), order.end(),
        [](const auto& a, const auto& b) { return a.first < b.first; });

    Push push{all_shifted};
    for (const auto& [at, segment] : order) {
      const bool in_both = segment->old_field && segment->new_field;
      Change* const moved = changed(segment->path + '.' + along);
      if (moved != nullptr && in_both) {
        const std::uint64_t by =
            moved->new_value.number - moved->old_value.number;
        moved->is_moved =
            push.explains(by) ||
            (along != "vma" && changed(segment->path + ".vma") != nullptr);
        push.distance = by;
      } else if (in_both && at >= push.reach) {
        push = Push{all_shifted};
      }
      push.resized |= segment->is_resized || !in_both;
      push.contents |= segment->is_changed;
      if (moved != nullptr || !in_both || segment->is_changed) {
        const Field& any =
            segment->old_field ? *segment->old_field : *segment->new_field;
        push.reach = std::max(push.reach, range_of(any, along).end);
      }
    }
  }

  void find_changed_ranges() {
    for (const Segment& segment : segments_) {
      if (!segment.is_changed) continue;
      if (segment.old_field) {
        old_changed_.push_back(range_of(*segment.old_field, "vma"));
      }
      if (segment.new_field) {
        new_changed_.push_back(range_of(*segment.new_field, "vma"));
      }
    }
    old_changed_ = merged(std::move(old_changed_));
    new_changed_ = merged(std::move(new_changed_));
  }

  // Whether an address moved as the segment of the module did that it lies in.
  bool moved_with_segment(const Change& change, const MemberPair& module) {
    if (!module.old_member || !module.new_member) return false;
    const std::uint64_t old_at = change.old_value.number;
    const std::uint64_t new_at = change.new_value.number;
    for (const char* slot : {"segments[0]", "segments[1]", "segments[2]"}) {
      const Field* old_field = find(*module.old_member, slot);
      const Field* new_field = find(*module.new_member, slot);
      if (!in_use(old_field) || !in_use(new_field)) continue;
      const Range old_range = range_of(*old_field, "vma");
      const Range new_range = range_of(*new_field, "vma");
      if (old_at >= old_range.at && old_at < old_range.end &&
          new_at - new_range.at == old_at - old_range.at) {
        return true;
      }
    }
    return false;
  }

  void mark_address(Change* change, const MemberPair* module) {
    if (change == nullptr) return;
    change->is_moved =
        (module != nullptr && moved_with_segment(*change, *module)) ||
        (is_in(old_changed_, change->old_value.number) &&
         is_in(new_changed_, change->new_value.number));
  }

  void mark_entry(const MemberPair& module) {
    mark_address(changed(module_path(module) + ".ep"), &module);
  }

  void mark_symbols() {
    const Field* old_symbols = find(old_root_, "symbols");
    const Field* new_symbols = find(new_root_, "symbols");
    if (old_symbols == nullptr || new_symbols == nullptr) return;
    std::map<const Field*, const MemberPair*> owners;
    for (const MemberPair& module : modules_)
      owners[module.old_member] = &module;
    const auto owner = [](const Field& root, const Field& symbol) {
      return find(
          root, "modules[" + std::to_string(number_at(symbol, "module")) + ']');
    };
    for (const MemberPair& symbol : pair_members(*old_symbols, *new_symbols)) {
      if (!symbol.old_member || !symbol.new_member) continue;
      const std::string path = "symbols[" + printable(symbol.key) + "].";
      const Field* old_module = owner(old_root_, *symbol.old_member);
      const auto found = owners.find(old_module);
      const MemberPair* module = old_module == nullptr || found == owners.end()
                                     ? nullptr
                                     : found->second;
      mark_address(changed(path + "address"), module);
      Change* const index = changed(path + "module");
      if (index != nullptr && module != nullptr) {
        index->is_moved =
            module->new_member == owner(new_root_, *symbol.new_member);
      }
    }
  }

  void give_addresses() {
    for (const Segment& segment : segments_) {
      Change* const contents = changed(segment.path + ".contents");
      if (contents == nullptr || !contents->bytes || !segment.new_field) {
        continue;
      }
      contents->address =
          number_at(*segment.new_field, "vma") + contents->bytes->first;
    }
  }

  const Field& old_root_;
  const Field& new_root_;
  std::map<std::string, Change*> by_path_;
  std::vector<MemberPair> modules_;
  std::vector<Segment> segments_;
  std::vector<Range> old_changed_;
  std::vector<Range> new_changed_;
};

}  // namespace

void mark_moves(const Field& old_root, const Field& new_root,
                std::vector<Change>& changes) {
  Moves(old_root, new_root, changes).mark();
}

}  // namespace tova_fw_builder
