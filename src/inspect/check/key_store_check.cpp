#include "inspect/check/check_functions.h"
#include "signing/keys/key_list.h"

namespace tova_fw_builder {

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
  bool is_there = false;
  bool is_other = false;
  for (const KeyStoreSearch& search : image.searches) {
    for (const FoundStore& store : search.found()) {
      if (!store.is_expected) continue;
      is_there = true;
      report.ok(*store.file, "the keys of the list stand at " +
                                 number_text(store.offset, Field::Radix::kHex));
    }
  }
  for (const KeyStoreSearch& search : image.searches) {
    for (const FoundStore& store : search.found()) {
      if (store.is_expected) continue;
      if (is_there) {
        report.not_checked(
            *store.file,
            "what stands at " + number_text(store.offset, Field::Radix::kHex) +
                " looks like a store of other keys: see which one the loader "
                "takes");
        continue;
      }
      report.failed(*store.file,
                    "the store at " +
                        number_text(store.offset, Field::Radix::kHex) +
                        " has other keys than the list");
      is_other = true;
    }
  }
  if (!is_there && !is_other)
    report.failed("no store of keys is in the contents");
}

}  // namespace tova_fw_builder
