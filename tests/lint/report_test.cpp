// The forms of the findings. The JSON of real runs is held to its schema by
// scripts/check-companion.sh.
#include <gtest/gtest.h>

#include <sstream>

#include "companion/ground/json.h"
#include "lint/linted.h"
#include "lint/report_json.h"
#include "lint/report_sarif.h"
#include "lint/report_text.h"
#include "lint/shown_columns.h"

namespace tova_fw_builder {
namespace {

Json sarif_of(const LintTree& tree, const std::string& folder) {
  std::ostringstream text;
  print_findings_sarif(text, tree.lint(), folder, "1.2.3");
  return Json::parse(text.str());
}

// Columns count characters: each of the letters here has two bytes.
TEST(ReportText, ShowsTheLineWithACaret) {
  EXPECT_EQ(
      "t:1:13: warning: '\xC3\xBC\xC3\xBC' is ignored: ignore takes no more "
      "[extra-words]\n"
      "    \tignore .\xC3\xA4 \t\xC3\xBC\xC3\xBC\n"
      "    \t          \t^~\n",
      LintTree("t=~ignore .\xC3\xA4 ~\xC3\xBC\xC3\xBC/").printed(true));
}

TEST(ReportText, CommaBehindARuleIsNoPartOfIt) {
  EXPECT_NE(std::string::npos, LintTree("t=# lint: allow x1, x2/")
                                   .printed(true)
                                   .find("x1, x2\n                  ^~\n"));
}

// A name or a word can't steer the terminal, nor fill it.
TEST(ReportText, NoControlCharacterReachesTheTerminal) {
  const LintTree tree("t=max_data 0 \x1B[31m\x7F\xC2\x9Bx/");
  EXPECT_EQ(
      "t:1:12: warning: '\\x1b[31m\\x7f\\xc2\\x9bx' is ignored: max_data takes "
      "no more [extra-words]\n",
      tree.printed());
  // In the line itself each stays in its column.
  EXPECT_NE(std::string::npos,
            tree.printed(true).find("\n    max_data 0 ?[31m??x\n"));
  // So does a mark that turns what follows.
  EXPECT_EQ(
      "t:1:10: warning: 'x\\xe2\\x80\\xaey' is ignored: ignore takes no more "
      "[extra-words]\n    ignore . x?y\n             ^~~\n",
      LintTree("t=ignore . x\u202Ey/").printed(true));
  const std::string text =
      LintTree("t=max_data 0 " + std::string(5000, 'x') + "/").printed(true);
  EXPECT_LT(text.size(), 200u);
  // A name of 60 characters is whole, however long each of them is.
  std::string faces;
  for (int i = 0; i < 60; ++i) faces += "\U0001F600";
  EXPECT_TRUE(LintTree("t=ignore . " + faces + '/')
                  .printed()
                  .starts_with("t:1:10: warning: '" + faces + "' is ignored"));
  // Bytes that only go on a character make one of any length.
  EXPECT_LT(LintTree("t=max_data 0 " + std::string(5000, '\x80') + "/")
                .printed()
                .size(),
            1200u);
}

// A line that is too long to be counted anew for each of its words. After "xx"
// each " \u00FCx" has 3 characters in 4 bytes; that at byte 1023 lies across
// the first of the steps in which the line is counted.
TEST(ReportText, CountsALongLineToItsEnd) {
  std::string line = "xx";
  for (int i = 0; i < 1000; ++i) line += " \u00FCx";
  LintReport report;
  report.sources.push_back({"t", {}});
  report.sources[0].lines.push_back("");
  report.sources[0].lines.push_back(line);
  report.sources[0].lines.push_back(std::string(2048, 'x'));
  ShownColumns columns(report);
  for (const std::uint32_t word : {999u, 0u, 254u, 255u, 256u, 511u, 512u}) {
    EXPECT_EQ(3 * word + 4, columns.of({0, 2, 4 * word + 3, 0})) << word;
  }
  EXPECT_EQ(3003u, columns.of({0, 2, 9999, 0}));
  EXPECT_EQ(1u, columns.of({0, 1, 9999, 0}));
  // Where a step begins, and behind the last one.
  EXPECT_EQ(1025u, columns.of({0, 3, 1024, 0}));
  EXPECT_EQ(2049u, columns.of({0, 3, 2048, 0}));
}

TEST(ReportText, PathsBelowTheFolderAreShownFromThere) {
  EXPECT_EQ("a/b.def", shown_path("/x/a/b.def", "/x"));
  EXPECT_EQ("/y/b.def", shown_path("/y/b.def", "/x"));
  EXPECT_EQ("/xy/b.def", shown_path("/xy/b.def", "/x"));
}

TEST(ReportJson, HasFindingsWithTheirNotes) {
  const LintTree tree("t=max_data 0/max_data 0 \xFF/");
  std::ostringstream text;
  print_findings_json(text, tree.lint(), tree.dir.path());
  const Json json = Json::parse(text.str());
  EXPECT_EQ(1, json["schema"]);
  ASSERT_EQ(2u, json["findings"].size());
  const Json& first = json["findings"][0];
  EXPECT_EQ("t", first["file"]);
  EXPECT_EQ(2, first["line"]);
  EXPECT_EQ(1, first["column"]);
  EXPECT_EQ("warning", first["level"]);
  EXPECT_EQ("repeated-statement", first["rule"]);
  EXPECT_EQ(1, first["notes"][0]["line"]);
}

TEST(ReportSarif, PointsIntoTheRules) {
  const LintTree tree("t t=/foo/");
  const Json sarif = sarif_of(tree, tree.dir.path());
  EXPECT_EQ("2.1.0", sarif["version"]);
  const Json& run = sarif["runs"][0];
  const Json& result = run["results"][0];
  EXPECT_EQ(
      "refused",
      run["tool"]["driver"]["rules"][std::size_t{result["ruleIndex"]}]["id"]);
  EXPECT_EQ("error", result["level"]);
  const Json& place = result["locations"][0]["physicalLocation"];
  EXPECT_EQ("t%20t", place["artifactLocation"]["uri"]);
  EXPECT_EQ("SRCROOT", place["artifactLocation"]["uriBaseId"]);
  EXPECT_EQ(2, place["region"]["startLine"]);
  EXPECT_EQ(1, place["region"]["startColumn"]);
  EXPECT_EQ(4, place["region"]["endColumn"]);
  const Json outside = sarif_of(tree, "/elsewhere");
  EXPECT_EQ("file://" + tree.dir.path() + "/t%20t",
            outside["runs"][0]["results"][0]["locations"][0]["physicalLocation"]
                   ["artifactLocation"]["uri"]);
}

}  // namespace
}  // namespace tova_fw_builder
