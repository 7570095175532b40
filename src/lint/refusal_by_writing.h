// lint/refusal_by_writing.h
// What the builder would refuse only while it writes, with the image half done.
#pragma once

#include <string>

#include "layout/records/out_map.h"

namespace tova_fw_builder {

struct WritingRefusal {
  std::string text;              // the builder's own
  std::string more;              // what it is about, in words; may be empty
  const void* record = nullptr;  // section, group or class; null for the image
};

// Of a map that connect_and_check took. Empty if the writing doesn't fail.
WritingRefusal refusal_of_writing(const FwOutMap& bound);

}  // namespace tova_fw_builder
