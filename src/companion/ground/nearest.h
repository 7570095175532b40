// companion/ground/nearest.h
#pragma once

#include <span>
#include <string>
#include <string_view>

namespace tova_fw_builder {

// The word that `word` is most likely meant to be: the one with the fewest
// letters to be changed, put in, left out or swapped with their neighbours, and
// no more of these than a third of its letters or one. Of several the first;
// empty if none is near.
std::string nearest_word(std::string_view word,
                         std::span<const std::string> words);

}  // namespace tova_fw_builder
