// The statements of a module. What counts as a number differs from statement
// to statement; instance_count is the odd one: it wants at least two
// characters, so a single digit is looked up as a constant.
#include <algorithm>
#include <sstream>

#include "definitions/inner_blocks.h"
#include "definitions/uuid/uuid.h"
#include "driver/ground/line_fields.h"
#include "driver/ground/line_reader.h"
#include "driver/ground/log.h"
#include "driver/ground/numbers.h"

namespace tova_fw_builder {

namespace {

using Module = FwOutMap::Module;

struct ModuleKind {
  std::string_view key;
  std::uint32_t load_type;
  std::uint32_t module_kind;
  bool required;
  bool auto_init;
};
constexpr ModuleKind kModuleKinds[] = {
    {"o", Module::kLoadable, Module::kAddon, false, false},
    {"b", Module::kBuiltIn, Module::kBase, true, false},
    {"ba", Module::kBuiltIn, Module::kBase, true, true},
    {"d", Module::kLoadable, Module::kAddon, true, false},
    {"da", Module::kLoadable, Module::kAddon, true, true},
    {"l", Module::kLoadable, Module::kLibrary, true, false},
};

// A library is told as an addon; readers of the log know it so.
void log_module(const Module& module) {
  log_detail(
      " module: ", module.name,
      module.load_type != Module::kBuiltIn ? " (loadable)" : " (builtin)",
      module.module_kind != Module::kBase ? " (addon)" : " (base)",
      module.required ? "" : " (optional)",
      module.auto_init ? " (auto-init)" : "");
}

struct ModuleBlock {
  FwOutMap& map;
  Module& module;
  StatementLines& lines;
};

void read_uuid(ModuleBlock& block, Statement& statement) {
  block.module.uuid = parse_uuid(std::string(statement.next_operand()));
}

// The flattened text has one blank behind each word; the one behind the last
// word stays in the name, which goes through a line's buffer.
void read_display_name(ModuleBlock& block, Statement& statement) {
  auto name = line_text(statement.rest());
  if (name.starts_with(' ')) name.remove_prefix(1);
  block.module.display_name = name;
}

// Of larger numbers the low 16 bits count, as in the image.
template <std::uint16_t Version::*Field>
void read_version(ModuleBlock& block, Statement& statement) {
  block.module.version.*Field =
      static_cast<std::uint16_t>(statement.next_signed(10));
}

// A constant by its name: the next word, or, if there is none, the word that
// has been taken already.
std::uint32_t next_const(const ModuleBlock& block, Statement& statement) {
  const std::string name(statement.next_word());
  const auto found = block.map.consts.find(name);
  if (found == block.map.consts.end()) {
    throw CfgFileError(block.lines.number(), "module",
                       "Undefined const " + name);
  }
  return found->second;
}

bool is_digit(char c) { return c >= '0' && c <= '9'; }

// Hex digits alone, without "0x"; a constant named FACE can't be reached.
bool is_mask(std::string_view word) {
  return !word.empty() && std::ranges::all_of(word, [](char c) {
    return hex_digit_value(c) >= 0;
  });
}

// One character from "(" to "|", which are all letters and digits and most
// signs, and at least one digit behind it. Definition files write +1 for a
// count of one.
bool is_count(std::string_view word) {
  return word.size() >= 2 && word[0] >= '(' && word[0] <= '|' &&
         std::all_of(word.begin() + 1, word.end(), is_digit);
}

// A number beyond 7FFFFFFF fails. Bit 31 takes a constant, which has 32 bits.
void read_affinity_mask(ModuleBlock& block, Statement& statement) {
  const auto word = statement.next_word();
  block.module.affinity_mask =
      is_mask(word) ? static_cast<std::uint32_t>(parse_signed(word, 16))
                    : next_const(block, statement);
}

void read_instance_count(ModuleBlock& block, Statement& statement) {
  const auto word = statement.next_word();
  block.module.instance_count =
      is_count(word) ? static_cast<std::uint32_t>(parse_signed(word, 10))
                     : next_const(block, statement);
  // Behind both ways: a constant may be 0, too.
  if (block.module.instance_count == 0) {
    throw CfgFileError(block.lines.number(), statement.word(),
                       "Modules instance count must be greater than zero");
  }
}

void read_type(ModuleBlock& block, Statement& statement) {
  block.module.type = statement.next_signed(10);
}

template <std::uint32_t Module::*Field, int kBase>
void read_signed(ModuleBlock& block, Statement& statement) {
  block.module.*Field =
      static_cast<std::uint32_t>(statement.next_signed(kBase));
}

struct DomainType {
  std::string_view key;
  bool Module::*field;
};
constexpr DomainType kDomainTypes[] = {
    {"LL", &Module::domain_ll},
    {"DP", &Module::domain_dp},
    {"RTOS", &Module::domain_rtos},
};

void read_domain_types(ModuleBlock& block, Statement& statement) {
  for (;;) {
    // next_word never runs out.
    const auto word = statement.next_operand();
    if (word.empty()) return;
    const auto* const found =
        std::ranges::find(kDomainTypes, word, &DomainType::key);
    if (found == std::end(kDomainTypes)) {
      throw CfgFileError(block.lines.number(), "domain_types",
                         "Undefined const " + std::string(word));
    }
    block.module.*found->field = true;
  }
}

void read_mod_cfg(ModuleBlock& block, Statement& statement) {
  LineFields numbers(statement.rest());
  ModuleConfig config;
  Le32* const fields[] = {&config.par_0, &config.par_1,    &config.par_2,
                          &config.par_3, &config.is_bytes, &config.cps,
                          &config.ibs,   &config.obs,      &config.mod_flags,
                          &config.cpc,   &config.obls};
  for (Le32* const field : fields) {
    // A number that is too large is FFFFFFFF, other text 0; either way all
    // fields behind it stay at 0.
    *field = numbers.number(field == &config.mod_flags ? 16 : 10);
  }
  block.module.mod_cfg.push_back(config);
}

void read_group_statement(ModuleBlock& block, Statement& statement) {
  auto group = open_group(statement);
  read_section_group(block.lines, *group);
  block.module.groups.push_back(std::move(group));
}

void read_pin_statement(ModuleBlock& block, Statement& statement) {
  FwOutMap::Pin pin = open_pin(statement);
  read_pin(block.lines, pin);
  block.module.pins.push_back(pin);
}

// Two numbers at the least, or none: the blank behind a single one makes the
// loop look for a second word, and an empty text is no number.
void read_sched_caps(ModuleBlock& block, Statement& statement) {
  std::istringstream words{std::string(statement.rest())};
  std::uint16_t first = 0;
  // Above FFFF the stream fails, and the empty word behind it is no number.
  words >> std::hex >> first;
  std::uint16_t flags = 0;
  std::string word;
  while (!words.eof()) {
    words >> word;  // stays if none is left
    flags = static_cast<std::uint16_t>(flags | parse_signed(word, 16));
  }
  block.module.sched_caps.push_back({first, flags});
}

void read_export(ModuleBlock& block, Statement& statement) {
  const bool optional = statement.next_word() == "o";
  if (optional) statement.next_word();
  // Required or not, the last statement for a symbol counts.
  block.map.exports[std::string(statement.word())] = optional;
}

constexpr StatementRow<ModuleBlock> kModuleStatements[] = {
    {"uuid", read_uuid},
    {"name", read_display_name},
    {"version_major", read_version<&Version::major>},
    {"version_minor", read_version<&Version::minor>},
    {"version_hotfix", read_version<&Version::hotfix>},
    {"version_build", read_version<&Version::build>},
    {"affinity_mask", read_affinity_mask},
    {"instance_count", read_instance_count},
    {"type", read_type},
    {"stack_size", read_signed<&Module::stack_size, 16>},
    {"domain_types", read_domain_types},
    {"core_type", read_signed<&Module::core_type, 10>},
    {"mod_cfg", read_mod_cfg},
    {"group", read_group_statement},
    {"pin", read_pin_statement},
    {"sched_caps", read_sched_caps},
    {"export", read_export},
};

}  // namespace

std::unique_ptr<Module> open_module(Statement& statement) {
  auto module = std::make_unique<Module>();
  const auto* const kind =
      std::ranges::find(kModuleKinds, statement.next_word(), &ModuleKind::key);
  if (kind != std::end(kModuleKinds)) {
    module->load_type = kind->load_type;
    module->module_kind = kind->module_kind;
    module->required = kind->required;
    module->auto_init = kind->auto_init;
    statement.next_word();
  }
  // The word stays if none follows: `module o` is an optional module called o.
  module->name = statement.word();
  log_module(*module);
  return module;
}

void read_module(FwOutMap& map, StatementLines& lines, Module& module) {
  ModuleBlock block{map, module, lines};
  read_block(lines, [&block](Statement& statement) {
    // A line that the end of the text cuts off is dropped, here alone.
    return block.lines.good() && carry_out(kModuleStatements, block, statement);
  });
}

std::vector<std::string_view> module_keys() {
  return keys_of(kModuleStatements);
}

std::vector<std::string_view> module_kinds() { return keys_of(kModuleKinds); }

std::vector<std::string_view> domain_types() { return keys_of(kDomainTypes); }

}  // namespace tova_fw_builder
