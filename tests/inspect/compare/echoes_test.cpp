// Which change follows from which; changes put together by hand.
#include "inspect/compare/echoes.h"

#include <gtest/gtest.h>

#include "inspect/compare/ignored_dates.h"
#include "told.h"

namespace tova_fw_builder {
namespace {

// "FILE:PATH", with FORMAT ahead: "binary firmware.bin:modules[a].hash".
Change change_of(const std::string& text) {
  const std::size_t blank = text.find(' ');
  const std::size_t colon = text.find(':');
  Change change;
  change.format = *format_named(text.substr(0, blank));
  change.file = text.substr(blank + 1, colon - blank - 1);
  change.path = text.substr(colon + 1);
  bool in_key = false;
  for (const char c : change.path) {
    if (c == ']') in_key = false;
    if (in_key) {
      change.keys.back() += c;
    } else {
      change.pattern += c;
    }
    if (c == '[') {
      in_key = true;
      change.keys.emplace_back();
    }
  }
  change.old_value = number_field("", 1);
  change.new_value = number_field("", 2);
  return change;
}

// The paths of those that are echoes.
std::string echoes_of(std::vector<Change> changes,
                      const std::vector<std::string>& files = {}) {
  mark_echoes(changes, files);
  std::string text;
  for (const Change& change : changes) {
    if (!change.echo.empty()) text += change.path + ' ';
  }
  return text;
}

std::vector<Change> changes_of(const std::vector<std::string>& texts) {
  std::vector<Change> changes;
  for (const std::string& text : texts) changes.push_back(change_of(text));
  return changes;
}

TEST(Echoes, NeedTheirCause) {
  const struct {
    std::vector<std::string> changes;
    const char* echoes;
  } cases[] = {
      // The first is the echo of the second, and alone it is none.
      {{"binary f:modules[a].hash", "binary f:modules[a].segments[text].len"},
       "modules[a].hash "},
      {{"binary f:modules[a].hash", "binary f:modules[a].segments[rodata].len"},
       "modules[a].hash "},
      {{"binary f:modules[a].hash"}, ""},
      {{"binary f:modules[a].hash", "binary f:modules[b].segments[text].len"},
       ""},
      {{"binary f:modules[a].hash", "binary f:modules[a].segments[bss].len"},
       ""},
      {{"binary f:modules[a].cfg_cnt", "binary f:modules[a].configurations[3]"},
       "modules[a].cfg_cnt "},
      {{"binary f:modules[a].cfg_cnt", "binary f:modules[b].configurations[3]"},
       ""},
      // A field of a configuration that both have changes no count.
      {{"binary f:modules[a].cfg_cnt",
        "binary f:modules[a].configurations[3].cps"},
       ""},
      {{"binary f:modules[a].cfg_off", "binary f:modules[b].configurations[3]"},
       "modules[a].cfg_off "},
      {{"binary f:header.num_mods", "binary f:modules[a]"}, "header.num_mods "},
      {{"binary f:header.num_mods", "binary f:modules[a].ep"}, ""},
      {{"binary f:header.preload_page_count",
        "binary f:modules[a].segments[text].len"},
       "header.preload_page_count "},
      {{"binary f:modules[a].segments[text].flags_value",
        "binary f:modules[a].segments[text].flags"},
       "modules[a].segments[text].flags_value "},
      {{"binary f:modules[a].segments[text].flags_value",
        "binary f:modules[a].segments[bss].flags"},
       ""},
      {{"manifest-1.5 f:signature", "manifest-1.5 f:css.date"}, "signature "},
      {{"manifest-1.5 f:signature"}, ""},
      {{"metadata f:digest", "metadata f:limit_offset"}, "digest "},
      {{"manifest-1.5 f:signature", "manifest-1.5 f:modulus",
        "manifest-1.5 f:exponent", "manifest-1.5 f:public_key_hash"},
       "signature modulus exponent "},
      {{"manifest-1.5 f:modulus"}, ""},
      {{"extended-manifest f:heading.length",
        "extended-manifest f:modules[u].pins[0]"},
       "heading.length "},
      {{"extended-manifest f:modules[u].counts.pins",
        "extended-manifest f:modules[u].capabilities[0]"},
       ""},
      {{"binary f:symbols[s].name_offset", "binary f:symbols[t]"},
       "symbols[s].name_offset "},
      {{"binary f:length", "binary f:modules[a].segments[text].len"},
       "length "},
      {{"binary f:length"}, ""},
      // In folders a cause may stand in another file, but in no other folder.
      {{"metadata g:digest", "binary f:modules[a].ep"}, "digest "},
      {{"metadata a/g:digest", "binary b/f:modules[a].ep"}, ""},
      {{"package-descriptor p:version", "binary f:header.build_ver"},
       "version "},
      {{"package-descriptor p:flags", "binary f:header.feature_mask"}, ""},
      {{"package-descriptor p:build_date", "manifest-1.5 m:css.date"},
       "build_date "},
      {{"metadata g:limit_offset", "binary f:length", "binary f:modules[a].ep"},
       "limit_offset length "},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(c.echoes, echoes_of(changes_of(c.changes))) << c.changes[0];
  }
}

// The contents of 1.5 stand beside the manifest: an addon's in a file with its
// UUID, all others in the one without.
TEST(Echoes, HashesOfContentsInOtherFiles) {
  const std::string uuid = "5a3c0004-7b1e-4c52-9d40-1f2e3d4c5b04";
  const std::string addon = "f_5A3C0004-7B1E-4C52-9D40-1F2E3D4C5B04.bin";
  const struct {
    std::string changed;  // the file whose contents did
    std::vector<std::string> files;
    bool is_echo;
  } cases[] = {
      {addon, {"f.man", "f.bin", addon}, true},
      {"f.bin", {"f.man", "f.bin", addon}, false},
      {"f.bin", {"f.man", "f.bin"}, true},
      {"f_00000000-7B1E-4C52-9D40-1F2E3D4C5B04.bin", {"f.man"}, false},
      {"f.txt", {"f.man", "f.txt"}, false},
      // Named anew since the build, its own all the same.
      {"f.bin", {"f.man", "f.bin", uuid + ".bin"}, false},
      {uuid + ".bin.signed", {"f.man", uuid + ".bin.signed"}, true},
  };
  for (const auto& c : cases) {
    auto changes = changes_of({"manifest-1.5 f.man:modules[a].hash",
                               "embedded " + c.changed + ":contents"});
    changes[0].uuid = uuid;
    EXPECT_EQ(c.is_echo ? "modules[a].hash " : "", echoes_of(changes, c.files))
        << c.changed;
  }
}

// Files of a folder that tell the same: the first one counts.
TEST(Echoes, ToldBefore) {
  auto changes =
      changes_of({"manifest-1.5 a.man:css.date", "manifest-1.5 b.man:css.date",
                  "manifest-1.5 other/b.man:css.date"});
  EXPECT_EQ("css.date ", echoes_of(changes));
  changes[1].new_value.number = 3;
  EXPECT_EQ("", echoes_of(changes));
}

// Bytes have no value to be told alike by.
TEST(Echoes, BytesAreToldOfEachFile) {
  auto changes =
      changes_of({"embedded a.bin:contents", "embedded b.bin:contents"});
  for (Change& change : changes) {
    change.old_value = change.new_value = {};
    change.bytes = ByteDifference{4096, 4096, 1, 1, 0};
  }
  EXPECT_EQ("", echoes_of(changes));
}

TEST(Echoes, FilesThatMovedTogether) {
  auto changes = changes_of({"package-descriptor p:files[a].path",
                             "package-descriptor p:files[b].path",
                             "package-descriptor p:files[c].path"});
  const char* const paths[][2] = {
      {"/old/a", "/new/a"}, {"/old/b", "/new/b"}, {"/old/c", "/else/c"}};
  for (std::size_t i = 0; i < 3; ++i) {
    changes[i].old_value = text_field("path", paths[i][0]);
    changes[i].new_value = text_field("path", paths[i][1]);
  }
  EXPECT_EQ("files[b].path ", echoes_of(changes));
}

TEST(Echoes, DatesTakeTheirFollowersAlong) {
  const auto rest_of = [](const std::vector<std::string>& texts) {
    auto changes = changes_of(texts);
    leave_out_dates(changes, {});
    std::string rest;
    for (const Change& change : changes) {
      rest += change.path + (change.echo.empty() ? " " : "* ");
    }
    return rest;
  };
  EXPECT_EQ("", rest_of({"manifest-1.5 m:css.date", "manifest-1.5 m:signature",
                         "package-descriptor p:build_date",
                         "package-descriptor p:comments[0]"}));
  EXPECT_EQ(
      "header.build_ver signature* ",
      rest_of({"manifest-1.5 m:css.date", "manifest-1.5 m:header.build_ver",
               "manifest-1.5 m:signature"}));
  EXPECT_EQ("signature ", rest_of({"manifest-1.5 m:signature"}));
}

}  // namespace
}  // namespace tova_fw_builder
