// The rules on the text: each mistake with its file, line, column and rule, and
// beside it what is right. Columns are counted by hand.
#include <gtest/gtest.h>

#include <sstream>

#include "lint/linted.h"
#include "lint/rules.h"

namespace tova_fw_builder {
namespace {

// A case a line: the files, "=>", the findings.
constexpr char kCases[] = R"(
-- What is right has no finding.
t=@ =>
t=binary_name EIGHTCHR/binary_ver 3.0/max_data -1/dyn_mem .heap/memory_class a 0 1000/memory_class b 1000 1000/@ =>
t=define N .t2/include a/|a=/define K LL/@section N/domain_types K/ =>
-- refused: the statement, or the operand.
t=@/  setcion .u/ => 6:3 refused
t=binary_ver 1.6/ => 1:12 refused
t=module m/uuid 0/ => 2:6 refused
t=@instance_count 1/ => 5:16 refused
t=@instance_count N # more/ => 5:18 refused
t=@instance_count 00/ => 5:16 refused
t=@affinity_mask 0x3/ => 5:15 refused
t=@domain_types LL DP XX/ => 5:20 refused
t=@group on_demand txt/ => 5:17 refused
t=@stack_size/ => 5:1 refused
t=@stack_size zz/ => 5:12 refused
t=memory_class a 10 zz/ => 1:19 refused
t=memory_class a 10 100000000/ => 1:19 refused
t=@pin 0/sample_rates 1 2 # all/ => 6:18 refused
t=@pin 0/sample_rates -80000000 zz/ => 6:24 refused
t=@pin 0/stream_type 100/ => 6:13 refused
t=@sched_caps 1/ => 5:12 refused
t=@sched_caps 10000 1/ => 5:12 refused
t=@entry 1/entry 2/ => 6:1 refused
t=/include a/|a=/module m/tpye 1/ => a:3:1 refused
t=include b/ => 1:9 refused
t=include t/ => 1:9 refused
t=define A 1/k/define A 1/ => 3:8 refused
t=include x$(A)/ => 1:9 refused
t=@load_offset 1/stack_size 1/ => 6:1 refused
-- Only what was read until then is told, and no define may be called unused
-- that a file would have used that isn't there.
t=binary_name LONGERNAME/define A 1/include b/@ => 1:13 name-dropped, 3:9 refused
t=binary_name LONGERNAME/foo/hw_buf_size 1 2/ => 1:13 name-dropped, 2:1 refused
t=module m/foo/ => 2:1 refused
-- byte-order-mark
t=/include a/|a=\xEF\xBB\xBF# x/ => a:1:1 refused, a:1:1 byte-order-mark
t=/include a/|a=\xFF\xFE => a:1:1 refused, a:1:1 byte-order-mark
-- empty-definition
t= => 1:1 empty-definition
t=#define A 1// => 1:1 empty-definition
-- missing-operand: the last word, which is taken once more
t=ignore/ => 1:1 missing-operand
t=  ignore^/ => 1:3 missing-operand
t=dyn_mem/ => 1:1 missing-operand
t=memory_class dead/ => 1:14 missing-operand
t=memory_class dead 10;/ => 1:19 missing-operand
t=binary_name/ => 1:1 missing-operand
t=@section/ => 5:1 missing-operand
t=@section o/ => 5:9 missing-operand
t=@section .a </ => 5:12 missing-operand
t=@export/ => 5:1 missing-operand
t=@export o/ => 5:8 missing-operand
t=@name/ => 5:1 missing-operand
t=@domain_types/ => 5:1 missing-operand
t=@mod_cfg/ => 5:1 missing-operand
t=@sched_caps/ => 5:1 missing-operand
t=@sched_caps 1;/ => 5:12 missing-operand
t=@pin 0/channel_cfg/ => 6:1 missing-operand
t=@group rodata/section .r/entry/ => 7:1 missing-operand
t=@module b;/uuid 01234567-89AB-CDEF-0123-456789ABCDE0/group bss/section .b/ => 5:8 missing-operand
-- extra-words
t=binary_ver 3.0 2.5/ => 1:16 extra-words
t=hw_buf_size 10 # ten/ => 1:16 extra-words
t=hw_buf_size 10;/max_data 0~/ =>
t=@section .a .b/ => 5:12 extra-words
t=@section .a <b/ => 5:12 extra-words
t=@section .a<b/ => 5:9 extra-words
t=@section </ =>
t=@section .a ep/ => 5:12 extra-words
t=@section o .a < .b .c/ => 5:19 extra-words
t=@section o .a < .b/ =>
t=@export a o/ => 5:10 extra-words
t=@group rodata on_demand/section .r/ => 5:14 extra-words
t=@group on_demand rodata/section .r/ =>
t=@name Low pass # of taps/ => 5:15 extra-words
t=@name Low pass;/ => 5:10 extra-words
t=@mod_cfg 1 2;/ => 5:11 extra-words
t=@mod_cfg 1 2 # x/ => 5:13 extra-words
t=@mod_cfg 1 2 3 4 5 6 7 8 9 10 11 12/ => 5:33 extra-words
t=module d n # old/uuid 01234567-89AB-CDEF-0123-456789ABCDE0/group bss/section .b/ => 1:12 extra-words
t=define SIZE 10 + 2/hw_buf_size SIZE/ => 1:16 extra-words
t=include a b/|a=/define A # why/ignore A/ => 1:11 extra-words, a:2:12 extra-words
t=@define E/section o .a E/ => 5:8 missing-operand
-- bad-number
t=@type 0x1b/ => 5:6 bad-number
t=@type 12k/ => 5:6 bad-number
t=@stack_size 8kB/ => 5:12 bad-number
t=@entry 10:20/ => 5:7 bad-number
t=hw_buf_ba 0x/ => 1:11 bad-number
t=@mod_cfg 1 0x10 y/ => 5:11 bad-number
t=@mod_cfg 1 2 3 4 5 6 7 8 0x1F 10 11/ =>
t=@sched_caps 1 2k/ => 5:14 bad-number
t=@pin 0/channel_cfg 1 2,4/ => 6:15 bad-number
t=@uuid {01234567-89AB-CDEF-0123-456789ABCDE0/ => 5:1 repeated-statement, 5:6 bad-number
-- number-cut
t=@version_major 65535/version_minor 65536/version_build -1/ => 6:15 number-cut, 7:15 number-cut
t=@stack_size FFFF/ =>
t=@stack_size 10000/ => 5:12 number-cut
t=@core_type 255/pin 1/ =>
t=@core_type 256/pin 2/ => 5:11 number-cut, 6:5 number-cut
t=@instance_count 65536/ => 5:16 number-cut
t=@sched_caps FFFF 10000/ => 5:17 number-cut
t=@pin 0/sample_sizes 1 10000/sample_rates 10000/ => 6:16 number-cut
t=@mod_cfg 4294967295 4294967296 k/ => 5:20 number-cut
-- repeated-statement
t=max_data 0/load_offset 0/max_data 1/ => 3:1 repeated-statement
t=@type 1/type 2/type 3/ => 6:1 repeated-statement, 7:1 repeated-statement
t=@group text/section .b/ => 5:1 repeated-statement
t=@export a/export o a/export o a/ => 6:1 repeated-statement
t=@export a/module l n/uuid 01234567-89AB-CDEF-0123-456789ABCDE0/export o a/group bss/section .b/ => 8:1 repeated-statement
t=@pin 0/stream_type 1/pin 0/stream_type 1/ =>
t=@domain_types LL/domain_types DP/mod_cfg 1/mod_cfg 1/ =>
-- unknown-kind
t=module x m/uuid 01234567-89AB-CDEF-0123-456789ABCDEF/group bss/section .b/ => 1:8 unknown-kind
t=module da m/uuid 01234567-89AB-CDEF-0123-456789ABCDEF/group text/section .b/ =>
-- name-cut, name-dropped
t=module d eightchr/uuid 01234567-89AB-CDEF-0123-456789ABCDEF/group bss/section .b/ =>
t=module d ninechars/uuid 01234567-89AB-CDEF-0123-456789ABCDEF/group bss/section .b/ => 1:10 name-cut
t=@module m/uuid 01234567-89AB-CDEF-0123-456789ABCDE0/group bss/section .b/ => 5:8 name-cut
t=binary_name NINECHARS/ => 1:13 name-dropped
-- empty-include: what is above an include at the top is lost as well
t=/include a/|a=define X 1/ => 2:9 refused, 2:9 empty-include, a:1:8 unused-define
t=/include a/@section .t2/|a=/ =>
t=/include a/|a=k/include b/|b=# x/ => a:1:1 refused, a:2:9 empty-include
-- What is lost by it is read by nobody, but that it is there is known.
t=/include a/max_data 0 1/|a=# x/ => 2:9 refused, 2:9 empty-include
t=binary_ver 3.0/include a/max_data 0/|a=/include b/max_data 1/|b=# x/ => a:2:9 empty-include
t=/include a/include b/|a=# x/|b=/max_data 0 1/ => 2:9 refused, 2:9 empty-include
-- unused-define
t=define A 1/define B b/include $(B)/|b=/ => 1:8 unused-define
t=define A 1/A/ => 1:8 unused-define, 2:1 refused
-- define-captures
t=define ep .e/@ => 5:9 define-captures, 5:12 extra-words
t=@define o x/section o .b/ => 6:9 define-captures, 6:11 extra-words
t=@define .b .c/section .b/ => 6:9 define-captures
t=@define store x/section .b < store/ => 6:14 define-captures
t=@define HEAP .heap/section HEAP/dyn_mem HEAP/ => 7:9 section-twice
t=define name x/@name a name/ => 6:8 define-captures
-- missing-uuid, duplicate-uuid, empty-module
t=module m/group bss/section .b/ => 1:8 missing-uuid
t=module m/uuid 00000000-0000-0000-0000-000000000000/group bss/section .b/ => 2:6 missing-uuid
t=@module n/uuid 11234567-89AB-CDEF-0123-456789ABCDEF/group bss/section .b/ => 6:6 duplicate-uuid
t=binary_ver 1.5/@module n/uuid 11234567-89AB-CDEF-0123-456789ABCDEF/group bss/section .b/ =>
t=binary_ver 1.5/@module n/uuid 01234567-89ab-CDEF-0123-456789abcdef/group bss/section .b/ => 7:6 duplicate-uuid
t=@module n/uuid 01234567-89AB-CDEF-0123-456789ABCDE0/group bss/ => 5:8 empty-module
t=module m/group bss/section .b/module n/group bss/section .c/ => 1:8 missing-uuid, 4:8 missing-uuid, 4:8 duplicate-uuid
-- empty-group, beside others alone; no-entry-point, second-base
t=@group rodata/group bss/section .b/ => 5:1 empty-group
t=@group rodata/ => 5:1 empty-group
t=@group rodata/foo/ => 6:1 refused
t=module da m/uuid 01234567-89AB-CDEF-0123-456789ABCDEF/group text/group bss/section .b/ => 1:11 no-entry-point, 3:1 empty-group
t=module ba m/uuid 01234567-89AB-CDEF-0123-456789ABCDEF/group bss/section .b/ => 1:11 no-entry-point
t=module d m/uuid 01234567-89AB-CDEF-0123-456789ABCDEF/group bss/section .b/ =>
t=@type 0/module l n/uuid 01234567-89AB-CDEF-0123-456789ABCDE0/type 00/group bss/section .b/ => 8:6 second-base
t=@type 0/module l n/uuid 01234567-89AB-CDEF-0123-456789ABCDE0/type 0x1b/group bss/section .b/ => 8:6 bad-number
-- section-twice: not for what a built-in module has, too
t=@section .t/ => 5:9 section-twice
t=@module b n/uuid 01234567-89AB-CDEF-0123-456789ABCDE0/group text/section .t/ =>
t=@module n/uuid 01234567-89AB-CDEF-0123-456789ABCDE0/group text/section o .t/ => 8:11 section-twice
t=@module b n/uuid 01234567-89AB-CDEF-0123-456789ABCDE0/group text/section ep .t/module ba k/uuid 01234567-89AB-CDEF-0123-456789ABCDE1/group text/section ep .t/ => 12:12 section-twice
-- classes-overlap, duplicate-class
t=memory_class a 0 10/memory_class b 10 10/memory_class a 20 10/ => 3:14 duplicate-class
t=memory_class a 1000 1000/memory_class b 0 1001/ => 2:1 classes-overlap
t=memory_class a 0 10000/memory_class b 10 1/memory_class c 20 1/memory_class d 10000 0/ => 2:1 classes-overlap, 3:1 classes-overlap
t=memory_class a 0 10000/memory_class b 10 0/ =>
t=memory_class a FFFFF000 1000/memory_class b 0 1000/ =>
-- Places through includes and defines: the use, not the define.
t=define SIZE 10000/include a/|a=/@  stack_size~SIZE/ => a:6:14 number-cut
t=include a/include a/|a=/max_data 0 1/ => a:2:1 repeated-statement, a:2:12 extra-words
t=@name \xC3\xA9t\xC3\xA9 # x/ => 5:10 extra-words
-- Silenced by the comments right above, for the statement alone.
t=# lint: allow extra-words/max_data 0 1/max_data 0 1/ => 3:1 repeated-statement, 3:12 extra-words
t=  #lint: allow name-dropped, extra-words/# why/binary_name LONGERNAME x/ =>
t=# lint: allow extra-words//max_data 0 1/ => 3:12 extra-words
t=# lint: allow extra-wrods refused/foo/ => 1:15 unknown-rule, 1:27 unknown-rule, 2:1 refused
t=include a/include a/|a=/# lint: allow x/ => a:2:15 unknown-rule
t=# lint: allow unused-define/define A 1/ =>
t=# lint: allow extra-words x/ignore a b/# lint: allow/ignore c d/ => 1:27 unknown-rule, 4:10 extra-words
t=# lint: allow name-dropped/# lint: allow extra-words/# lint: allow extra-words/ignore a b/# lint: allow extra-words =>
-- Blank lines have no words, but count.
t=/ ~//include a/foo/|a=//ignore a b//^/ => 5:1 refused, a:3:10 extra-words
t=//ignore a b//include a//|a=# none/ => 3:10 extra-words, 5:9 refused, 5:9 empty-include
t=///module a///foo/// => 7:1 refused
t=include a/ignore p/foo/|a=/ignore x y/include e/include f/|e=|f=//ignore z z/ => 3:1 refused, a:2:10 extra-words, a:3:9 empty-include
)";

// "\xHH" in the table is the byte.
std::string unescaped(const std::string& row) {
  std::string text;
  for (std::size_t i = 0; i < row.size(); ++i) {
    if (row.compare(i, 2, "\\x") != 0) {
      text += row[i];
      continue;
    }
    text += static_cast<char>(std::stoi(row.substr(i + 2, 2), nullptr, 16));
    i += 3;
  }
  return text;
}

TEST(TextRules, FindMistakesWhereTheyStand) {
  std::istringstream rows(kCases);
  for (std::string row; std::getline(rows, row);) {
    const std::size_t arrow = row.find(" =>");
    if (arrow == row.npos) {
      EXPECT_TRUE(row.empty() || row.starts_with("-- ")) << row;
      continue;
    }
    const LintTree tree(unescaped(row.substr(0, arrow)));
    EXPECT_EQ(row.substr(std::min(arrow + 4, row.size())), tree.findings())
        << row;
  }
}

TEST(TextRules, RemarksReachOver200Lines) {
  std::string comments;
  for (int i = 0; i < 199; ++i) comments += "#/";
  const std::string text = comments + "ignore a b/";
  EXPECT_EQ("", LintTree("t=# lint: allow extra-words/" + text).findings());
  EXPECT_EQ("202:10 extra-words",
            LintTree("t=# lint: allow extra-words/#/" + text).findings());
}

// What C takes for a number, and what it takes beyond that.
TEST(TextRules, ConstantsThatAreNoBareNumber) {
  const std::pair<const char*, const char*> cases[] = {
      {"2", ""},
      {" 0x2uL  // two", ""},
      {"2/* two */\r", ""},
      {"2 | 1",
       "2: the header has '2 | 1' for it, and the builder takes a bare"},
      {"(2)", "0: the header has '(2)' for it, and the builder takes a bare"},
      {"OTHER",
       "0: the header has 'OTHER' for it, and the builder takes a bare"},
      {"2x", "2: the header has '2x' for it, and the builder takes a bare"},
      {"", "0: the header has no number for it"},
  };
  for (const auto& [value, fault] : cases) {
    LintTree tree("t=@affinity_mask CORES/instance_count 10/");
    tree.options.inputs.module_config_path = tree.dir.write(
        "h", std::string("#define CORES 9\n#define CORES ") + value + "\n");
    const std::string expected =
        *fault ? std::string("t:5:15: warning: 'CORES' is read as ") + fault
               : "";
    EXPECT_EQ(expected, tree.printed().substr(0, expected.size())) << value;
    EXPECT_EQ(*fault != 0, !tree.printed().empty()) << value;
  }
  // The reader takes the word behind, and the key itself for want of one.
  LintTree second("t=@affinity_mask GOOD CORES/");
  second.options.inputs.module_config_path =
      second.dir.write("h", "#define GOOD 1\n#define CORES (2)\n");
  EXPECT_NE(std::string::npos,
            second.printed().find("t:5:20: warning: 'CORES' is read as 0: "));
  LintTree key("t=@instance_count/");
  key.options.inputs.module_config_path =
      key.dir.write("h", "#define instance_count 3\n#define\n");
  EXPECT_EQ("5:1 missing-operand", key.findings());
  LintTree tree("t=@instance_count ONE/");
  tree.options.inputs.module_config_path =
      tree.dir.write("h", "#define ONE (1)\n");
  EXPECT_EQ(
      "t:5:16: error: [ONE] Modules instance count must be greater "
      "than zero; the header has '(1)' for it, and the builder takes a bare "
      "number alone [refused]\n",
      tree.printed());
}

// The text that a person reads: all of it.
TEST(TextRules, SayWhatWasMeant) {
  const std::pair<const char*, const char*> cases[] = {
      {"t=@setcion .u/section .v/type 1//module n/",
       "t:5:1: error: [setcion] Unknown parameter; did you mean 'section'? "
       "[refused]\n"
       "t:3:1: note: group text begins here and 'setcion' ends it\n"
       "t:1:1: note: module 'm' begins here and 'setcion' ends it; 2 "
       "statements up to line 7 would be left out\n"},
      // The group behind it opens for its own sections.
      {"t=module m/tpye 1/group text/section .a/section .b//module n/",
       "t:2:1: error: [tpye] Unknown parameter; did you mean 'type'? "
       "[refused]\n"
       "t:1:1: note: module 'm' begins here and 'tpye' ends it; 3 statements "
       "up "
       "to line 5 would be left out\n"},
      {"t=module m/secton .a/",
       "t:2:1: error: [secton] Unknown parameter; 'section' belongs in a "
       "group; did you mean 'section'? [refused]\n"
       "t:1:1: note: module 'm' begins here and 'secton' ends it\n"},
      {"t=@max_data 0/type 1/",
       "t:6:1: error: [type] Unknown parameter; 'type' belongs in a module "
       "[refused]\n"
       "t:5:1: note: module 'm' ends here, as 'max_data' is no statement of a "
       "module\n"},
      {"t=binary_ver 18/",
       "t:1:12: error: [binary_ver] Unknown binary version; there are 1.5, "
       "1.8, 2.5 and 3.0; did you mean '1.8'? [refused]\n"},
      {"t=@instance_count 1/",
       "t:5:16: error: [module] Undefined const 1; a number wants two "
       "characters here: +1 [refused]\n"},
      {"t=@affinity_mask 0x3/",
       "t:5:15: error: [module] Undefined const 0x3; hexadecimal numbers have "
       "no 0x here: '3' [refused]\n"},
      {"t=@domain_types ll/",
       "t:5:14: error: [domain_types] Undefined const ll; there are LL, DP "
       "and RTOS; did you mean 'LL'? [refused]\n"},
      {"t=define VERSION 1.8/ignore VERSION/binary_ver VERSIN/",
       "t:3:12: error: [binary_ver] Unknown binary version; there are 1.5, "
       "1.8, 2.5 and 3.0; did you mean 'VERSION'? [refused]\n"},
      {"t=load_offset/",
       "t:1:1: error: invalid stoi argument; the number is missing, and "
       "'load_offset' is taken for it [refused]\n"},
      {"t=/include a/|a=define A 1/define A 2/",
       "a:2:8: error: Define name conflict : A [refused]\n"
       "a:1:8: note: it is defined here\n"},
      {"t=define BOARD x/include $(BORAD)/",
       "t:2:9: error: Not recognized define : BORAD; did you mean 'BOARD'? "
       "[refused]\n"},
      {"t=include $(BOARD).def/",
       "t:1:9: error: Not recognized define : BOARD; a file that includes this "
       "one may define it: name the topmost one [refused]\n"},
      {"t=pt/",
       "t:1:1: error: [pt] Unknown parameter; is this an image definition? "
       "[refused]\n"},
      {"t=binray_ver 1.8/",
       "t:1:1: error: [binray_ver] Unknown parameter; did you mean "
       "'binary_ver'? [refused]\n"},
      {"t=define A x/define B y/include $(A)$(B)/",
       "t:3:9: error: Not recognized define : A)$(B; a name holds one macro at "
       "the most [refused]\n"},
      {"t=max_data 0/hw_buf_size 1/max_data 8/",
       "t:3:1: warning: max_data stands here once more: this one counts "
       "[repeated-statement]\n"
       "t:1:1: note: the earlier one\n"},
      {"t=@type 0x1b/",
       "t:5:6: warning: '0x1b' is read as 0: this number is decimal, 27 "
       "[bad-number]\n"},
      {"t=@sched_caps 10001 2/",
       "t:5:12: error: invalid stoi argument; '10001' is too large "
       "[refused]\n"},
      {"t=@pin 2/",
       "t:5:5: warning: '2' doesn't fit its field: bit 0 of it alone counts, "
       "which is 0 [number-cut]\n"},
      {"t=define G 1.9/binary_ver G/",
       "t:2:12: error: [binary_ver] Unknown binary version; there are 1.5, "
       "1.8, 2.5 and 3.0; did you mean '1.5'? [refused]\n"
       "t:1:10: note: 'G' becomes '1.9' here\n"},
      {"t=define B bord/include $(B).def/|board.def=/",
       "t:2:9: error: Failed to open image defs file : bord.def; it is looked "
       "for beside this file, and then where the tool was started; did you "
       "mean 'board.def'? [refused]\n"
       "t:1:10: note: 'B' becomes 'bord' here\n"},
      {"t=/include a/|a=# x/",
       "t:2:9: error: Unrecognized binary version; the included file leaves no "
       "line, and so nothing of the definition is read [refused]\n"
       "t:2:9: warning: the included file leaves no line, which ends this file "
       "here and loses all that is above it, too: begin the included file with "
       "an empty line [empty-include]\n"},
      {"t=@group bss/section .b/section .b/",
       "t:7:9: warning: '.b' is listed twice: its memory counts twice "
       "[section-twice]\n"
       "t:6:1: note: the first time\n"},
      {"t=@type BASE/",
       "t:5:6: error: invalid stoi argument; 'BASE' is no number [refused]\n"},
      // A word of the text is no part of the message.
      {"t=@pin 0/stream_type 999argument/",
       "t:6:13: error: [999argument] Not recognized stream type [refused]\n"},
      {"t=@version_major 70000/",
       "t:5:15: warning: '70000' doesn't fit its field: the low 16 bits of it "
       "count, which are 4464 [number-cut]\n"},
      {"t=@section .a <b/",
       "t:5:12: warning: '<b' is ignored: put a blank behind the '<' "
       "[extra-words]\n"},
      {"t=@define .b .c/section .b/",
       "t:6:9: warning: '.b' becomes '.c' by a define [define-captures]\n"
       "t:5:8: note: the define\n"},
      {"t=/include a/|a=k/include b/|b=# x/",
       "a:1:1: error: [k] Unknown parameter; is this an image definition? "
       "[refused]\n"
       "a:2:9: warning: the included file leaves no line, which ends this file "
       "here: begin the included file with an empty line [empty-include]\n"},
      {"t=ignore/",
       "t:1:1: warning: ignore lacks an operand: 'ignore' is taken once more "
       "[missing-operand]\n"}};
  for (const auto& [files, expected] : cases) {
    EXPECT_EQ(expected, LintTree(files).printed()) << files;
  }
}

// The builder's text ends at the byte, which a terminal doesn't show.
TEST(LintRefused, ZeroByte) {
  using std::string_literals::operator""s;
  const LintTree tree("t=ignore a/ignor\0e b/"s);
  EXPECT_EQ(
      "t:2:1: error: [ignor; the line has a zero byte, which cuts texts off "
      "[refused]\n",
      tree.printed());
  EXPECT_EQ(
      "t:1:1: error: [ELF; the line has a zero byte, which cuts texts off: is "
      "this an image definition? [refused]\n",
      LintTree("t=ELF\0 b/"s).printed());
}

TEST(TextRules, ConstantsAreThoseOfTheHeaderIfThereIsOne) {
  LintTree tree("t=@instance_count CORSE/|h=#define CORES 2/#define NONE (4)/");
  EXPECT_EQ("", tree.findings());
  tree.options.inputs.module_config_path = tree.dir.file("h");
  EXPECT_EQ(
      "t:5:16: error: [module] Undefined const CORSE; did you mean 'CORES'? "
      "[refused]\n",
      tree.printed());
  LintTree with_define("t=define TWO +2/ignore TWO/@instance_count TOW/|h=/");
  with_define.options.inputs.module_config_path = with_define.dir.file("h");
  EXPECT_EQ(
      "t:7:16: error: [module] Undefined const TOW; did you mean 'TWO'? "
      "[refused]\n",
      with_define.printed());
}

TEST(TextRules, AreDisabledByName) {
  LintTree tree("t=max_data 0 1/binary_name LONGERNAME/");
  tree.options.disabled = {"extra-words"};
  EXPECT_EQ("2:13 name-dropped", tree.findings());
  EXPECT_EQ("no exception", message_of([] { check_rule_name("extra-words"); }));
  EXPECT_EQ("there is no rule 'extra-word'; did you mean 'extra-words'?",
            message_of([] { check_rule_name("extra-word"); }));
  EXPECT_EQ("there is no rule 'a,b'; give one for each --disable",
            message_of([] { check_rule_name("a,b"); }));
  EXPECT_EQ("what the builder refuses can't be silenced",
            message_of([] { check_rule_name("refused"); }));
}

}  // namespace
}  // namespace tova_fw_builder
