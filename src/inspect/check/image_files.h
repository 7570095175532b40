// inspect/check/image_files.h
// What the checks work on: the files by their parts in the image, and where the
// contents of each module stand.
#pragma once

#include <deque>
#include <string>
#include <vector>

#include "inspect/check/checked_file.h"
#include "inspect/check/contents_plan.h"
#include "inspect/check/digests.h"
#include "inspect/check/key_store_search.h"

namespace tova_fw_builder {

// A metadata and a binary that may be its own.
struct DigestPair {
  const CheckedFile* metadata = nullptr;
  const CheckedFile* binary = nullptr;
  std::uint64_t signer_part = 0;  // bytes in front, which came later
  std::size_t digest = 0;         // of the binary behind them
};

// " behind the 4096 bytes of a signer", or nothing.
std::string behind_signer_part(const DigestPair& pair);

struct ImageFiles {
  explicit ImageFiles(const CheckOptions& given) : options(given) {}

  const CheckOptions& options;
  // In the order given.
  std::vector<const CheckedFile*> manifests;  // of 1.5
  std::vector<const CheckedFile*> binaries;   // of 1.8 and later
  std::vector<const CheckedFile*> metadata;
  std::vector<const CheckedFile*> extended;
  std::vector<const CheckedFile*> packages;
  std::vector<const CheckedFile*> others;  // keys, and what is found by search
  std::vector<const CheckedFile*> bare;    // without a form of their own
  std::vector<const CheckedFile*> pieces;  // with one, and of no image

  // Manifests of 1.5 and binaries: those with a header and modules.
  std::vector<const CheckedFile*> headers;
  // Where the modules' contents stand, for each header; one more for each
  // joined package.
  std::vector<ContentsPlan> plans;

  std::vector<DigestPair> digest_pairs;

  // Of a key list's store, in each file of contents.
  std::deque<KeyStoreSearch> searches;

  // In which nothing is known; they may be contents that were damaged.
  std::vector<UnknownFile> unknown;

  Digests digests;  // of the contents in the plans and the pairs
};

// Sorts the files and plans what is to be hashed; nothing is read yet.
ImageFiles sort_files(const std::vector<CheckedFile>& files,
                      const CheckOptions& options);

bool is_30(const CheckedFile& binary);
// Of the header: "1.4.0.27".
std::string image_version(const Field& root);
// Where the names of a symbol table end, which stand behind their length.
std::uint64_t names_end(const Field& names_length);

}  // namespace tova_fw_builder
