#include "app/settingsvalues.h"

#include "cog/layout.h"

#include <charconv>
#include <cmath>

namespace app {

namespace {

std::string_view trimmed(std::string_view s) {
    while (!s.empty() && (s.front() == ' ' || s.front() == '\t')) s.remove_prefix(1);
    while (!s.empty() && (s.back() == ' ' || s.back() == '\t')) s.remove_suffix(1);
    return s;
}

bool parseLong(std::string_view text, long& v) {
    text = trimmed(text);
    if (!text.empty() && text.front() == '+') text.remove_prefix(1);
    if (text.empty()) return false;
    const auto [end, ec] = std::from_chars(text.data(), text.data() + text.size(), v);
    return ec == std::errc() && end == text.data() + text.size();
}

} // namespace

std::string boolText(bool b) {
    return b ? "True" : "False";
}

bool parseBool(std::string_view text, bool fallback) {
    const std::string_view t = trimmed(text);
    if (cog::equalText(t, "true")) return true;
    if (cog::equalText(t, "false")) return false;
    long v = 0;
    if (parseLong(t, v)) return v != 0;
    return fallback;
}

std::int16_t parseInt16(std::string_view text, std::int16_t fallback) {
    long v = 0;
    if (!parseLong(text, v) || v < INT16_MIN || v > INT16_MAX) return fallback;
    return static_cast<std::int16_t>(v);
}

std::int16_t roundFontSize(double points) {
    if (!std::isfinite(points) || points < 1) return 1;
    if (points >= INT16_MAX) return INT16_MAX;
    const long whole = roundHalfEven(points);
    return static_cast<std::int16_t>(whole < 1 ? 1 : whole);
}

long roundHalfEven(double x) {
    const double lower = std::floor(x);
    const double fraction = x - lower;
    auto whole = static_cast<long>(lower);
    if (fraction > 0.5 || (fraction == 0.5 && whole % 2 != 0)) ++whole;
    return whole;
}

} // namespace app
