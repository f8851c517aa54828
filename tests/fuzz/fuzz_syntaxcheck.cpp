// The syntax check on any text: findings in order, braces at braces, and the all-braces rule
// agreeing with the one-brace rule.
#include "cog/syntaxcheck.h"
#include "tests/fuzz/fuzztarget.h"

TESSARY_FUZZ_TARGET(syntaxcheck) {
    const long caret = in.number(70000);
    const std::string_view text = in.rest();
    const std::vector<cog::Finding> findings = cog::checkCog(text, caret);
    long lastBrace = -1;
    for (const cog::Finding& f : findings) {
        if (f.text != "{ not matched") {
            fuzzing::require(f.caret == caret, "a section finding away from the caret");
            continue;
        }
        fuzzing::require(f.caret > lastBrace && text[static_cast<std::size_t>(f.caret)] == '{',
                         "a brace finding out of order or not at a brace");
        lastBrace = f.caret;
    }
    if (text.size() <= 2048)
        for (const cog::BraceMatch& b : cog::matchOpeningBraces(text))
            fuzzing::require(cog::matchChar(text, b.position) == b.closed, "the two brace rules disagree");
}
