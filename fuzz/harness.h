// harness.h
// What the fuzz targets share. The log is on at its highest level, so that
// every line is formatted, and goes nowhere.
#pragma once

#include <string>
#include <vector>

// Each target defines this: it runs one reader or command on one input. A
// std::exception is a refusal and no finding.
void fuzz_one(const std::string& input);

// Cuts an input into `count` files: each ends at a "|", the last one takes the
// rest. Files that the input doesn't reach are empty.
std::vector<std::string> cut(const std::string& input, std::size_t count);

// Writes a file into the scratch folder and yields its path. The folder is in
// memory where that is possible; it is the working directory when an input
// begins.
std::string put(const std::string& name, const std::string& bytes);
