// companion/ground/list_cures.h
// What is said of the ELF list and its paths, wherever one is read.
#pragma once

#include <string>
#include <string_view>

namespace tova_fw_builder {

// Behind the builder's text for a list with lines too few.
inline constexpr std::string_view kElfListCure =
    "; each ELF has three lines, the last one with a line feed, too: tova_fw "
    "tables writes such a list";

inline constexpr std::string_view kCutPathCure =
    "; a list ends a path at its first blank";

// Behind a relative path that two folders were tried for.
inline constexpr std::string_view kNeitherPlace =
    ", neither from here nor from the list; tova_fw_builder counts it from the "
    "definition's folder";

// "its file PATH", where an empty path is seen, too.
std::string its_file(std::string_view path);

struct ListedPath {
  bool is_there = false;
  bool is_cut = false;  // its line goes on behind a blank
};

// Looks for a path as the first word of a line of an ELF list. Not there, if
// the list is no file that can be read again.
ListedPath find_listed_path(const std::string& list, std::string_view path);

}  // namespace tova_fw_builder
