// Short ways to write down what a test expects.
#pragma once

#include <sstream>
#include <stdexcept>
#include <string>
#include <vector>

// The message with which the operation fails; empty when it does not.
template <typename Operation>
std::string MessageOf(const Operation& operation) {
    try {
        operation();
    } catch (const std::runtime_error& error) {
        return error.what();
    }
    return {};
}

// The rows of a table of words; `-` stands for an empty one.
inline std::vector<std::vector<std::string>> Rows(std::size_t columns, const char* table) {
    std::vector<std::vector<std::string>> rows;
    std::istringstream words(table);
    for (std::string word; words >> word;) {
        if (rows.empty() || rows.back().size() == columns)
            rows.emplace_back();
        rows.back().push_back(word == "-" ? "" : word);
    }
    return rows;
}
