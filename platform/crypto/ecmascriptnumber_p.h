#pragma once

namespace ts::crypto {

constexpr int LongestNumber = 32; ///< more than any number takes, in bytes; the longest is 25

/**
 * Writes \a number, which has to be finite, as ECMAScript's Number::toString does, without a terminating NUL.
 * Returns the end of what it wrote; \a to has room for LongestNumber bytes.
 */
char *writeNumber(char *to, double number);

} // namespace ts::crypto
