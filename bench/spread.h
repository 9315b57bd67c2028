// Where most of many measurements lie.
#pragma once

#include <algorithm>
#include <cstddef>
#include <vector>

// The value below which `part` of all values lie: 0.5 for the middle one.
inline double At(std::vector<double> values, double part) {
    std::sort(values.begin(), values.end());
    return values[static_cast<std::size_t>(part * static_cast<double>(values.size() - 1))];
}
