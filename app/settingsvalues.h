// How the settings store's texts read back into values and how values are written to it:
// Booleans as "True" or "False", numbers in decimal.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace app {

std::string boolText(bool b); // "True" or "False"

// "True"/"False" in any letter case, or a whole number (0 false, anything else true); other
// text gives fallback.
bool parseBool(std::string_view text, bool fallback);

// A whole number in the 16-bit range, blanks around it allowed; other text gives fallback.
std::int16_t parseInt16(std::string_view text, std::int16_t fallback);

// Rounds to the nearest whole number, halves to the even one.
long roundHalfEven(double x);

// A font size in points as the editor keeps it: rounded to a whole number, halves to the even
// one, and held within 1 to 32767.
std::int16_t roundFontSize(double points);

} // namespace app
