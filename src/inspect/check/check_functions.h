// inspect/check/check_functions.h
// The checks, each a function that adds its lines. Without one, nothing that
// the check needs is among the files.
#pragma once

#include "inspect/check/check_lines.h"
#include "inspect/check/image_files.h"

namespace tova_fw_builder {

// structure_check.cpp: each file by itself, and what is no part of the image.
void check_structure(const ImageFiles& image, Report& report);

// one_image_check.cpp: whether they are of one image, a part of
// check_structure.
void check_one_image(const ImageFiles& image, Report& report);

// length_check.cpp: each file, and the binary as its manifest tells it.
void check_length(const ImageFiles& image, Report& report);
void check_image_length(const ImageFiles& image, Report& report);

// segment_checks.cpp: where segments stand.
void check_pages(const ImageFiles& image, Report& report);
void check_segments_apart(const ImageFiles& image, Report& report);

// symbol_checks.cpp: the exported symbols.
void check_symbol_names(const ImageFiles& image, Report& report);
void check_symbols_kept(const ImageFiles& image, Report& report);

// module_checks.cpp: the modules and their contents.
void check_uuids(const ImageFiles& image, Report& report);
void check_module_hash(const ImageFiles& image, Report& report);

// image_digest_check.cpp: the contents as a whole.
void check_image_digest(const ImageFiles& image, Report& report);

// extended_manifest_check.cpp: the order of the modules.
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
