// inspect/check/memory_bank.h
// The files that `split` makes: every second word of another one.
#pragma once

#include <vector>

#include "inspect/check/checked_file.h"

namespace tova_fw_builder {

// A memory bank that `tova_fw_builder split` has made.
struct MemoryBank {
  const CheckedFile* of = nullptr;  // the file that was split; null if none was
  bool is_odd = false;              // the bank has its odd words
};

// Which of the files, of two words of 8 bytes or more, was split, so that one
// of its banks is `bank`.
MemoryBank memory_bank(const CheckedFile& bank,
                       const std::vector<CheckedFile>& files);

}  // namespace tova_fw_builder
