#include "cli/commands.h"
#include "cli/json.h"
#include "cli/textpos.h"
#include "cog/syntaxcheck.h"

#include <charconv>
#include <climits>
#include <iostream>

namespace cli {

namespace {

const char* const kCheckHelp =
    "Usage: tessary-cli check [--json] [--caret N] FILE...\n"
    "\n"
    "Runs the editor's syntax check on each COG file: every opening brace \"{\" that is never\n"
    "closed (\"{ not matched\"), then the section lines: \"no symbols section\", \"no end for\n"
    "symbols section\", \"no code section\", \"no end for code section\". Section lines count only\n"
    "at the very start of a line and never on the first line; case does not matter.\n"
    "\n"
    "Each finding carries a caret index (0-based byte offset): the brace's own for a brace, N\n"
    "for a section finding, N being the caret given with --caret (default 0).\n"
    "\n"
    "Plain output: one finding a line, FILE:LINE:COLUMN: TEXT, with the 1-based line and byte\n"
    "column of the finding's caret index.\n"
    "\n"
    "--json: one JSON object per file, one line each:\n"
    "  {\"file\": F, \"findings\": [{\"text\": T, \"caret\": N}, ...]}\n"
    "Bytes 0x80-0xFF are written as the characters U+0080-U+00FF; CR, LF and tab as \\r, \\n, \\t.\n"
    "\n"
    "Exit status: 0 no findings in any file; 1 a finding; 2 a usage error or a file that cannot\n"
    "be read (named on stderr; the other files are still checked).\n";

const char* const kCheckUsage = "Usage: tessary-cli check [--json] [--caret N] FILE...  (--help for more)\n";

bool parseCaret(const std::string& s, long& caret) {
    long value = 0;
    const auto [end, ec] = std::from_chars(s.data(), s.data() + s.size(), value);
    if (ec != std::errc() || end != s.data() + s.size() || value < 0 || value > INT_MAX) return false;
    caret = value;
    return true;
}

} // namespace

int runCheck(const Args& args) {
    long caret = 0;
    const OptionHandler caretOption = [&caret](const Args& all, std::size_t& i, std::string& error) {
        const std::string& a = all[i];
        if (a != "--caret" && !a.starts_with("--caret=")) return false;
        std::string value;
        if (a == "--caret") {
            if (i + 1 == all.size()) {
                error = "--caret needs a number";
                return true;
            }
            value = all[++i];
        } else {
            value = a.substr(8);
        }
        if (!parseCaret(value, caret)) error = "--caret needs a caret index (0 or more), not '" + value + "'";
        return true;
    };
    FileArgs parsed;
    if (const auto status = parseFileArgs(args, "check", kCheckHelp, kCheckUsage, parsed, caretOption))
        return *status;
    return forEachFile(parsed.files, [&](const std::string& file, const std::string& text) {
        const auto findings = cog::checkCog(text, caret);
        if (parsed.json) {
            Json list = Json::array();
            for (const auto& f : findings) list.push_back({{"text", jsonText(f.text)}, {"caret", f.caret}});
            std::cout << writeJson({{"file", jsonText(file)}, {"findings", list}}) << "\n";
        } else {
            for (const auto& f : findings)
                std::cout << location(file, text, f.caret) << ": " << f.text << "\n";
        }
        return findings.empty();
    });
}

} // namespace cli
