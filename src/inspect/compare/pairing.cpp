#include "inspect/compare/pairing.h"

#include <algorithm>
#include <array>
#include <map>
#include <optional>
#include <set>
#include <utility>

namespace tova_fw_builder {
namespace {

constexpr std::string_view kNoUuid = "00000000-0000-0000-0000-000000000000";

std::string uuid_of(const Field& member) {
  const std::string_view uuid = text_at(member, "uuid");
  return std::string(uuid == kNoUuid ? std::string_view() : uuid);
}

std::string name_of(const Field& member) {
  return std::string(text_at(member, "name"));
}

std::string file_name_of(const Field& member) {
  const std::string_view path = text_at(member, "path");
  return std::string(path.substr(path.find_last_of("/\\") + 1));
}

using Identity = std::string (*)(const Field& member);

// By what the members of a list are known, the surest first; a member that has
// none of it is known by its index. `shown` stands in paths.
struct Known {
  std::string_view list;
  std::array<Identity, 2> by;
  std::array<Identity, 2> shown;
};

constexpr Known kKnown[] = {
    {"modules", {uuid_of, name_of}, {name_of, uuid_of}},
    {"symbols", {name_of, nullptr}, {name_of, nullptr}},
    {"files", {file_name_of, nullptr}, {file_name_of, nullptr}},
};

using Members = std::vector<const Field*>;

// The members by identity; those without one are left out.
std::map<std::string, Members> by_identity(const Members& members,
                                           Identity identity) {
  std::map<std::string, Members> result;
  for (const Field* member : members) {
    const std::string key = identity(*member);
    if (!key.empty()) result[key].push_back(member);
  }
  return result;
}

using Partners = std::map<const Field*, const Field*>;

Members without(const Members& members, const Partners& partners) {
  Members rest;
  std::copy_if(members.begin(), members.end(), std::back_inserter(rest),
               [&](const Field* member) { return !partners.contains(member); });
  return rest;
}

// Pairs what is left on both sides. What stands more than once under the last
// identity is paired in order; under a surer one it waits for the next.
void pair_by(Identity identity, bool is_last, Members& old_rest,
             Members& new_rest, Partners& partners) {
  const auto old_members = by_identity(old_rest, identity);
  const auto new_members = by_identity(new_rest, identity);
  for (const auto& [key, olds] : old_members) {
    const auto found = new_members.find(key);
    if (found == new_members.end()) continue;
    const Members& news = found->second;
    if (!is_last && (olds.size() != 1 || news.size() != 1)) continue;
    for (std::size_t i = 0; i < std::min(olds.size(), news.size()); ++i) {
      partners[olds[i]] = news[i];
      partners[news[i]] = olds[i];
    }
  }
  old_rest = without(old_rest, partners);
  new_rest = without(new_rest, partners);
}

Members pointers(const Field& list) {
  Members members;
  for (const Field& member : list.members) members.push_back(&member);
  return members;
}

// Whether nothing is known of the member but its place.
bool is_nameless(const Known& known, const Field* member) {
  return std::all_of(known.by.begin(), known.by.end(), [&](Identity identity) {
    return identity == nullptr || identity(*member).empty();
  });
}

Partners find_partners(const Known* known, const Field& old_list,
                       const Field& new_list) {
  Partners partners;
  Members old_rest = pointers(old_list);
  Members new_rest = pointers(new_list);
  if (known != nullptr) {
    for (std::size_t i = 0; i < known->by.size(); ++i) {
      if (known->by[i] == nullptr) continue;
      const bool is_last = i + 1 == known->by.size() || !known->by[i + 1];
      pair_by(known->by[i], is_last, old_rest, new_rest, partners);
    }
    // Two of one UUID and without names, as in an extended manifest.
    pair_by(known->by[0], true, old_rest, new_rest, partners);
    const auto has_name = [&](const Field* member) {
      return !is_nameless(*known, member);
    };
    std::erase_if(old_rest, has_name);
    std::erase_if(new_rest, has_name);
  }
  for (std::size_t i = 0; i < std::min(old_rest.size(), new_rest.size()); ++i) {
    partners[old_rest[i]] = new_rest[i];
    partners[new_rest[i]] = old_rest[i];
  }
  return partners;
}

// Marks the fewest pairs that have to move for the rest to stand in order: all
// that aren't in the longest row of rising places.
void mark_moved(const Field& new_list, std::vector<MemberPair>& pairs) {
  const auto place = [&new_list](const MemberPair* pair) {
    return pair->new_member - new_list.members.data();
  };
  std::vector<MemberPair*> ends;  // of the best row of each length
  std::map<const MemberPair*, MemberPair*> before;
  for (MemberPair& pair : pairs) {
    if (pair.old_member == nullptr || pair.new_member == nullptr) continue;
    pair.is_moved = true;
    const auto at = std::lower_bound(
        ends.begin(), ends.end(), &pair,
        [&](const auto* a, const auto* b) { return place(a) < place(b); });
    before[&pair] = at == ends.begin() ? nullptr : *std::prev(at);
    if (at == ends.end()) {
      ends.push_back(&pair);
    } else {
      *at = &pair;
    }
  }
  MemberPair* in_row = ends.empty() ? nullptr : ends.back();
  for (; in_row != nullptr; in_row = before[in_row]) in_row->is_moved = false;
}

std::string key_of(const Known* known, const Field& member, std::size_t index,
                   const std::set<std::string>& taken) {
  if (known != nullptr) {
    for (const Identity shown : known->shown) {
      std::string key = shown == nullptr ? "" : shown(member);
      if (!key.empty() && !taken.contains(key)) return key;
    }
  }
  // Of three segments, each has its own type.
  const std::string_view type = text_at(member, "type");
  if (!type.empty() && type != "unused" && type != "unknown" &&
      !taken.contains(std::string(type))) {
    return std::string(type);
  }
  std::string key = std::to_string(index);
  while (taken.contains(key)) key += '+';
  return key;
}

}  // namespace

std::vector<MemberPair> pair_members(const Field& old_list,
                                     const Field& new_list) {
  const auto* known =
      std::find_if(std::begin(kKnown), std::end(kKnown),
                   [&](const Known& k) { return k.list == old_list.name; });
  if (known == std::end(kKnown)) known = nullptr;
  const Partners partners = find_partners(known, old_list, new_list);
  const auto partner = [&](const Field* member) {
    const auto found = partners.find(member);
    return found == partners.end() ? nullptr : found->second;
  };

  std::vector<MemberPair> pairs;
  for (const Field& member : old_list.members) {
    pairs.push_back({&member, partner(&member), "", false});
  }
  for (const Field& member : new_list.members) {
    if (partner(&member) == nullptr) {
      pairs.push_back({nullptr, &member, "", false});
    }
  }
  std::set<std::string> taken;
  for (std::size_t i = 0; i < pairs.size(); ++i) {
    const Field* old_member = pairs[i].old_member;
    const Field* member =
        old_member != nullptr && text_at(*old_member, "type") != "unused"
            ? old_member
            : pairs[i].new_member;
    if (member == nullptr) member = old_member;
    pairs[i].key = key_of(known, *member, i, taken);
    taken.insert(pairs[i].key);
  }
  mark_moved(new_list, pairs);
  return pairs;
}

}  // namespace tova_fw_builder
