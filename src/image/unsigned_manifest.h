// image/unsigned_manifest.h
#pragma once

#include "image/image.h"

namespace tova_fw_builder {

// What the manifests of generations 1.8, 2.5 and 3.0 have in common: they are
// signed outside this tool, so the signing operations leave all as it is.
class UnsignedManifest : public ImageManifest {
 public:
  static constexpr std::uint32_t kModuleType = 4;

  int generation_code() const override { return 3; }
  void set_signature(const std::uint8_t*) override {}
  void compute_hash(std::uint8_t*) override {}
  void write_raw(std::ostream&) override {}
};

}  // namespace tova_fw_builder
