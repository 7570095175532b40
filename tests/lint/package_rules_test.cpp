// The lines of the package descriptor that asm has no room for, 1023 bytes.
// Lengths are counted by hand, each with 255 bytes of path and the blank that
// the builder leaves behind a name.
#include <gtest/gtest.h>

#include "lint/linted.h"

namespace tova_fw_builder {
namespace {

// A module of five lines.
std::string module_of(const std::string& kind, char digit,
                      std::size_t name_length) {
  return "module " + kind + " m" + digit +
         "/uuid 01234567-89AB-CDEF-0123-456789ABCDE" + digit + "/name " +
         std::string(name_length, 'n') + "/group bss/section .b" + digit + '/';
}

TEST(PackageRules, DisplayNamesWithAFileBehindThem) {
  // 4 + 255 + 4 + 2 + 757 + 1
  const std::size_t main = 756;
  // 4 + 255 + 41 + 2 + 707 + 7 + 7
  const std::size_t addon = 706;
  const struct {
    std::string modules;
    const char* findings;
  } cases[] = {
      {module_of("b", '0', main) + module_of("d", '1', main), ""},
      {module_of("b", '0', main + 1) + module_of("d", '1', 1),
       "3:6 long-package-line"},
      {module_of("b", '0', main + 1) + module_of("l", '1', 1), ""},
      {module_of("b", '0', 1) + module_of("o", '1', addon) +
           module_of("d", '2', 1),
       ""},
      {module_of("b", '0', 1) + module_of("o", '1', addon + 1) +
           module_of("d", '2', 900),
       "8:6 long-package-line"},
      // Told once of two lines, and ahead of its own line.
      {module_of("d", '0', main + 1) + module_of("d", '1', 1),
       "3:6 long-package-line"},
      {module_of("d", '0', main + 1), "3:6 long-package-line"},
      {module_of("b", '0', 900) + module_of("d", '1', 1) + "foo/",
       "11:1 refused"},
      // The last name counts.
      {"module b m/uuid 01234567-89AB-CDEF-0123-456789ABCDE0/name " +
           std::string(900, 'n') + "/name n/group bss/section .b/" +
           module_of("d", '1', 1),
       "4:1 repeated-statement"},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(c.findings, LintTree("t=" + c.modules).findings()) << &c - cases;
  }
  EXPECT_EQ(
      "t:3:6: warning: '" + std::string(60, 'n') +
          "...' has 801 bytes, which leave 211 to the path of the output in "
          "its line of the package descriptor: asm ends its reading at a "
          "longer one, and the package lacks the addons behind it; shorten the "
          "name [long-package-line]\n",
      LintTree("t=" + module_of("b", '0', 800) + module_of("d", '1', 1))
          .printed());
}

TEST(PackageRules, NamesOfAllModules) {
  // "cfg { }" and 113 of 9 bytes are 1024.
  const auto findings_of = [](int count, const std::string& first) {
    std::string text = "t=" + first;
    for (int i = 0; i < count; ++i) {
      const std::string number = std::to_string(100 + i);
      text += "module b eight" + number + "/uuid 01234567-89AB-CDEF-0123-" +
              "456789ABC" + number + "/group bss/section .b" + number + '/';
    }
    return LintTree(text).findings();
  };
  EXPECT_EQ("", findings_of(112, ""));
  EXPECT_EQ("449:10 long-package-line", findings_of(113, ""));
  // One of 8 more fills the line.
  EXPECT_EQ("", findings_of(112,
                            "module b letters/uuid 01234567-89AB-CDEF-0123"
                            "-456789ABCDEF/group bss/section .b/"));
  EXPECT_EQ("", findings_of(113, module_of("d", 'F', 1)));
}

}  // namespace
}  // namespace tova_fw_builder
