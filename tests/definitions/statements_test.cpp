// The statements of the flattened text: what each leaves in the map, or its
// message. Expectations are worked out by hand from the words of each line.
#include <gtest/gtest.h>

#include <sstream>

#include "definitions/image_block.h"
#include "support/temp_dir.h"

namespace tova_fw_builder {
namespace {

// All that differs from a fresh map, numbers in hex.
class Description {
 public:
  explicit Description(const FwOutMap& map) {
    out_ << std::hex;
    show("name", map.binary_name);
    show("ver", map.binary_ver);
    show("offset", map.load_offset);
    show("ba", map.hw_buf_ba);
    show("buf", map.hw_buf_size);
    show("max", map.max_data, ~std::uint64_t{0});
    for (const auto& section : map.dyn_mem) show("dyn", section->name);
    for (const auto& name : map.ignore) show("ignore", name);
    for (const auto& c : map.memory_classes) {
      out_ << c.name << ':' << c.base << '+' << c.size << '=' << c.end << ' ';
    }
    for (const auto& [name, optional] : map.exports) {
      show(optional ? "export?" : "export", name);
    }
    for (const auto& module : map.modules) add(*module);
  }
  std::string text() const { return out_.str(); }

 private:
  template <typename T>
  void show(const char* label, const T& value, const T& usual = T()) {
    if (value != usual) out_ << label << ' ' << value << ' ';
  }
  // A wire record as the 32-bit numbers that its bytes make.
  template <typename Record>
  void show_words(const char* label, const Record& record) {
    out_ << label;
    const auto* const words = reinterpret_cast<const Le32*>(&record);
    for (std::size_t i = 0; i < sizeof(Record) / 4; ++i) {
      out_ << ',' << words[i];
    }
    out_ << ' ';
  }
  void add(const FwOutMap::Module& m) {
    out_ << "| " << m.name << ' ';
    show("load", m.load_type, 1u);
    show("kind", m.module_kind);
    show("required", m.required, true);
    show("auto", m.auto_init);
    show("type", m.type, 27);
    show("uuid", m.uuid.text());
    if (!m.display_name.empty()) out_ << '"' << m.display_name << "\" ";
    show("major", m.version.major);
    show("minor", m.version.minor);
    show("hotfix", m.version.hotfix);
    show("build", m.version.build);
    show("mask", m.affinity_mask, 1u);
    show("count", m.instance_count);
    show("domains", m.domain_ll + 2 * m.domain_dp + 4 * m.domain_rtos);
    show("core", m.core_type);
    show("stack", m.stack_size);
    for (const auto& caps : m.sched_caps) show_words("caps", caps);
    for (const auto& config : m.mod_cfg) show_words("cfg", config);
    for (const auto& pin : m.pins) show_words("pin", pin);
    for (const auto& group : m.groups) add(*group);
  }
  void add(const FwOutMap::SectionGroup& group) {
    out_ << "group " << group.type << ' ';
    show("on_demand", group.on_demand);
    show("entry", group.entry, FwOutMap::SectionGroup::kNoEntry);
    show("explicit", group.explicit_entry);
    for (const auto& section : group.sections) {
      out_ << (section->entrypoint ? "ep:" : "")
           << (section->optional ? "o:" : "") << section->name;
      if (section->replacement) out_ << '<' << section->replacement->name;
      out_ << ' ';
    }
  }
  std::ostringstream out_;
};

// Reads a text; yields the description or the message.
std::string read(const std::string& text) {
  FwOutMap map;
  map.consts = {{"CORES", 3}, {"7", 0x70}, {"NONE", 0}, {"FACE", 1}};
  const std::string message = message_of([&] {
    read_image_layout(map, std::make_unique<std::stringstream>(text));
  });
  if (message != "no exception") return message;
  std::string outcome = Description(map).text();
  if (!outcome.empty()) outcome.pop_back();
  return outcome;
}

// A table has a case a line: the lines of a definition, which "/" parts and
// which stand behind `head`; "=>"; what comes of them. Each line gets the blank
// behind its last word that it has when it comes from a file.
void expect(const std::string& head, const std::string& table) {
  std::istringstream rows(table);
  for (std::string row; std::getline(rows, row);) {
    const std::size_t arrow = row.find(" => ");
    if (arrow == std::string::npos) {
      EXPECT_TRUE(row.empty() || row.starts_with("-- ")) << row;
      continue;
    }
    std::string text;
    for (const char c : head + row.substr(0, arrow) + "/") {
      text += c == '/' ? " \n" : std::string(1, c);
    }
    EXPECT_EQ(row.substr(arrow + 4), read(text)) << row;
  }
}

TEST(Statements, TopLevel) {
  const std::string uuid = "uuid 01234567-89AB-CDEF-0123-456789ABCDEF";
  EXPECT_EQ("| m " + uuid, read("module m\n" + uuid + "\n"));
  expect("", R"(
binary_name OLD/binary_name NEW # remark => name NEW
binary_name OLD/binary_name => name OLD
binary_ver 1.5 => ver 10005
binary_ver 1.8 => ver 10008
binary_ver 2.5 => ver 20005
binary_ver 3.0 => ver 30000
load_offset 0x2000/hw_buf_size -1 => offset 2000 buf ffffffff
hw_buf_ba FFFFFFFF/max_data -1/max_data 7fffffff => ba ffffffff max 7fffffff
ignore .a b/ignore/max_data 1/max_data -1 => ignore .a ignore ignore
dyn_mem .a b/dyn_mem => dyn .a dyn dyn_mem
memory_class hi FFFFF000 1000 => hi:fffff000+1000=0
memory_class dead/memory_class lo 10 => dead:dead+dead=1bd5a lo:10+10=20
module x o/module/module o => | x | module | o kind 1 required 0
module o x/module b x => | x kind 1 required 0 | x load 0
module ba x/module d x => | x load 0 auto 1 | x kind 1
module da x/module l x => | x kind 1 auto 1 | x kind 2
foo => 1: [foo] Unknown parameter
/ /Binary_ver 1.5 => 3: [Binary_ver] Unknown parameter
binary_ver => 1: [binary_ver] Unknown binary version
load_offset => invalid stoi argument
load_offset 80000000 => stoi argument out of range
hw_buf_size 80000000 => stoi argument out of range
max_data 80000000 => stoi argument out of range
hw_buf_ba => invalid stoul argument
memory_class => invalid stoul argument
export a => 1: [export] Unknown parameter
)");
}

// A block ends at the first line that it doesn't know. The line is judged by
// the enclosing blocks and keeps its number.
TEST(Statements, BlocksGiveLinesBack) {
  expect("module m/", R"(
foo => 2: [foo] Unknown parameter
section a => 2: [section] Unknown parameter
pin 0//sample_rates 1/foo => 5: [foo] Unknown parameter
group bss/pin 0/foo => 4: [foo] Unknown parameter
ignore .a/type 1 => 3: [type] Unknown parameter
group text/section a//pin 1/ /group bss => | m pin,1,0,0,0,0,0 group 0 a group 2
pin 1/type 5/module n/type 6 => | m type 5 pin,1,0,0,0,0,0 | n type 6
)");
}

TEST(Statements, OfModules) {
  expect("module m/", R"(
 => | m
uuid x => Wrong UUID format
uuid => Wrong UUID format
version_major 70000/version_minor -1 => | m major 1170 minor ffff
version_hotfix 3/version_build 4 => | m hotfix 3 build 4
type -10/core_type 12/stack_size 0x1F => | m type fffffff6 core c stack 1f
stack_size 80000000 => stoi argument out of range
affinity_mask 3 => | m mask 3
affinity_mask FACE => | m mask face
affinity_mask CORES => | m mask 3
affinity_mask x 7 => | m mask 70
affinity_mask 0x3 => 2: [module] Undefined const 0x3
affinity_mask CORES NO => 2: [module] Undefined const NO
affinity_mask 80000000 => stoi argument out of range
instance_count 10 => | m count a
instance_count +1 => | m count 1
instance_count -1 => | m count ffffffff
instance_count 07 => | m count 7
-- A single digit is a name like any other.
instance_count 7 => | m count 70
/instance_count 1 => 3: [module] Undefined const 1
instance_count '12 => 2: [module] Undefined const '12
instance_count }12 => 2: [module] Undefined const }12
instance_count 1x => 2: [module] Undefined const 1x
instance_count x7 => invalid stoi argument
instance_count (7 => invalid stoi argument
instance_count |7 => invalid stoi argument
instance_count 2147483648 => stoi argument out of range
instance_count 00 => 2: [00] Modules instance count must be greater than zero
instance_count NONE => 2: [NONE] Modules instance count must be greater than zero
domain_types LL RTOS/domain_types => | m domains 5
domain_types DP => | m domains 2
domain_types LL ll => 2: [domain_types] Undefined const ll
mod_cfg 1 2 3 4 5 6 7 8 1f 10 11 12 => | m cfg,1,2,3,4,5,6,7,8,1f,a,b
mod_cfg 1 x 3 => | m cfg,1,0,0,0,0,0,0,0,0,0,0
mod_cfg -1 4294967296 3 => | m cfg,ffffffff,ffffffff,0,0,0,0,0,0,0,0,0
mod_cfg => | m cfg,0,0,0,0,0,0,0,0,0,0,0
-- Two numbers or none: a single one makes the reader look for another.
sched_caps 1f 1 10002 80/sched_caps -1 -8000 => | m caps,83001f caps,8000ffff
sched_caps => | m caps,0
sched_caps 1 => invalid stoi argument
sched_caps 10000 1 => invalid stoi argument
export a/export o b => export a export? b | m
export o/export/export o export => export? export export? o | m
export o a/export a => export a | m
group text on_demand/group Text => Invalid group type
pin => invalid stoi argument
)");
}

// The blank behind the last word stays, the first one goes. The buffer holds
// 1023 characters, the first blank included, and ends at a NUL.
TEST(Statements, DisplayNames) {
  const std::string full(1022, 'x');
  expect("module m/", R"(
name Demo module => | m "Demo module "
name  x => | m " x "
name => | m
)");
  EXPECT_EQ("| m \"" + full + '"', read("module m\nname " + full + "yz \n"));
  EXPECT_EQ("| m \"a\"", read(std::string("module m\nname a\0b\n", 18)));
}

TEST(Statements, OfGroups) {
  expect("module m/group text/", R"(
section a x b/section ep c/section o d < e => | m group 0 a ep:c o:d<e
section/section ep/section < => | m group 0 section ep: <
section ep o/section f < => | m group 0 ep:o f
entry 80000000 => | m group 0 entry 80000000 explicit 1
entry => | m group 0 entry e explicit 1
entry FFFFFFFF/entry 5 => | m group 0 entry 5 explicit 1
entry -1 => | m group 0 explicit 1
group on_demand rodata/group bss => | m group 0 group 1 on_demand 1 group 2
entry 0/entry 1 => Double entry point defined
entry 0/entry x => invalid stoul argument
)");
}

TEST(Statements, OfPins) {
  expect("module m/pin -1/", R"(
stream_type 1/stream_type ff x => | m pin,1,ff,0,0,0,0
sample_rates 1 0x10/sample_rates 4 => | m pin,1,0,15,0,0,0
sample_sizes 10001 2/pin 2 => | m pin,1,0,0,3,0,0 pin,0,0,0,0,0,0
sample_containers -80000000 => | m pin,1,0,0,0,80000000,0
channel_cfg 7 30/pin 0/channel_cfg => | m pin,1,0,0,0,0,37 pin,0,0,0,0,0,c
stream_type 100 => 3: [100] Not recognized stream type
stream_type -1 => 3: [-1] Not recognized stream type
sample_sizes 1 x => invalid stoi argument
sample_containers 80000000 => stoi argument out of range
)");
}

// Only a text that doesn't come from files can end without a line end.
TEST(Statements, LastLineWithoutLineEnd) {
  EXPECT_EQ("name A", read("binary_name A"));
  EXPECT_EQ("| m", read("module m\ntype 1"));
  EXPECT_EQ("| m pin,0,0,0,0,0,c", read("module m\npin 0\nchannel_cfg c"));
  EXPECT_EQ("| m pin,0,0,0,0,0,0", read("module m\npin 0\nbinary_name A"));
}

}  // namespace
}  // namespace tova_fw_builder
