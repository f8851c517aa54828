// Reading the values of the settings store, which hold text: a value that does not convert falls
// back to the default instead of stopping the program.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace settings {

// "True" / "False" in any letter case, or a whole number (non-zero is true).
bool toBool(std::string_view text, bool fallback);
// A number rounded to the nearest whole one (halves to even) in the 16-bit range.
std::int16_t toInt16(std::string_view text, std::int16_t fallback);

// How a Boolean is written: "True" or "False".
std::string boolText(bool b);

// Rounds to the nearest whole number, halves to the even one.
long roundHalfEven(double x);

// A font size in points as the editor keeps it: rounded to a whole number, halves to the even
// one, and held within 1 to 32767.
std::int16_t roundFontSize(double points);

} // namespace settings
