// The readers of text on generated inputs of ten times the lines from step to
// step, which must cost little more than ten times the time.
#include <benchmark/benchmark.h>

#include <filesystem>
#include <fstream>
#include <iomanip>
#include <sstream>

#include "definitions/image_block.h"
#include "definitions/includes_and_defines.h"
#include "driver/ground/log.h"
#include "input_map/fw_image_map.h"

namespace tova_fw_builder {
namespace {

constexpr const char* kSectionEnd =
    "  2**4\n                  CONTENTS, ALLOC, LOAD, READONLY, CODE\n";

std::string section_table(std::int64_t count) {
  std::ostringstream text;
  text << "Idx Name          Size      VMA       LMA       File off  Algn\n";
  for (std::int64_t i = 0; i < count; ++i) {
    const std::int64_t address = 0x10000000 + i * 16;
    text << std::dec << i << " .text.f" << i << "  00000010  " << std::hex
         << address << "  " << address << "  " << i * 16 << kSectionEnd;
  }
  return text.str();
}

std::string symbol_list(std::int64_t count) {
  std::ostringstream text;
  for (std::int64_t i = 0; i < count; ++i) {
    text << std::hex << std::setfill('0') << std::setw(8) << i * 4
         << " T function_number_" << std::dec << i << '\n';
  }
  return text.str();
}

std::string definitions(std::int64_t count) {
  std::ostringstream text;
  text << "binary_name BENCH\nbinary_ver 1.8\nmodule all\ngroup text\n";
  for (std::int64_t i = 0; i < count; ++i) {
    text << "  section o .text.f" << i << '\n';
  }
  return text.str();
}

// A file that is removed with the object.
struct TextFile {
  explicit TextFile(const std::string& text)
      : path(std::filesystem::temp_directory_path() / "tova_reader_bench") {
    std::ofstream(path) << text;
  }
  ~TextFile() { std::filesystem::remove(path); }
  std::string path;
};

void count_lines(benchmark::State& state, std::int64_t count) {
  state.SetItemsProcessed(static_cast<std::int64_t>(state.iterations()) *
                          count);
}

void read_sections_bench(benchmark::State& state) {
  const std::string text = section_table(state.range(0));
  const auto elf = std::make_shared<std::istringstream>();
  for (auto _ : state) {
    FwImageMap map;
    std::istringstream in(text);
    read_section_table(map, in, elf);
    benchmark::DoNotOptimize(map.sections.size());
  }
  count_lines(state, state.range(0));
}

void read_symbols_bench(benchmark::State& state) {
  set_log_level(kLogError);
  const TextFile file(symbol_list(state.range(0)));
  for (auto _ : state) benchmark::DoNotOptimize(read_symbols(file.path));
  count_lines(state, state.range(0));
}

void read_definitions_bench(benchmark::State& state) {
  set_log_level(kLogError);
  const TextFile file(definitions(state.range(0)));
  for (auto _ : state) {
    FwOutMap map;
    read_image_layout(map, read_image_defs(map, file.path));
    benchmark::DoNotOptimize(map);
  }
  count_lines(state, state.range(0));
}

BENCHMARK(read_sections_bench)
    ->Name("read_section_table")
    ->RangeMultiplier(10)
    ->Range(1000, 100000)
    ->Unit(benchmark::kMillisecond);
BENCHMARK(read_symbols_bench)
    ->Name("read_symbols")
    ->RangeMultiplier(10)
    ->Range(10000, 1000000)
    ->Unit(benchmark::kMillisecond);
BENCHMARK(read_definitions_bench)
    ->Name("definitions")
    ->RangeMultiplier(10)
    ->Range(1000, 100000)
    ->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace tova_fw_builder
