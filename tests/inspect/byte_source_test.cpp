#include "inspect/byte_source.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <filesystem>
#include <fstream>
#include <new>
#include <thread>

#include "driver/ground/wire.h"
#include "support/bytes.h"
#include "support/temp_dir.h"

namespace tova_fw_builder {
namespace {

ByteSource closed(ByteSource source) {
  source.close();
  return source;
}

// Of a file and of memory alike, open or not, also behind a failed reading at
// the end.
TEST(ByteSource, PartsOfAFile) {
  const TempDir dir;
  const std::string bytes = counting(100);
  for (const ByteSource& source :
       {ByteSource::open(dir.write("f", bytes)), ByteSource::of(bytes),
        closed(ByteSource::open(dir.file("f"))),
        closed(ByteSource::of(bytes))}) {
    const struct {
      std::uint64_t offset;
      std::uint64_t length;
      std::string found;
    } cases[] = {
        {0, 3, counting(3)},
        {98, 9, counting(2, 99)},
        {100, 1, ""},
        {~0ull, 5, ""},
        {99, ~0ull, counting(1, 100)},
        {10, 0, ""},
        {5, 2, counting(2, 6)},
        {101, ~0ull, ""},
    };
    EXPECT_EQ(100u, source.size());
    for (const auto& c : cases) {
      EXPECT_EQ(c.found, view_of(source.bytes(c.offset, c.length))) << c.offset;
    }
    char room[4] = {'x', 'x', 'x', 'x'};
    EXPECT_EQ(2u, source.read(98, room));
    EXPECT_EQ(counting(2, 99) + std::string(2, '\0'), std::string(room, 4));
    EXPECT_EQ(0u, source.read(100, room));
    EXPECT_EQ(std::string(4, '\0'), std::string(room, 4));
    EXPECT_EQ(100u, Le32(record_at<Le32>(source, 99)));
    // printf of the numbers from 1 to 100 as bytes, by sha256sum.
    const auto digest = sha256_of(source);
    EXPECT_EQ(
        "57e8310931615cb786e0923d1ef88d4ad9f0ab74bf85a807f77fe2a8915001e4",
        hex_of({reinterpret_cast<const char*>(digest.data()), 32}));
  }
}

TEST(ByteSource, Pieces) {
  const std::string bytes(600'000, 'x');
  const ByteSource source = ByteSource::of(bytes);
  std::vector<std::size_t> lengths;
  const auto note = [&lengths](std::string_view piece) {
    lengths.push_back(piece.size());
    return true;
  };
  source.pieces(10, 599'000, note);
  EXPECT_EQ((std::vector<std::size_t>{262'144, 262'144, 74'712}), lengths);
  lengths.clear();
  source.pieces(599'990, 1000, note);  // the file ends ahead of it
  EXPECT_EQ((std::vector<std::size_t>{10}), lengths);
  lengths.clear();
  source.pieces(0, 600'000, [&](std::string_view piece) {
    return note(piece) && lengths.size() < 2;
  });
  EXPECT_EQ(2u, lengths.size());
}

TEST(ByteSource, PipesAreReadOnce) {
  const TempDir dir;
  const std::string path = dir.file("pipe");
  ASSERT_EQ(0, mkfifo(path.c_str(), 0600));
  std::thread writer([&path] { std::ofstream(path) << "through the pipe"; });
  const ByteSource source = ByteSource::open(path);
  writer.join();
  EXPECT_EQ(16u, source.size());
  EXPECT_EQ("the", view_of(source.bytes(8, 3)));
}

TEST(ByteSource, ShrinkingFilesEndThere) {
  const TempDir dir;
  const std::string path = dir.write("f", counting(100));
  const ByteSource source = ByteSource::open(path);
  const ByteSource opened_again = closed(ByteSource::open(path));
  std::filesystem::resize_file(path, 10);
  for (const ByteSource* each : {&source, &opened_again}) {
    EXPECT_EQ(counting(10), view_of(each->bytes(0, 50)));
    EXPECT_EQ("", view_of(each->bytes(50, 50)));
  }
  // One that has gone away, too; what could keep it waiting isn't opened.
  std::filesystem::remove(path);
  EXPECT_EQ("", view_of(opened_again.bytes(0, 50)));
  ASSERT_EQ(0, mkfifo(path.c_str(), 0600));
  EXPECT_EQ(path + ": cannot be read: it has become a pipe",
            message_of([&] { opened_again.bytes(0, 1); }));
}

// The place is looked at as the bytes that it is made of, and through a pointer
// that the compiler knows nothing of.
TEST(WipedBytes, RecordsLeaveNothing) {
  alignas(Le32) unsigned char place[sizeof(Le32)];
  volatile unsigned char* const seen = place;
  const auto* record = new (place) Wiped<Le32>();
  for (std::size_t i = 0; i < sizeof(place); ++i) seen[i] = 0xA5;
  record->~Wiped();
  for (std::size_t i = 0; i < sizeof(place); ++i) EXPECT_EQ(0, seen[i]);
}

}  // namespace
}  // namespace tova_fw_builder
