// Helpers for tables of cases.
#pragma once

#include <sstream>
#include <stdexcept>
#include <string>
#include <vector>

// The message of the exception that the operation throws; empty when it throws none.
template <typename Operation>
std::string MessageOf(const Operation& operation) {
    try {
        operation();
    } catch (const std::runtime_error& error) {
        return error.what();
    }
    return {};
}

// Splits a table of words into rows of this many columns; `-` means an empty word.
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
