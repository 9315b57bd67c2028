// Quantiles of measurements.
#pragma once

#include <algorithm>
#include <cstddef>
#include <vector>

// The value below which the share `part` of all values lies: 0.5 gives the median.
inline double Quantile(std::vector<double> values, double part) {
    std::sort(values.begin(), values.end());
    return values[static_cast<std::size_t>(part * static_cast<double>(values.size() - 1))];
}
