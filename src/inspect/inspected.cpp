#include "inspect/inspected.h"

#include <utility>

namespace tova_fw_builder {
namespace {

constexpr std::size_t kMostProblems = 1000;

}  // namespace

void add_problem(Inspected& inspected, std::uint64_t offset, std::string text) {
  if (inspected.problems.size() > kMostProblems) return;
  const bool is_last = inspected.problems.size() == kMostProblems;
  inspected.problems.push_back(
      {offset, is_last ? "there are more than 1000 problems: mend these first"
                       : std::move(text)});
}

}  // namespace tova_fw_builder
