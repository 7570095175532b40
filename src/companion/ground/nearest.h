// companion/ground/nearest.h
#pragma once

#include <string>
#include <string_view>

namespace tova_fw_builder {

// How many letters have to be put in, left out, replaced, or swapped with their
// neighbour to make `b` of `a`; `limit` + 1 for more than `limit`.
std::size_t edit_distance(std::string_view a, std::string_view b,
                          std::size_t limit);

// Finds out of many names the one that a misspelt word most likely means: of
// those at most a third of the word away, rounded up, the nearest; of equals
// the first. Word and names have to outlive it.
class Nearest {
 public:
  explicit Nearest(std::string_view word);

  void offer(std::string_view name);

  // Empty if no name is near.
  std::string_view name() const { return name_; }

  // "; did you mean 'NAME'?", or nothing.
  std::string question() const;

 private:
  std::string_view word_;
  std::string_view name_;
  std::size_t limit_;  // what still is nearer
};

}  // namespace tova_fw_builder
