// tests/image/small_image.h
#pragma once

#include <array>
#include <memory>
#include <string>

#include "layout/records/out_map.h"
#include "support/bytes.h"

// A bound map of three modules, filled by hand: a base module with code, .bss
// and one configuration; an addon with code and constants; a built-in module
// off the page grid. Of its four exported symbols "beta" lies in no segment.
std::unique_ptr<tova_fw_builder::FwOutMap> small_image(
    std::uint32_t binary_ver);

// The three stored pages of small_image() in module order.
std::string stored_pages();

// sha256sum of stored_pages(): of its first page, and of the others.
inline const std::string kBaseHash = bytes_of(
    "a47f0051f0d0fd55089d79a2fbe8c55fc040e1316daef114de3391bf0778d6d2");
inline const std::string kAddonHash = bytes_of(
    "527d454dd18f81416be9f39c8d5fdd8cc517d9d9b4daac42289777e9f7aea9fb");

// The binary header of small_image() with all its tables. The file offsets are
// those of the base module's code, the addon's code and its constants.
std::string expected_tables(std::uint32_t pages,
                            const std::array<std::uint32_t, 3>& file_offsets,
                            const std::string& base_hash = kBaseHash,
                            const std::string& addon_hash = kAddonHash);
