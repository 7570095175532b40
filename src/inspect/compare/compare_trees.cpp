#include "inspect/compare/compare_trees.h"

#include <algorithm>
#include <utility>

#include "companion/ground/printable.h"
#include "inspect/compare/byte_difference.h"
#include "inspect/compare/moves.h"
#include "inspect/compare/pairing.h"

namespace tova_fw_builder {
namespace {

constexpr std::size_t kMostChanges = 10000;
constexpr std::uint64_t kHead = 576 * 1024;  // all tables are in it

// The contents of each segment stand in a tree of their own, `contents`, that
// has the lists of the file's tree: moves them to the members that they are of.
void move_contents(Field& from, Field& to) {
  if (!from.has_members()) {
    if (from.kind == Field::Kind::kContents) {
      from.name = "contents";
      to.add(std::move(from));
    }
    return;
  }
  for (std::size_t i = 0; i < from.members.size(); ++i) {
    Field& member = from.members[i];
    Field* found = from.kind != Field::Kind::kList ? find(to, member.name)
                   : i < to.members.size()         ? &to.members[i]
                                                   : nullptr;
    if (found != nullptr) move_contents(member, *found);
  }
}

void settle_contents(Field& root) {
  Field* contents = find(root, "contents");
  if (contents == nullptr || contents->kind != Field::Kind::kObject) return;
  Field taken = std::move(*contents);
  *contents = object_field("contents");
  move_contents(taken, root);
}

bool is_nothing(const Field* field) {
  return field == nullptr || field->kind == Field::Kind::kNothing;
}

// Whether the bytes of such a field are all that there is to compare.
bool is_bytes(const Field* field) {
  return field != nullptr && (field->kind == Field::Kind::kContents ||
                              field->kind == Field::Kind::kPadding ||
                              field->kind == Field::Kind::kPrivate);
}

// The fields that stand for a member that only one side has.
Field summary(const Field& list, const Field& member) {
  if (!member.has_members()) return member;
  Field result = object_field("");
  if (list.columns.empty()) {
    for (const Field& field : member.members) {
      if (!field.has_members() && field.shown != Field::Shown::kBytes) {
        result.add(field);
      }
    }
  }
  for (const Column& column : list.columns) {
    const Field* field = find(member, column.path);
    if (field == nullptr) continue;
    result.add(*field).name = column.title;
    if (column.note_first && !field->note.empty()) {
      result.members.back().kind = Field::Kind::kText;
      result.members.back().text = field->note;
    }
  }
  return result;
}

class TreeComparer {
 public:
  TreeComparer(const Side& old_side, const Side& new_side)
      : old_(old_side),
        new_(new_side),
        budget_(2 * (old_side.source.size() + new_side.source.size()) +
                1024 * 1024),
        old_head_(old_side.source.bytes(0, kHead)),
        new_head_(new_side.source.bytes(0, kHead)) {}

  std::vector<Change> compare() {
    compare_fields(&old_.inspected.root, &new_.inspected.root, {});
    if (is_spent_) compare_whole();
    if (changes_.size() >= kMostChanges) {
      Change rest = change({"and_more", "and_more", {}, {}});
      changes_.push_back(std::move(rest));
    }
    return std::move(changes_);
  }

 private:
  // Where a field stands.
  struct Place {
    std::string path;
    std::string pattern;
    std::vector<std::string> keys;
    std::string uuid = {};  // of the module around it

    Place member(std::string_view name) const {
      Place place = *this;
      if (!path.empty()) {
        place.path += '.';
        place.pattern += '.';
      }
      place.path += name;
      place.pattern += name;
      return place;
    }
    Place keyed(const std::string& key) const {
      Place place = *this;
      place.path += '[' + printable(key) + ']';
      place.pattern += "[]";
      place.keys.push_back(printable(key));
      return place;
    }
  };

  Change change(Place place) const {
    Change result;
    result.format = old_.inspected.format;
    result.path = std::move(place.path);
    result.pattern = std::move(place.pattern);
    result.keys = std::move(place.keys);
    result.uuid = std::move(place.uuid);
    return result;
  }

  void add(Change result) {
    if (changes_.size() < kMostChanges) changes_.push_back(std::move(result));
  }

  // Either may be nullptr.
  void compare_fields(const Field* old_field, const Field* new_field,
                      const Place& place) {
    const Field& any = old_field != nullptr ? *old_field : *new_field;
    const bool both_objects = old_field != nullptr && new_field != nullptr &&
                              old_field->kind == new_field->kind;
    if (any.kind == Field::Kind::kList && both_objects) {
      compare_lists(*old_field, *new_field, place);
    } else if (any.kind == Field::Kind::kObject && both_objects) {
      compare_objects(*old_field, *new_field, place);
    } else {
      compare_leaves(old_field, new_field, place);
    }
  }

  void compare_objects(const Field& old_field, const Field& new_field,
                       const Place& place) {
    for (const Field& member : old_field.members) {
      compare_fields(&member, find(new_field, member.name),
                     place.member(member.name));
    }
    for (const Field& member : new_field.members) {
      if (find(old_field, member.name) == nullptr) {
        compare_fields(nullptr, &member, place.member(member.name));
      }
    }
  }

  void compare_lists(const Field& old_list, const Field& new_list,
                     const Place& place) {
    for (const MemberPair& pair : pair_members(old_list, new_list)) {
      Place member = place.keyed(pair.key);
      if (pair.old_member != nullptr && place.uuid.empty()) {
        member.uuid = text_at(*pair.old_member, "uuid");
      }
      if (pair.is_moved) add_position(pair, old_list, new_list, member);
      if (pair.old_member != nullptr && pair.new_member != nullptr) {
        compare_fields(pair.old_member, pair.new_member, member);
      } else if (is_bytes(pair.old_member) || is_bytes(pair.new_member)) {
        compare_leaves(pair.old_member, pair.new_member, member);
      } else {
        add_lonely(pair, old_list, new_list, member);
      }
    }
  }

  void add_position(const MemberPair& pair, const Field& old_list,
                    const Field& new_list, const Place& place) {
    const auto index = [](const Field* member, const Field& list) {
      return static_cast<std::uint64_t>(member - list.members.data());
    };
    Change result = change(place.member("position"));
    result.old_value =
        number_field("position", index(pair.old_member, old_list));
    result.new_value =
        number_field("position", index(pair.new_member, new_list));
    add(std::move(result));
  }

  void add_lonely(const MemberPair& pair, const Field& old_list,
                  const Field& new_list, const Place& place) {
    Change result = change(place);
    if (pair.old_member != nullptr) {
      result.old_value = summary(old_list, *pair.old_member);
    } else {
      result.new_value = summary(new_list, *pair.new_member);
    }
    add(std::move(result));
  }

  void compare_leaves(const Field* old_field, const Field* new_field,
                      const Place& place) {
    const bool same_value = old_field != nullptr && new_field != nullptr &&
                            old_field->kind == new_field->kind &&
                            old_field->number == new_field->number &&
                            old_field->text == new_field->text &&
                            !old_field->has_members();
    const bool no_values = is_nothing(old_field) && is_nothing(new_field);
    if (same_value || no_values || is_bytes(old_field) || is_bytes(new_field)) {
      compare_field_bytes(old_field, new_field, place);
      return;
    }
    Change result = change(place);
    if (old_field != nullptr) result.old_value = *old_field;
    if (new_field != nullptr) result.new_value = *new_field;
    add(std::move(result));
  }

  void compare_field_bytes(const Field* old_field, const Field* new_field,
                           const Place& place) {
    const auto span = [](const Field* field) {
      return field == nullptr ? Span{} : Span{field->offset, field->length};
    };
    const Span old_span = span(old_field);
    const Span new_span = span(new_field);
    const bool is_padding = place.pattern == "padding[]";
    const ByteDifference bytes = take_bytes(
        old_span, new_span, is_padding ? Behind::kZeros : Behind::kNothing);
    if (bytes.is_equal()) return;
    Change result = change(place);
    if (!is_bytes(old_field) && old_field != nullptr) {
      result.old_value = *old_field;
    }
    if (!is_bytes(new_field) && new_field != nullptr) {
      result.new_value = *new_field;
    }
    result.bytes = bytes;
    result.old_offset = old_span.offset;
    result.new_offset = new_span.offset;
    add(std::move(result));
  }

  // Short fields are many: they aren't read one by one.
  bool is_equal_in_heads(Span old_span, Span new_span) const {
    const auto is_in = [](Span span, const WipedBytes& head) {
      return span.offset <= head.size() &&
             span.length <= head.size() - span.offset;
    };
    return old_span.length == new_span.length && is_in(old_span, old_head_) &&
           is_in(new_span, new_head_) &&
           view_of(old_head_).substr(old_span.offset, old_span.length) ==
               view_of(new_head_).substr(new_span.offset, new_span.length);
  }

  ByteDifference take_bytes(Span old_span, Span new_span, Behind behind) {
    if (is_equal_in_heads(old_span, new_span)) return {};
    const std::uint64_t cost =
        std::min(old_span.length + new_span.length,
                 old_.source.size() + new_.source.size());
    if (cost > budget_) {
      is_spent_ = true;
      return {};
    }
    budget_ -= cost;
    return compare_bytes(old_.source, old_span, new_.source, new_span, behind);
  }

  void compare_whole() {
    const ByteDifference bytes =
        compare_bytes(old_.source, {0, old_.source.size()}, new_.source,
                      {0, new_.source.size()});
    if (bytes.is_equal()) return;
    Change result = change({"bytes", "bytes", {}, {}});
    result.bytes = bytes;
    add(std::move(result));
  }

  const Side& old_;
  const Side& new_;
  std::uint64_t budget_;  // of bytes that may still be read
  WipedBytes old_head_;
  WipedBytes new_head_;
  bool is_spent_ = false;
  std::vector<Change> changes_;
};

}  // namespace

std::vector<Change> compare_trees(Side old_side, Side new_side) {
  settle_contents(old_side.inspected.root);
  settle_contents(new_side.inspected.root);
  std::vector<Change> changes = TreeComparer(old_side, new_side).compare();
  mark_moves(old_side.inspected.root, new_side.inspected.root, changes);
  return changes;
}

}  // namespace tova_fw_builder
