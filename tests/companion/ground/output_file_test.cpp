#include "companion/ground/output_file.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <filesystem>

#include "support/temp_dir.h"

namespace tova_fw_builder {
namespace {

namespace fs = std::filesystem;

mode_t rights_of(const std::string& path) {
  struct stat status = {};
  return stat(path.c_str(), &status) == 0 ? status.st_mode & 07777 : 0;
}

TEST(OutputFile, AppearsWholeOrNotAtAll) {
  const TempDir dir;
  const std::string path = dir.write("file", "old");
  chmod(path.c_str(), 0640);
  {
    OutputFile file(path);
    file.stream() << "half";
    file.stream().flush();
    EXPECT_EQ("old", read_file(path));
  }
  EXPECT_EQ("old", read_file(path));
  write_output_file(path, "new");
  EXPECT_EQ("new", read_file(path));
  EXPECT_EQ(0640u, rights_of(path));  // kept
  const auto files = fs::directory_iterator(dir.path());
  EXPECT_EQ(1, std::distance(begin(files), end(files)));
}

TEST(OutputFile, RightsOfNewFiles) {
  const TempDir dir;
  const mode_t before = umask(0027);
  write_output_file(dir.file("usual"), "x");
  write_output_file(dir.file("private"), "x", OutputFile::Rights::kPrivate);
  umask(before);
  EXPECT_EQ(0640u, rights_of(dir.file("usual")));
  EXPECT_EQ(0600u, rights_of(dir.file("private")));
  // What stood in the place of a private file may have been open to all.
  chmod(dir.file("usual").c_str(), 0644);
  write_output_file(dir.file("usual"), "x", OutputFile::Rights::kPrivate);
  EXPECT_EQ(0600u, rights_of(dir.file("usual")));
}

volatile std::sig_atomic_t interrupts;

// Else the half file beside would be left behind. A pipe may keep its writer
// waiting for ever: there they aren't held back.
TEST(OutputFile, InterruptsWaitForIt) {
  const TempDir dir;
  for (const int signal : {SIGINT, SIGTERM, SIGHUP, SIGQUIT}) {
    const auto before =
        std::signal(signal, [](int) { interrupts = interrupts + 1; });
    interrupts = 0;
    {
      OutputFile first(dir.file("first"));
      {
        OutputFile second(dir.file("second"));
        std::raise(signal);
        second.commit();
      }
      EXPECT_EQ(0, interrupts);
    }
    EXPECT_EQ(1, interrupts);
    EXPECT_THROW(OutputFile(dir.file("no/folder")), std::runtime_error);
    const OutputFile direct("/dev/null");
    std::raise(signal);
    EXPECT_EQ(2, interrupts);
    std::signal(signal, before);
  }
}

// What is long in the making ends then, and the file is taken back. A signal
// that the caller ignores is none.
TEST(OutputFile, AnInterruptEndsTheWriting) {
  const TempDir dir;
  const std::string much(100'000, 'x');
  for (const bool ignored : {false, true}) {
    const auto before = std::signal(
        SIGHUP, ignored ? SIG_IGN : [](int) { interrupts = 1; });
    interrupts = 0;
    const std::string path = dir.file(ignored ? "ignored" : "ended");
    {
      OutputFile file(path);
      std::raise(SIGHUP);
      file.stream() << much;
      EXPECT_EQ(ignored, file.stream().good());
      if (ignored) file.commit();
    }
    EXPECT_EQ(ignored ? 0 : 1, interrupts);
    EXPECT_EQ(ignored, fs::exists(path));
    std::signal(SIGHUP, before);
  }
  EXPECT_EQ(1, std::distance(fs::directory_iterator(dir.path()),
                             fs::directory_iterator()));
}

TEST(OutputFile, FollowsLinksAndWritesDevices) {
  const TempDir dir;
  fs::create_symlink("target", dir.file("link"));
  write_output_file(dir.file("link"), "x");
  EXPECT_TRUE(fs::is_symlink(dir.file("link")));
  EXPECT_EQ("x", read_file(dir.file("target")));
  write_output_file("/dev/null", "x");
  EXPECT_TRUE(fs::is_character_file("/dev/null"));
  // As a shell gives a command that reads the output.
  int ends[2];
  ASSERT_EQ(0, pipe(ends));
  write_output_file("/dev/fd/" + std::to_string(ends[1]), "x");
  char byte = 0;
  EXPECT_EQ(1, read(ends[0], &byte, 1));
  EXPECT_EQ('x', byte);
  close(ends[0]);
  close(ends[1]);
}

TEST(OutputFile, TwoOutputsInOnePlace) {
  const TempDir dir;
  fs::create_directory(dir.file("sub"));
  fs::create_symlink("sub", dir.file("link"));
  fs::current_path(dir.path());
  const struct {
    const char* a;
    const char* b;
    bool are_one;
  } cases[] = {
      {"x", "x", true},         {"x", "sub/../x", true},
      {"x", "none/../x", true}, {"sub/x", "link/x", true},
      {"x", "y", false},        {"x", "sub/x", false},
      {"", "", false},          {"/dev/null", "/dev/null", false},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(c.are_one, are_one_file(c.a, c.b)) << c.a << ' ' << c.b;
    EXPECT_EQ(c.are_one, are_one_file(c.b, c.a));
  }
}

TEST(OutputFile, FailuresHaveAReason) {
  const TempDir dir;
  EXPECT_EQ("cannot be written: No such file or directory",
            message_of([&] { write_output_file(dir.file("none/x"), "x"); }));
  EXPECT_EQ("cannot be written: Is a directory",
            message_of([&] { write_output_file(dir.path(), "x"); }));
  EXPECT_EQ("cannot be written: No space left on device",
            message_of([&] { write_output_file("/dev/full", "x"); }));
  // More than a buffer holds fails ahead of the end, and unbuffered at once.
  const std::string much(1'000'000, 'x');
  EXPECT_EQ("cannot be written: No space left on device",
            message_of([&] { write_output_file("/dev/full", much); }));
  EXPECT_EQ("cannot be written: No space left on device", message_of([&] {
              OutputFile file("/dev/full");
              file.stream() << much << std::flush;
              errno = 0;
              file.commit();
            }));
}

}  // namespace
}  // namespace tova_fw_builder
