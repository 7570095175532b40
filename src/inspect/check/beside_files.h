// inspect/check/beside_files.h
// What lies beside an image and is no part of it.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "inspect/check/checked_file.h"

namespace tova_fw_builder {

// What a file is that the builder takes or makes beside an image, or that the
// companion makes, such as "a dependency file"; empty if it is none of them.
std::string_view beside_kind(const CheckedFile& file);

// Whether, by its ending, it is what other tools leave beside an image.
bool is_other_file(const CheckedFile& file);

// Whether it has to be of the image: by its ending, or as a package descriptor
// among the files has its name.
bool is_of_image_by_name(const CheckedFile& file,
                         const std::vector<CheckedFile>& files);

// Whether a file that begins like one of an image is none: a bank of another
// one, or, unless it was named, a binary without modules and with another page
// count than its own beside another header.
bool is_piece(const CheckedFile& file, const std::vector<CheckedFile>& files);

// Whether all of the bytes may be text.
bool is_text(std::string_view bytes);

// The last part of a path.
std::string base_name(std::string_view path);

// Whether a path ends so; `ending` in small letters, the path in any.
bool has_ending(std::string_view path, std::string_view ending);

}  // namespace tova_fw_builder
