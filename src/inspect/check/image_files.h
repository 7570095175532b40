// inspect/check/image_files.h
// What the checks work on: the files by their parts in the image, where the
// contents of each module stand, and the lines that come out.
#pragma once

#include <deque>
#include <string>
#include <string_view>
#include <vector>

#include "inspect/check/checked_file.h"
#include "inspect/check/digests.h"
#include "inspect/check/key_store_search.h"
#include "inspect/check/places.h"

namespace tova_fw_builder {

// A metadata and a binary that may be its own.
struct DigestPair {
  const CheckedFile* metadata = nullptr;
  const CheckedFile* binary = nullptr;
  std::uint64_t signer_part = 0;  // bytes in front, which came later
  std::size_t digest = 0;         // of the binary behind them
};

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

// The lines of one check.
class Report {
 public:
  Report(std::string_view id, std::vector<CheckLine>& lines)
      : id_(id), lines_(lines) {}

  void ok(const CheckedFile& file, std::string text) {
    add(CheckResult::kOk, file.path, std::move(text));
  }
  void failed(const CheckedFile& file, std::string text) {
    ++failures_;
    add(CheckResult::kFailed, file.path, std::move(text));
  }
  void failed(std::string text) {
    ++failures_;
    add(CheckResult::kFailed, "", std::move(text));
  }
  // What could be checked if something more was given.
  void not_checked(const CheckedFile& file, std::string text) {
    add(CheckResult::kNotChecked, file.path, std::move(text), true);
  }
  void not_checked(std::string text) {
    add(CheckResult::kNotChecked, "", std::move(text), true);
  }
  // What nobody asked for, or what the format or the image doesn't have.
  void not_due(const CheckedFile& file, std::string text) {
    add(CheckResult::kNotChecked, file.path, std::move(text));
  }
  void not_due(std::string text) {
    add(CheckResult::kNotChecked, "", std::move(text));
  }

  // How many have failed so far: a file is ok if none came behind a mark.
  std::size_t failures() const { return failures_; }

 private:
  // Two manifests of one image say the same of its contents: once is enough.
  void add(CheckResult result, std::string file, std::string text,
           bool is_gap = false);

  std::string_view id_;
  std::vector<CheckLine>& lines_;
  std::size_t failures_ = 0;
};

}  // namespace tova_fw_builder
