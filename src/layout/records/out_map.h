// layout/records/out_map.h
// The output map, in which the whole image stands before any byte of it is
// written. The definition readers fill it, the layout engine binds it, the
// content writer notes where things came to lie, `build` adds what its words
// say of the image; all others only read it.
// Statements: docs/definition-language.md; wire records: docs/file-formats.md.
#pragma once

#include <array>
#include <cstdint>
#include <limits>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "definitions/uuid/uuid.h"
#include "driver/ground/version.h"
#include "driver/ground/wire.h"
#include "input_map/fw_image_map.h"
#include "layout/records/generation.h"

namespace tova_fw_builder {

inline constexpr std::uint32_t kPageSize = 4096;

// One configuration of a module, as it stands in the image.
struct ModuleConfig {
  Le32 par_0;
  Le32 par_1;
  Le32 par_2;
  Le32 par_3;
  Le32 is_bytes;
  Le32 cps;
  Le32 ibs;
  Le32 obs;
  Le32 mod_flags;
  Le32 cpc;
  Le32 obls;
};
static_assert(sizeof(ModuleConfig) == 44 && alignof(ModuleConfig) == 1);

struct FwOutMap {
  // Scheduling capability, as it stands in the extended manifest.
  struct SchedCaps {
    Le16 sched_first;
    Le16 sched_flags;
  };
  static_assert(sizeof(SchedCaps) == 4 && alignof(SchedCaps) == 1);

  // Audio stream pin, as it stands in the extended manifest.
  struct Pin {
    Le16 pin_flag;  // bit 0 of the `pin` statement's value
    Le16 reserved_2;
    Le32 stream_type;
    Le32 sample_rates;  // bit mask
    Le16 sample_sizes;  // bit mask
    Le16 reserved_14;
    Le32 sample_containers;  // bit mask
    Le32 channel_cfg;        // bit mask
  };
  static_assert(sizeof(Pin) == 24 && alignof(Pin) == 1);

  // One `section` statement: a name to be bound to a section header.
  struct Section {
    std::string name;
    bool entrypoint = false;                                 // marker "ep"
    bool optional = false;                                   // marker "o"
    std::shared_ptr<FwImageMap::SectionHeader> header = {};  // null until bound
    std::unique_ptr<Section> replacement = {};  // the name behind "<", or null
  };

  // One `group` statement. Bound and sorted it becomes a segment.
  struct SectionGroup {
    enum Type : std::uint32_t { kText = 0, kRodata = 1, kBss = 2 };
    // Bits of `flags`. Bits 8 to 11 are the type, bits 16 to 31 the pages.
    enum Flag : std::uint32_t {
      kContents = 1u << 0,
      kAlloc = 1u << 1,
      kLoad = 1u << 2,
      kReadonly = 1u << 3,
      kCode = 1u << 4,
      kData = 1u << 5,
      kOnDemand = 1u << 6,
    };
    static constexpr std::uint32_t kNoEntry = 0xFFFFFFFF;

    // Appends a reference; an empty `replacement_name` is none.
    void add_section(const std::string& name, bool entrypoint, bool optional,
                     const std::string& replacement_name) {
      sections.push_back(
          std::make_shared<Section>(Section{name, entrypoint, optional}));
      if (replacement_name.empty()) return;
      sections.back()->replacement =
          std::make_unique<Section>(Section{replacement_name});
    }

    std::vector<std::shared_ptr<Section>> sections;
    std::uint32_t flags = 0;
    std::uint32_t type = kText;
    std::uint32_t entry = kNoEntry;
    bool on_demand = false;
    bool explicit_entry = false;    // set by an `entry` statement; unread
    std::uint64_t file_offset = 0;  // set when the group is written
  };

  struct Module {
    enum LoadType : std::uint32_t { kBuiltIn = 0, kLoadable = 1 };
    enum Kind : std::uint32_t { kBase = 0, kAddon = 1, kLibrary = 2 };
    // The one that other modules are loaded by; its stack size is its .bss.
    static constexpr std::int32_t kBaseFirmwareType = 0;

    std::string name;
    std::int32_t type = 27;  // `type` statement
    bool required = true;
    Uuid uuid;
    std::string display_name;
    Version version;
    std::uint32_t affinity_mask = 1;
    std::array<std::uint8_t, 32> hash{};  // SHA-256 of the written contents
    std::uint32_t entry_point = 0;
    std::uint32_t instance_count = 0;
    bool domain_ll = false;
    bool domain_dp = false;
    bool domain_rtos = false;
    std::uint32_t core_type = 0;
    std::uint32_t stack_size = 0;  // 16 bits travel in the module entry
    std::vector<std::unique_ptr<SectionGroup>> groups;  // statement order
    std::vector<SchedCaps> sched_caps;
    std::vector<Pin> pins;
    std::vector<ModuleConfig> mod_cfg;
    std::uint64_t cfg_offset = 0;  // image-wide index of the first mod_cfg
    std::uint32_t load_type = kLoadable;
    std::uint32_t module_kind = kBase;
    bool auto_init = false;
  };

  // It steers no placement.
  struct MemoryClass {
    std::string name;
    std::uint32_t base = 0;
    std::uint32_t end = 0;  // base + size, exclusive, modulo 2^32
    std::uint32_t size = 0;
  };

  bool rom_mode = false;
  std::uint32_t binary_ver = 0;  // generation; 0 if the statement is missing
  std::uint32_t load_offset = 0;
  std::uint64_t image_end = 0;  // stream position behind the last module
  std::string binary_name;
  std::uint32_t fw_img_flags = 0;
  std::uint32_t feature_mask = 0;
  Version version;
  std::uint32_t hw_buf_ba = 0;
  std::uint32_t hw_buf_size = 0;
  std::uint64_t max_data = std::numeric_limits<std::uint64_t>::max();
  std::map<std::string, std::uint32_t> consts;
  std::vector<std::unique_ptr<Module>> modules;  // definition order
  std::vector<std::unique_ptr<Section>> dyn_mem;
  std::uint64_t mod_cfg_total = 0;  // of the kept modules
  std::vector<std::string> ignore;
  std::string default_dir;
  std::vector<std::string> dir_stack;
  std::vector<MemoryClass> memory_classes;
  std::vector<std::string> files_read;  // canonical paths, in opening order
  std::map<std::string, bool> exports;  // symbol to "is optional"
  std::vector<FwImageMap::Symbol> exported_symbols;  // name order
};

}  // namespace tova_fw_builder
