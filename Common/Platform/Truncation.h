#pragma once

namespace qam {

// Whether (int)value is defined: inside int's range. NaN fails both comparisons.
inline bool truncatesToInt(float value) {
    return value >= -2147483648.0f && value < 2147483648.0f;
}

}  // namespace qam
