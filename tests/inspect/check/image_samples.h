// tests/inspect/check/image_samples.h
// The files of one small image in each generation, put together by hand after
// docs/file-formats.md: "base" with 8192 bytes T and 4096 bytes R, "in", which
// is built in, and the addon "addon1" with 4096 bytes A.
#pragma once

#include <map>
#include <string>

#include "inspect/sample_files.h"

// By name: firmware.bin, firmware.man, firmware.man.ext, firmware.pkg, and of
// 1.5 the addon's file.
using ImageSample = std::map<std::string, std::string>;

// "1.5", "1.8", "2.5" or "3.0". All checks hold. In 1.8 and 2.5 the signer puts
// 8128 bytes in front, so that the header stands at 64.
ImageSample image_sample(const std::string& generation);

// The addon's file in 1.5.
inline constexpr char kAddonFile[] =
    "firmware_41414141-4141-4141-4141-414141414141.bin";

// Where the module entries stand: behind the header.
inline constexpr std::size_t kEntry = 116;
std::size_t entries_offset(const std::string& generation);
