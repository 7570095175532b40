// memory_map/text_table.h
#pragma once

#include <cstddef>
#include <ostream>
#include <string>
#include <vector>

#include "companion/ground/colour.h"

namespace tova_fw_builder {

// A table for people. A column whose title begins with '>' stands to the right.
class TextTable {
 public:
  explicit TextTable(std::vector<std::string> titles);

  void add(std::vector<std::string> row);
  std::size_t rows() const { return rows_.size() - 1; }

  // Under a title, which a table without rows has none of.
  void print(std::ostream& out, const std::string& title,
             const Colours& colours) const;

 private:
  std::vector<bool> to_right_;
  std::vector<std::vector<std::string>> rows_;  // the titles first
};

}  // namespace tova_fw_builder
