#include "inspect/compare/compare_lines.h"

#include <algorithm>
#include <string>
#include <utility>

#include "inspect/compare/folder_parts.h"
#include "inspect/recognise.h"

namespace tova_fw_builder {
namespace {

constexpr std::uint64_t kLongest = 64 * 1024;
constexpr std::size_t kMostLines = 12;

bool is_text(std::string_view bytes) {
  return std::all_of(bytes.begin(), bytes.end(), [](char c) {
    return static_cast<unsigned char>(c) >= 0x20 || c == '\n' || c == '\r' ||
           c == '\t';
  });
}

// What stands between the line feeds, so that equal lines are equal bytes.
std::vector<std::string> lines_of(std::string_view text) {
  std::vector<std::string> lines;
  for (std::size_t at = 0; at != text.npos;) {
    const std::size_t end = text.find('\n', at);
    lines.emplace_back(text.substr(at, end - at));
    at = end == text.npos ? end : end + 1;
  }
  return lines;
}

Change line_change(std::size_t index) {
  Change change;
  change.keys = {std::to_string(index + 1)};
  change.path = "lines[" + change.keys[0] + ']';
  change.pattern = "lines[]";
  return change;
}

}  // namespace

std::vector<Change> compare_lines(const ByteSource& old_source,
                                  const ByteSource& new_source) {
  if (std::max(old_source.size(), new_source.size()) > kLongest) return {};
  for (const ByteSource* source : {&old_source, &new_source}) {
    if (may_be_private(*source) || is_private_key(*source)) return {};
  }
  const WipedBytes old_bytes = old_source.bytes(0, kLongest);
  const WipedBytes new_bytes = new_source.bytes(0, kLongest);
  const std::string_view old_text = view_of(old_bytes);
  const std::string_view new_text = view_of(new_bytes);
  if (!is_text(old_text) || !is_text(new_text)) return {};
  const auto olds = lines_of(old_text);
  const auto news = lines_of(new_text);

  const auto head = static_cast<std::size_t>(
      std::mismatch(olds.begin(), olds.end(), news.begin(), news.end()).first -
      olds.begin());
  std::size_t tail = 0;  // equal lines at the end, behind the head
  while (tail < std::min(olds.size(), news.size()) - head &&
         olds[olds.size() - 1 - tail] == news[news.size() - 1 - tail]) {
    ++tail;
  }
  const std::size_t old_end = olds.size() - tail;
  const std::size_t new_end = news.size() - tail;

  std::vector<Change> changes;
  std::size_t counted = 0;
  for (std::size_t i = head; i < std::max(old_end, new_end); ++i) {
    const bool in_both = i < old_end && i < new_end;
    counted += !in_both || !differ_in_folders(olds[i], news[i]);
    if (counted > kMostLines) return {};
    if (in_both && olds[i] == news[i]) continue;
    Change change = line_change(i);
    if (i < old_end) change.old_value = text_field("", olds[i]);
    if (i < new_end) change.new_value = text_field("", news[i]);
    changes.push_back(std::move(change));
  }
  return changes;
}

}  // namespace tova_fw_builder
