#include "language/verbs.h"

#include "language/names.h"
#include "language/text.h"

namespace language {

namespace {

std::string_view trim(std::string_view s) {
    while (!s.empty() && (s.front() == ' ' || s.front() == '\t')) s.remove_prefix(1);
    while (!s.empty() && (s.back() == ' ' || s.back() == '\t' || s.back() == '\r')) s.remove_suffix(1);
    return s;
}

// The next word of s (up to a blank), removed from s.
std::string_view word(std::string_view& s) {
    s = trim(s);
    std::size_t n = 0;
    while (n < s.size() && s[n] != ' ' && s[n] != '\t') ++n;
    const std::string_view w = s.substr(0, n);
    s.remove_prefix(n);
    return w;
}

// Parses "RETURN NAME(TYPES) [deprecated]" into verb; the reason it cannot, or empty.
std::string parseVerb(std::string_view line, Verb& verb) {
    const std::string_view returns = word(line);
    const auto returnType = verbType(returns);
    if (!returnType) return "unknown return type " + quote(returns);
    verb.returns = *returnType;
    line = trim(line);
    const std::size_t open = line.find('(');
    const std::size_t close = line.find(')');
    if (open == std::string_view::npos || close == std::string_view::npos || close < open)
        return "expected NAME(ARGUMENTS)";
    const std::string_view name = trim(line.substr(0, open));
    if (!isName(name)) return quote(name) + " is not a verb name";
    verb.name = std::string(name);
    std::string_view args = trim(line.substr(open + 1, close - open - 1));
    while (!args.empty()) {
        const std::size_t comma = args.find(',');
        const std::string_view arg = trim(args.substr(0, comma));
        const auto type = verbType(arg);
        if (!type || *type == Type::Void) return "unknown argument type " + quote(arg);
        verb.parameters.push_back(*type);
        if (comma == std::string_view::npos) break;
        args.remove_prefix(comma + 1);
        if (trim(args).empty()) return "an argument type is missing after ','";
    }
    std::string_view rest = line.substr(close + 1);
    const std::string_view flag = word(rest);
    if (flag == "deprecated")
        verb.deprecated = true;
    else if (!flag.empty())
        return "unexpected '" + std::string(flag) + "' after the arguments";
    if (!trim(rest).empty()) return "unexpected text after 'deprecated'";
    return {};
}

} // namespace

VerbTable VerbTable::read(std::string_view bytes, std::vector<VerbTableWarning>* warnings) {
    VerbTable table;
    std::size_t lineNumber = 0;
    auto warn = [&](std::string reason) {
        if (warnings) warnings->push_back({lineNumber, std::move(reason)});
    };
    while (!bytes.empty()) {
        ++lineNumber;
        const std::size_t lf = bytes.find('\n');
        std::string_view line = trim(bytes.substr(0, lf));
        bytes.remove_prefix(lf == std::string_view::npos ? bytes.size() : lf + 1);
        if (line.empty() || line.front() == '#') continue;
        if (line.starts_with("alias ")) {
            line.remove_prefix(6);
            const std::string_view alias = word(line);
            const std::string_view target = word(line);
            const auto verb = table.byName_.find(target);
            if (!isName(alias) || !trim(line).empty())
                warn("expected 'alias NAME VERB'");
            else if (verb == table.byName_.end())
                warn("alias of an unknown verb " + quote(target));
            else if (!table.byName_.emplace(std::string(alias), verb->second).second)
                warn(quote(alias) + " is listed twice");
            continue;
        }
        Verb verb;
        if (std::string reason = parseVerb(line, verb); !reason.empty()) {
            warn(std::move(reason));
            continue;
        }
        if (!table.byName_.emplace(verb.name, table.verbs_.size()).second) {
            warn(quote(verb.name) + " is listed twice");
            continue;
        }
        table.verbs_.push_back(std::move(verb));
    }
    return table;
}

const Verb* VerbTable::find(std::string_view name) const {
    const auto it = byName_.find(name);
    return it == byName_.end() ? nullptr : &verbs_[it->second];
}

} // namespace language
