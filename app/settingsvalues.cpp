#include "app/settingsvalues.h"

#include "cog/layout.h"

#include <charconv>
#include <cmath>
#include <string>

namespace settings {

namespace {

std::string_view trim(std::string_view s) {
    while (!s.empty() && (s.front() == ' ' || s.front() == '\t')) s.remove_prefix(1);
    while (!s.empty() && (s.back() == ' ' || s.back() == '\t')) s.remove_suffix(1);
    return s;
}

bool toDouble(std::string_view text, double& value) {
    text = trim(text);
    if (!text.empty() && text.front() == '+') text.remove_prefix(1);
    const auto [end, ec] = std::from_chars(text.data(), text.data() + text.size(), value);
    return ec == std::errc() && end == text.data() + text.size() && std::isfinite(value);
}

} // namespace

bool toBool(std::string_view text, bool fallback) {
    const std::string_view t = trim(text);
    if (cog::equalText(t, "true")) return true;
    if (cog::equalText(t, "false")) return false;
    double number = 0;
    if (toDouble(t, number)) return number != 0;
    return fallback;
}

std::int16_t toInt16(std::string_view text, std::int16_t fallback) {
    double number = 0;
    if (!toDouble(text, number)) return fallback;
    const double rounded = std::nearbyint(number); // the default rounding mode: halves to even
    if (rounded < -32768 || rounded > 32767) return fallback;
    return static_cast<std::int16_t>(rounded);
}

std::string boolText(bool b) {
    return b ? "True" : "False";
}

long roundHalfEven(double x) {
    const double lower = std::floor(x);
    const double fraction = x - lower;
    auto whole = static_cast<long>(lower);
    if (fraction > 0.5 || (fraction == 0.5 && whole % 2 != 0)) ++whole;
    return whole;
}

std::int16_t roundFontSize(double points) {
    if (!std::isfinite(points) || points < 1) return 1;
    if (points >= 32767) return 32767;
    const long whole = roundHalfEven(points);
    return static_cast<std::int16_t>(whole < 1 ? 1 : whole);
}

} // namespace settings
