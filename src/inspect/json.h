// inspect/json.h
#pragma once

#include "companion/ground/json.h"
#include "inspect/inspected.h"

namespace tova_fw_builder {

// The value of a field, or its members but for those that the list of bytes
// alone shows. Names become a list of texts; nothing, contents, padding and
// reserved zeros are null.
Json field_json(const Field& field);

// [{offset, text}].
Json problems_json(const Inspected& inspected);

}  // namespace tova_fw_builder
