// Numbers of a fixed width, as dates are made of.
#pragma once

namespace kintar {

/// Writes the last `width` decimal digits of `value` to `place`, leading zeros included.
inline void putDigits(char* place, unsigned value, int width) {
    for (int digit = width - 1; digit >= 0; --digit) {
        place[digit] = static_cast<char>('0' + value % 10);
        value /= 10;
    }
}

} // namespace kintar
