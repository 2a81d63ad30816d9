#include "ecmascriptnumber_p.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdint>

namespace ts::crypto {

namespace {

constexpr double IntegerLimit = 9007199254740992.0; // 2^53: below it every integer is printed digit by digit

/** The shortest digits that read back as the number, which is 0.d1d2d3... * 10^point. */
struct Digits
{
    char text[20];
    int count = 0;
    int point = 0;
};

Digits shortestDigits(double number)
{
    char buffer[LongestNumber];
    char *end = std::to_chars(buffer, buffer + LongestNumber, number, std::chars_format::scientific).ptr;
    const char *exponent = std::find(buffer, end, 'e');
    Digits digits;
    digits.count = int(std::remove_copy<const char *>(buffer, exponent, digits.text, '.') - digits.text);
    const bool positive = exponent[1] == '+'; // std::from_chars takes a minus sign, but no plus sign
    std::from_chars(exponent + (positive ? 2 : 1), end, digits.point);
    ++digits.point;
    return digits;
}

char *writeWithExponent(char *to, const Digits &digits)
{
    *to++ = digits.text[0];
    if (digits.count > 1) {
        *to++ = '.';
        to = std::copy(digits.text + 1, digits.text + digits.count, to);
    }
    *to++ = 'e';
    const int exponent = digits.point - 1;
    if (exponent > 0)
        *to++ = '+';
    return std::to_chars(to, to + 5, exponent).ptr;
}

char *writeDigits(char *to, const Digits &digits)
{
    const char *end = digits.text + digits.count;
    if (digits.point > 21 || digits.point <= -6)
        return writeWithExponent(to, digits);
    if (digits.point <= 0) {
        *to++ = '0';
        *to++ = '.';
        return std::copy(digits.text, end, std::fill_n(to, -digits.point, '0'));
    }
    if (digits.count <= digits.point)
        return std::fill_n(std::copy(digits.text, end, to), digits.point - digits.count, '0');
    to = std::copy_n(digits.text, digits.point, to);
    *to++ = '.';
    return std::copy(digits.text + digits.point, end, to);
}

} // namespace

char *writeNumber(char *to, double number)
{
    if (std::fabs(number) < IntegerLimit && number == std::trunc(number))
        return std::to_chars(to, to + LongestNumber, std::int64_t(number)).ptr; // -0 becomes 0 here
    if (number < 0)
        *to++ = '-';
    return writeDigits(to, shortestDigits(std::fabs(number)));
}

} // namespace ts::crypto
