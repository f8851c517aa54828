// The settings values read back from the store: any text gives a value.
#include "app/settingsvalues.h"
#include "tests/fuzz/fuzztarget.h"

TESSARY_FUZZ_TARGET(settings) {
    const bool fallback = in.flag();
    const std::string_view text = in.rest();
    const bool b = settings::toBool(text, fallback);
    fuzzing::require(settings::toBool(b ? "True" : "False", !b) == b, "True/False do not read back");
    const std::int16_t v = settings::toInt16(text, 12);
    fuzzing::require(settings::toInt16(std::to_string(v), -1) == v, "a number does not read back");
}
