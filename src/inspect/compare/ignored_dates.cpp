// What has lost its cause by this is an echo of the date; so is what has lost
// such an echo, and so on.
#include "inspect/compare/ignored_dates.h"

#include <algorithm>
#include <cstddef>
#include <iterator>
#include <utility>

#include "inspect/compare/echoes.h"

namespace tova_fw_builder {
namespace {

// When and where the build was made.
bool is_date_or_folder(const Change& change) {
  return change.echo == kFolderEcho || change.pattern == "css.date" ||
         change.pattern == "build_date" || change.path == "comments[0]";
}

}  // namespace

void leave_out_dates(std::vector<Change>& changes,
                     const std::vector<std::string>& files) {
  mark_echoes(changes, files);
  std::vector<Change> rest;
  for (bool again = true; again;) {
    rest.clear();
    std::copy_if(
        changes.begin(), changes.end(), std::back_inserter(rest),
        [](const Change& change) { return !is_date_or_folder(change); });
    std::vector<bool> was_echo;
    was_echo.reserve(rest.size());
    for (const Change& change : rest) was_echo.push_back(!change.echo.empty());
    mark_echoes(rest, files);
    changes.clear();
    again = false;
    for (std::size_t i = 0; i < rest.size(); ++i) {
      if (was_echo[i] && rest[i].echo.empty()) {
        again = true;
      } else {
        changes.push_back(std::move(rest[i]));
      }
    }
  }
}

}  // namespace tova_fw_builder
