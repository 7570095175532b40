// inspect/check/checks.h
// The checks, each a function that adds its lines. Without one, nothing that
// the check needs is among the files.
#pragma once

#include "inspect/check/image_files.h"

namespace tova_fw_builder {

// shape_checks.cpp: each file by itself.
void check_structure(const ImageFiles& image, Report& report);
void check_length(const ImageFiles& image, Report& report);
void check_pages(const ImageFiles& image, Report& report);
void check_segments_apart(const ImageFiles& image, Report& report);

// one_image_check.cpp: whether they are of one image, a part of
// check_structure.
void check_one_image(const ImageFiles& image, Report& report);

// length_30.cpp: the length of a binary of 3.0, a part of check_length.
void check_length_30(const CheckedFile& binary, Report& report);

// module_checks.cpp: the modules and their contents.
void check_symbol_names(const ImageFiles& image, Report& report);
void check_symbols_kept(const ImageFiles& image, Report& report);
void check_uuids(const ImageFiles& image, Report& report);
void check_module_hash(const ImageFiles& image, Report& report);

// build_checks.cpp: files of one build.
void check_image_digest(const ImageFiles& image, Report& report);
void check_image_length(const ImageFiles& image, Report& report);
void check_extended_manifest(const ImageFiles& image, Report& report);

// package_check.cpp: the package descriptor of the build.
void check_package(const ImageFiles& image, Report& report);

// signature_checks.cpp: who signed.
void check_signed_part(const ImageFiles& image, Report& report);
void check_signature(const ImageFiles& image, Report& report);
void check_key_trusted(const ImageFiles& image, Report& report);
void check_debug_signature(const ImageFiles& image, Report& report);
void check_sample_key(const ImageFiles& image, Report& report);

// key_store_check.cpp: whom the firmware trusts. With a key list, the first one
// adds a search in each file of contents to the image's digests.
void find_key_stores(ImageFiles& image);
void check_key_store(const ImageFiles& image, Report& report);

}  // namespace tova_fw_builder
