// Carries out the statements in the order in which they stand; a position of
// the partition table is known once its file has come.
#include "tools/image_script.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <limits>
#include <memory>
#include <optional>
#include <stdexcept>
#include <system_error>

#include "crypto/sha_hash.h"
#include "driver/ground/byte_dump.h"
#include "driver/ground/files.h"
#include "driver/ground/line_reader.h"
#include "driver/ground/log.h"
#include "driver/ground/paths.h"
#include "driver/ground/stream_digest.h"

namespace tova_fw_builder {

namespace {

// What one run of a script works on.
struct Run {
  std::string deploy_dir;
  std::string out_file;
  std::ofstream out;
  PartitionTable table = {};
  std::optional<std::streamoff> table_position = {};
};

struct InputFile {
  std::unique_ptr<std::istream> stream;
  std::uint64_t length;
};

InputFile open_deployed(const Run& run, const std::string& name) {
  const std::string path = run.deploy_dir + name;
  auto stream = open_binary_input(path);
  const std::uint64_t length = file_length(*stream, path);
  return {std::move(stream), length};
}

void record_position(Run& run) {
  const std::uint32_t count = run.table.count;
  if (count == run.table.positions.size()) {
    throw std::runtime_error("Too many partition table entries");
  }
  // An entry has 32 bits; of a position above 4 GiB the low ones stand there.
  run.table.positions[count] = static_cast<std::uint32_t>(position_of(run.out));
  run.table.count = count + 1;
}

// The image is an input of its own, behind a step back: its last piece goes
// first, as each piece is written over what a later one was.
void append_from_itself(std::istream& in, std::uint64_t length,
                        std::ostream& out) {
  constexpr std::uint64_t kPiece = 64 * 1024;
  const std::uint64_t start = position_of(out);
  for (std::uint64_t end = length; end > 0;) {
    const std::uint64_t piece = std::min(end, kPiece);
    end -= piece;
    in.seekg(static_cast<std::streamoff>(end));
    out.seekp(static_cast<std::streamoff>(start + end));
    copy_bytes(in, piece, out);
  }
  out.seekp(static_cast<std::streamoff>(start + length));
}

void append_file(Run& run, const ImageStatement& statement) {
  const InputFile file = open_deployed(run, statement.name);
  log_info("Appending ", statement.name, " size = ", file.length);
  if (statement.is_marked) record_position(run);
  std::error_code ignored;
  // Only an overlap does harm: an input that ends at the position or ahead of
  // it is copied like any other.
  if (position_of(run.out) < file.length &&
      std::filesystem::equivalent(native_path(run.deploy_dir + statement.name),
                                  native_path(run.out_file), ignored)) {
    append_from_itself(*file.stream, file.length, run.out);
  } else {
    copy_bytes(*file.stream, file.length, run.out);
  }
}

// The last one counts. It leaves no room, as the next line is as a rule an
// `offset` that does.
void place_table(Run& run, const ImageStatement&) {
  run.table_position = run.out.tellp();
}

[[noreturn]] void refuse_offset(std::uint64_t target) {
  throw std::runtime_error("Offset out of range: " + std::to_string(target));
}

// Zero bytes from `position` to `target`. Behind the end of the file the last
// of them is enough, as the system fills the gap: a typing error of a few
// digits must not keep the disk busy for minutes. That the disk could hold
// them all is asked first.
void pad(Run& run, std::uint64_t position, std::uint64_t target) {
  run.out.seekp(0, std::ios_base::end);
  const std::uint64_t end = std::max(position, position_of(run.out));
  run.out.seekp(static_cast<std::streamoff>(position));
  write_zeros(run.out, std::min(end, target) - position);
  if (end < target) {
    std::error_code no_limit_known;
    const auto disk =
        std::filesystem::space(native_path(run.out_file), no_limit_known);
    if (disk.available < target - end) refuse_offset(target);
    run.out.seekp(static_cast<std::streamoff>(target - 1));
    run.out.put('\0');
  }
  // So that a full disk shows here, where the number at fault can be named.
  run.out.flush();
  if (!run.out) refuse_offset(target);
}

void go_to_offset(Run& run, const ImageStatement& statement) {
  const std::uint64_t target = statement.offset;
  // A cast would make it a position ahead of the start.
  if (target > std::numeric_limits<std::streamoff>::max()) {
    refuse_offset(target);
  }
  // Of a failed output the highest number: no offset pads it.
  const std::uint64_t position = position_of(run.out);
  if (position < target) {
    log_info("Appending padding size = ", target - position);
    pad(run, position, target);
  }
  run.out.seekp(static_cast<std::streamoff>(target));
}

void append_numbers(Run& run, const ImageStatement& statement) {
  for (const std::uint32_t number : statement.numbers) {
    log_info("Appending ", statement.word, " 0x", std::hex, number);
    // The low byte comes first, so the shorter forms are the start of this one.
    const Le32 bytes = number;
    run.out.write(reinterpret_cast<const char*>(&bytes), statement.width);
  }
}

void append_size(Run& run, const ImageStatement& statement) {
  const InputFile file = open_deployed(run, statement.name);
  log_info("Appending size of ", statement.name, " = ", std::hex, file.length);
  write_record(run.out, Le32(static_cast<std::uint32_t>(file.length)));
}

void append_hash(Run& run, const ImageStatement& statement) {
  const InputFile file = open_deployed(run, statement.name);
  const auto digest = stream_digest<Sha256Hash>(*file.stream, file.length);
  log_info("Appending hash of ", statement.name, " = ",
           ByteDump{digest.data(), digest.size(), "sha256"});
  write_record(run.out, digest);
}

// In the order of ImageStatement::Kind.
constexpr void (*kActions[])(Run&, const ImageStatement&) = {
    append_file,    place_table, go_to_offset,
    append_numbers, append_size, append_hash};

}  // namespace

void run_image_script(std::istream& script, const std::string& deploy_dir,
                      const std::string& out_file) {
  Run run{deploy_dir, out_file, open_output(out_file)};
  LineReader lines(script);
  std::string_view line;
  while (lines.next(line)) {
    for (const auto& statement : image_statements(line)) {
      kActions[statement.kind](run, statement);
    }
  }
  // Only now are all positions known.
  if (run.table_position) {
    run.out.seekp(*run.table_position);
    write_record(run.out, run.table);
  }
}

}  // namespace tova_fw_builder
