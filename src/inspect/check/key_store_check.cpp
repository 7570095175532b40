// Whether the contents trust the keys that they are meant to trust.
#include <algorithm>
#include <cstring>
#include <string>
#include <string_view>
#include <vector>

#include "companion/ground/message_text.h"
#include "inspect/check/check_functions.h"
#include "signing/keys/key_list.h"

namespace tova_fw_builder {
namespace {

// The entries of a store, as far as the bytes go.
std::vector<StoreEntry> entries_of(std::string_view bytes) {
  Le32 count;
  if (bytes.size() < sizeof(count)) return {};
  std::memcpy(&count, bytes.data(), sizeof(count));
  bytes.remove_prefix(sizeof(count));
  std::vector<StoreEntry> entries(
      std::min<std::size_t>(count, bytes.size() / sizeof(StoreEntry)));
  if (!entries.empty()) {
    std::memcpy(entries.data(), bytes.data(),
                entries.size() * sizeof(StoreEntry));
  }
  return entries;
}

std::vector<StoreEntry> entries_at(const FoundStore& store) {
  constexpr std::uint64_t kLength =
      sizeof(Le32) + KeyStoreSearch::kMostKeys * sizeof(StoreEntry);
  return entries_of(view_of(store.file->source.bytes(store.offset, kLength)));
}

// "1 debug key, 2 production keys"; of a kind that isn't there, nothing.
std::string kinds_of(const std::vector<StoreEntry>& entries) {
  const auto debug = static_cast<std::size_t>(std::ranges::count_if(
      entries, [](const StoreEntry& entry) { return entry.key_type == 1; }));
  std::string text;
  if (debug > 0) text = counted(debug, "debug key");
  if (debug == entries.size()) return text;
  if (debug > 0) text += ", ";
  return text + counted(entries.size() - debug, "production key");
}

std::string difference_of(const std::vector<StoreEntry>& there,
                          const std::vector<StoreEntry>& listed) {
  const auto is_same = [](const StoreEntry& a, const StoreEntry& b) {
    return a.key_type == b.key_type && a.hash == b.hash;
  };
  if (std::ranges::is_permutation(there, listed, is_same)) {
    return " has the keys of the list in another order";
  }
  const bool is_of_kinds = std::ranges::equal(
      there, listed, {}, &StoreEntry::hash, &StoreEntry::hash);
  return (is_of_kinds ? " has the keys of the list as other kinds ("
                      : " has other keys (") +
         kinds_of(there) + ") than the list (" + kinds_of(listed) + ')';
}

}  // namespace

void find_key_stores(ImageFiles& image) {
  if (!image.options.key_store) return;
  for (const auto* files : {&image.binaries, &image.bare}) {
    for (const CheckedFile* file : *files) {
      image.searches.emplace_back(*file, *image.options.key_store);
      image.digests.add(file->source,
                        [&search = image.searches.back()](
                            std::uint64_t offset, std::string_view piece) {
                          search.take(offset, piece);
                        });
    }
  }
}

void check_key_store(const ImageFiles& image, Report& report) {
  if (!image.options.key_store) return;
  if (image.searches.empty()) {
    report.failed("--key-list asks for the contents: give the binary, too");
    return;
  }
  if (image.options.key_store->size() == sizeof(Le32)) {
    report.not_checked("the key list names no key");
    return;
  }
  const std::vector<StoreEntry> listed = entries_of(*image.options.key_store);
  bool is_there = false;
  bool is_other = false;
  for (const KeyStoreSearch& search : image.searches) {
    for (const FoundStore& store : search.found()) {
      if (!store.is_expected) continue;
      is_there = true;
      report.ok(*store.file, "the keys of the list stand at " +
                                 number_text(store.offset, Field::Radix::kHex) +
                                 ": " + kinds_of(listed));
    }
  }
  for (const KeyStoreSearch& search : image.searches) {
    for (const FoundStore& store : search.found()) {
      if (store.is_expected) continue;
      if (is_there) {
        report.not_checked(*store.file,
                           "what stands at " +
                               number_text(store.offset, Field::Radix::kHex) +
                               " looks like a store of other keys (" +
                               kinds_of(entries_at(store)) +
                               "): see which one the loader takes");
        continue;
      }
      report.failed(*store.file,
                    "the store at " +
                        number_text(store.offset, Field::Radix::kHex) +
                        difference_of(entries_at(store), listed));
      is_other = true;
    }
  }
  if (!is_there && !is_other)
    report.failed("no store of keys is in the contents");
}

}  // namespace tova_fw_builder
