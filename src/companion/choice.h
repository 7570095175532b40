// companion/choice.h
#pragma once

#include <string>
#include <vector>

namespace CLI {
class Option;
}

namespace tova_fw_builder {

// Lets the option take these words alone, and names them in its help. Another
// word is answered with all of them and with the one that is nearest.
void take_one_of(CLI::Option& option, const std::vector<std::string>& words);

}  // namespace tova_fw_builder
