#include "inspect/flash_script.h"

#include <gtest/gtest.h>

#include <sstream>

#include "inspect/bytes.h"
#include "inspect/sample_files.h"
#include "support/bytes.h"
#include "support/temp_dir.h"

namespace tova_fw_builder {
namespace {

std::string problems_of(const Inspected& inspected) {
  std::string text;
  for (const Problem& problem : inspected.problems) {
    text += std::to_string(problem.offset) + ": " + problem.text + '\n';
  }
  return text;
}

// By sha256sum, of 5 letters a.
constexpr char kHashOfA[] =
    "ed968e840d10d2d313a870bc131a4e2c311d7ad09bdf32b3418147221f51a6e2";

// As build_img makes it: the table at 0, zeros to 0x48, 5 bytes of file a, its
// length, and two numbers.
std::string image() {
  return Bytes().u32(1).u32(0x48).fill(64).text("aaaaa").u32(5).u16(0x1234);
}

TEST(FlashScript, NamesEveryPart) {
  const TempDir dir;
  dir.write("a", "aaaaa");
  dir.write("b", "aaaba");
  const std::string plain = image().replace(0, 72, 72, '\0');
  const struct {
    const char* script;
    std::string image;
    std::string problems;
  } cases[] = {
      {"pt\noffset 48\nbin a m\nsize a\ndw 1234\n", image(), ""},
      // What is nearly a statement; a remark is none.
      {"# bni\n#bin a\nDDR\nadd\nfile\nat\npt\noffset 48\nBIN a\nbni a\nbin a "
       "m\nsize a\ndw "
       "1234\n",
       image(),
       "72: line 9: 'BIN' does nothing; did you mean 'bin'? A remark begins "
       "with #\n72: line 10: 'bni' does nothing; did you mean 'bin'? A remark "
       "begins "
       "with #\n"},
      // Another word behind the file marks nothing.
      {"pt\noffset 48\nbin a n\nsize a\ndw 1234\n", image(),
       "0: line 1 (pt): the image has other bytes there\n"},
      // A number of the table, of `size` and of `dw` that the image lacks.
      {"offset 48\nbin a\ndd 5\ndw 4321\n", plain,
       "81: line 4 (dw): the image has other bytes there\n"},
      {"pt\noffset 48\nbin a\nsize a\ndw 1234\n", image(),
       "0: line 1 (pt): the image has other bytes there\n"},
      // The second file goes over the end of the first one.
      {"offset 48\nbin a\noffset 4c\ndb 61\ndd 5\ndw 1234\n", plain,
       "76: line 4 (db) writes over 1 byte of line 2 (bin)\n"},
      // Behind a file that is missing, nothing is known up to an offset.
      {"offset 48\nbin none\ndd 7\noffset 4d\ndd 5\ndw 1234\n", plain,
       "72: line 2: PREFIXnone is not there\n"
       "72: 5 bytes that no statement wrote\n"},
      {"offset 50\ndd 5\n", std::string(0x52, '\0'),
       "80: line 2 (dd) reaches beyond the end of the image\n"},
      {"offset 50\ndd 5\n", std::string(0x50, '\0'),
       "80: line 2 (dd) lies behind the end of the image\n"},
      // Bytes of the file that aren't in the image, up to where another part
      // goes over them; zeros that are none; a hash.
      {"pt\noffset 48\nbin b\nsize b\ndw 1234\n", plain,
       "75: line 3 (bin): the image has other bytes there\n"},
      {"offset 48\nbin b\noffset 4b\ndb 61 61\ndd 5\ndw 1234\n", plain,
       "75: line 4 (db) writes over 2 bytes of line 2 (bin)\n"},
      {"offset 48\nbin a\ndd 5\ndw 1234\n", image(),
       "0: line 1 (offset): the image has other bytes there\n"},
      {"sha a\n", bytes_of(kHashOfA), ""},
      {"sha a\nsha a\n",
       bytes_of(kHashOfA) + bytes_of(kHashOfA).replace(31, 1, 1, 'x'),
       "63: line 2 (sha): the image has other bytes there\n"},
      {"sha none\n", std::string(32, 'x'),
       "0: line 1: PREFIXnone is not there\n"},
      {"offset 8000000000000000\ndd 1\n", "",
       "0: line 1: the offset is out of "
       "range\n"},
      {"offset 7fffffffffffffff\ndd 1\n", "",
       "0: line 1 (offset) lies behind the end of the image\n"
       "0: line 2 (dd) lies behind the end of the image\n"},
  };
  std::string many;
  for (int i = 0; i < 4096; ++i) many += "db 1\n";
  {
    std::istringstream script(many + "# all\n\n");
    EXPECT_EQ("", problems_of(inspect_flash_image(
                      ByteSource::of(std::string(4096, '\1')), script, "")));
  }
  many += "db 1\n";
  {
    std::istringstream script(many);
    EXPECT_EQ(
        "4097: the script makes more than 4096 parts; what is behind these "
        "isn't looked at\n",
        problems_of(inspect_flash_image(ByteSource::of(std::string(4097, '\1')),
                                        script, "")));
  }
  std::string full = "pt\noffset 48\n";
  for (int i = 0; i < 16; ++i) full += "bin a m\n";
  {
    std::istringstream script(full);
    const ByteSource source =
        ByteSource::of(std::string(Bytes().u32(16).fill(68).fill(80, 'a')));
    EXPECT_EQ(
        "4: line 1 (pt): the image has other bytes there\n",
        problems_of(inspect_flash_image(source, script, dir.path() + "/")));
  }
  const std::string prefix = dir.path() + "/";
  for (const auto& c : cases) {
    std::istringstream script(c.script);
    const ByteSource source = ByteSource::of(c.image);
    const Inspected inspected = inspect_flash_image(source, script, prefix);
    std::string expected = c.problems;
    if (const auto at = expected.find("PREFIX"); at != expected.npos) {
      expected.replace(at, 6, prefix);
    }
    EXPECT_EQ(expected, problems_of(inspected)) << c.script;
    std::uint64_t end = 0;
    for (const ByteRange& range : byte_ranges(inspected)) {
      EXPECT_EQ(end, range.offset) << c.script;
      end += range.length;
    }
    EXPECT_EQ(c.image.size(), end) << c.script;
  }
}

// The prefix stands in front as it is, and only where a slash would help is it
// asked for.
TEST(FlashScript, PrefixWithoutItsSlash) {
  const TempDir dir;
  dir.write("a", "aaaaa");
  const std::pair<const char*, const char*> cases[] = {
      {"bin a\n",
       "a is not there; --deploy-dir is put in front as it stands: end it "
       "with /\n"},
      {"bin none\n", "none is not there\n"},
  };
  for (const auto& [text, problem] : cases) {
    std::istringstream script(text);
    EXPECT_EQ("0: line 1: " + dir.path() + problem,
              problems_of(
                  inspect_flash_image(ByteSource::of(""), script, dir.path())));
  }
}

}  // namespace
}  // namespace tova_fw_builder
