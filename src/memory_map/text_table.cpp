#include "memory_map/text_table.h"

#include <algorithm>
#include <utility>

#include "companion/ground/printable.h"

namespace tova_fw_builder {

TextTable::TextTable(std::vector<std::string> titles) {
  for (std::string& title : titles) {
    to_right_.push_back(title.starts_with('>'));
    if (to_right_.back()) title.erase(0, 1);
  }
  rows_.push_back(std::move(titles));
}

void TextTable::add(std::vector<std::string> row) {
  for (std::string& cell : row) cell = printable(cell);
  rows_.push_back(std::move(row));
}

void TextTable::print(std::ostream& out, const std::string& title,
                      const Colours& colours) const {
  if (rows() == 0) return;
  std::vector<std::size_t> widths(to_right_.size());
  for (const auto& row : rows_) {
    for (std::size_t i = 0; i < row.size(); ++i) {
      widths[i] = std::max(widths[i], row[i].size());
    }
  }
  out << '\n' << colours.bold << title << colours.plain << '\n';
  for (std::size_t r = 0; r < rows_.size(); ++r) {
    std::string line;
    for (std::size_t i = 0; i < rows_[r].size(); ++i) {
      const std::string& cell = rows_[r][i];
      const std::string blanks(widths[i] - cell.size(), ' ');
      line += "  ";
      line += to_right_[i] ? blanks + cell : cell + blanks;
    }
    line.erase(line.find_last_not_of(' ') + 1);
    out << (r == 0 ? colours.faint : "") << line
        << (r == 0 ? colours.plain : "") << '\n';
  }
}

}  // namespace tova_fw_builder
