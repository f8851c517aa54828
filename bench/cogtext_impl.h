// Definitions of bench/cogtext.h; include that header instead.
#pragma once

#include "bench/cogtext.h"

#include <algorithm>

namespace cogtext {

namespace detail {

inline const std::vector<std::string>& messageNames() {
    static const std::vector<std::string> v{
        "activated", "startup", "timer",   "blocked", "entered",   "exited", "crossed", "damaged",
        "arrived",   "killed",  "pulse",   "touched", "created",   "user0",  "user1",   "trigger",
        "respawn",   "fire",    "removed", "skill",   "newplayer", "splash", "join",    "leave"};
    return v;
}

inline const std::vector<std::string>& verbs() {
    static const std::vector<std::string> v{"SetThingPos(player, pos)",
                                            "Sleep(0.5)",
                                            "SetPulse(0.1)",
                                            "PlaySoundThing(beep, player, 1.0, -1, -1, 0)",
                                            "MoveToFrame(door, 1, speed)",
                                            "SendMessage(other, user0)",
                                            "SetWallCel(button, 1)",
                                            "DamageThing(victim, 10.0, 0x1, player)",
                                            "Print(\"Door locked\")",
                                            "SetTimerEx(2.0, 1, 0, 0)",
                                            "ChangeInv(player, 41, 1)",
                                            "pos = VectorAdd(GetThingPos(door), offset)",
                                            "count = count + 1",
                                            "SetSectorAdjoins(room, 1)",
                                            "CreateThing(spark, ghost)"};
    return v;
}

inline const std::vector<std::string>& phrases() {
    static const std::vector<std::string> v{"open the door when the player arrives",
                                            "wait until the elevator stops",
                                            "only the host runs this",
                                            "reset the switch {for the next use}",
                                            "count the kills: the third one wins",
                                            "see the level notes; do not remove",
                                            "sound first, then the spark",
                                            "a brace in a comment } counts too",
                                            "TODO check the timer id"};
    return v;
}

// Concatenation by appending (GCC 12 warns falsely about "literal" + std::string chains).
template <class... Parts> std::string cat(const Parts&... parts) {
    std::string s;
    (s.append(parts), ...);
    return s;
}

inline std::string number(Rng& rng) {
    return std::to_string(rng.below(1000));
}

// A default value fitting the keyword.
inline std::string defaultFor(const std::string& keyword, Rng& rng) {
    if (keyword == "flex") return cat(std::to_string(rng.below(100)), ".", std::to_string(rng.below(10)));
    if (keyword == "int") return number(rng);
    if (keyword == "vector") return cat("(", number(rng), "/", number(rng), "/", number(rng), ")");
    if (keyword == "sound") return cat("beep", number(rng), ".wav");
    if (keyword == "template") return cat("+spark", number(rng));
    if (keyword == "material") return cat("wall", number(rng), ".mat");
    if (keyword == "model") return cat("crate", number(rng), ".3do");
    if (keyword == "keyframe") return cat("open", number(rng), ".key");
    if (keyword == "cog") return cat("helper", number(rng), ".cog");
    return number(rng);
}

inline const std::vector<std::string>& typeKeywords() {
    static const std::vector<std::string> v{"ai",       "cog",      "flex",  "int",    "keyframe",
                                            "material", "message",  "model", "sector", "sound",
                                            "surface",  "template", "thing", "vector"};
    return v;
}

// One declaration line, CR LF included; `serial` makes the name unique.
inline std::string declaration(const std::string& keyword, const std::string& name, Rng& rng) {
    std::string line = keyword;
    line += rng.chance(50) ? std::string(rng.chance(50) ? 2 : 1, '\t') : std::string(5, ' ');
    line += name;
    if (keyword != "message" && rng.chance(40)) line += cat("=", defaultFor(keyword, rng));
    if (keyword == "message") {
        line += "\r\n";
        return line;
    }
    line += rng.chance(50) ? "\t\t" : std::string(15, ' ');
    if (rng.chance(30)) line += "local";
    if (rng.chance(40)) line += cat("     linkid=", number(rng));
    if (rng.chance(20)) line += cat(" desc=", name, "_setting");
    if (rng.chance(10)) line += cat(" mask=0x", std::to_string(rng.below(90) + 10));
    line += "\r\n";
    return line;
}

inline void handler(std::string& out, const std::string& label, std::size_t serial, Rng& rng,
                    const std::vector<std::string>& symbols) {
    out += cat(label, ":\r\n\t// ", rng.pick(phrases()), " (", std::to_string(serial), ")\r\n");
    const std::size_t blocks = 1 + rng.below(4);
    for (std::size_t b = 0; b < blocks; ++b) {
        const std::string& sym = symbols.empty() ? label : rng.pick(symbols);
        out += cat("\tif (", sym, " == ", number(rng), ")\r\n\t{\r\n");
        const std::size_t statements = 1 + rng.below(4);
        for (std::size_t s = 0; s < statements; ++s) {
            out += cat("\t\t", rng.pick(verbs()), ";\r\n");
            if (rng.chance(25)) {
                out += cat("\t\tif (GetSenderRef() == ", sym, ") { ", rng.pick(verbs()), "; }\r\n");
            }
            if (rng.chance(20)) {
                out += cat("\t\t// ", rng.pick(phrases()), " (", std::to_string(serial), ".",
                           std::to_string(b), ".", std::to_string(s), ")\r\n");
            }
        }
        out += "\t}\r\n";
        if (rng.chance(30)) out += cat("\telse\r\n\t{\r\n\t\t", sym, " = 0;\r\n\t}\r\n");
    }
    out += "\treturn;\r\n\r\n";
}

} // namespace detail

inline std::string generate(std::uint64_t seed, const Shape& shape) {
    Rng rng(seed);
    const std::size_t target = std::max<std::size_t>(shape.targetBytes, 256);
    const std::size_t symbolsBudget = target * shape.symbolsShare / 100;

    // Code first: it fixes the messages that must be declared.
    std::string code;
    std::vector<std::string> labels;
    std::vector<std::string> someSymbols{"player", "door", "speed", "count"};
    const std::size_t codeBudget = target - std::min(target, symbolsBudget + 200);
    std::size_t serial = 0;
    do {
        ++serial;
        labels.push_back(detail::cat(rng.pick(detail::messageNames()), std::to_string(serial)));
        detail::handler(code, labels.back(), serial, rng, someSymbols);
    } while (code.size() < codeBudget);

    std::string symbols;
    std::size_t nextLabel = 0;
    std::size_t counter = 0;
    while (symbols.size() < symbolsBudget || nextLabel < labels.size()) {
        // Messages are declared in step with the others, so every type runs through the section.
        const bool message = nextLabel < labels.size() && (symbols.size() >= symbolsBudget || rng.chance(20));
        if (message) {
            symbols += detail::declaration("message", labels[nextLabel++], rng);
        } else {
            const std::string& keyword = rng.pick(detail::typeKeywords());
            if (keyword == "message") continue;
            symbols += detail::declaration(
                keyword, detail::cat(keyword.substr(0, 2), "v", std::to_string(++counter)), rng);
        }
        if (rng.chance(2)) symbols += detail::cat("# settings group ", std::to_string(counter), "\r\n");
    }

    std::string text;
    text.reserve(symbols.size() + code.size() + 256);
    text += detail::cat("# Generated level script ", std::to_string(seed), "\r\n");
    text += "# Handles doors, switches and timers.\r\n\r\nflags=0x240\r\n\r\n";
    text += "symbols\r\n\r\n";
    text += symbols;
    text += "\r\nend\r\n\r\n# ========================================\r\n\r\ncode\r\n\r\n";
    text += code;
    text += "end\r\n";
    return text;
}

inline std::string generateSmall(std::uint64_t seed) {
    Rng rng(seed ^ 0x5EEDull);
    Shape s;
    s.targetBytes = 256 + rng.below(2500);
    s.symbolsShare = static_cast<unsigned>(10 + rng.below(50));
    return generate(seed, s);
}

inline const std::vector<std::string>& keywordPieces() {
    static const std::vector<std::string> v{
        "\r\nsymbols", "\r\nend",  "\r\ncode", "\nEND",   "\nSymbols", "\ncodes", "\nendless",
        "{",           "}",        "{}",       "}{",      "return;",   "//",      ":",
        "\r",          "\n",       "\r\n",     "\t",      " ",         "=",       "<%",
        "%>",          "message ", "int ",     "thing\t", "\xC4",      "\xE4",    std::string(1, '\0')};
    return v;
}

inline std::string mutate(std::string_view in, Rng& rng) {
    std::string t(in);
    auto lineStart = [&](std::size_t at) {
        const auto lf = t.rfind('\n', at == 0 ? 0 : at - 1);
        return lf == std::string::npos || at == 0 ? std::size_t{0} : lf + 1;
    };
    auto lineEnd = [&](std::size_t at) {
        const auto lf = t.find('\n', at);
        return lf == std::string::npos ? t.size() : lf + 1;
    };
    auto somewhere = [&] { return rng.below(t.size() + 1); };
    auto nth = [&](char c) -> std::size_t { // a random occurrence of c, or npos
        std::vector<std::size_t> at;
        for (std::size_t i = 0; i < t.size(); ++i)
            if (t[i] == c) at.push_back(i);
        return at.empty() ? std::string::npos : at[rng.below(at.size())];
    };
    switch (rng.below(16)) {
    case 0: { // delete a line
        const std::size_t a = lineStart(somewhere());
        t.erase(a, lineEnd(a) - a);
        break;
    }
    case 1: { // duplicate a line, next to itself or elsewhere
        const std::size_t a = lineStart(somewhere());
        const std::string line = t.substr(a, lineEnd(a) - a);
        t.insert(rng.chance(50) ? a : lineStart(somewhere()), line);
        break;
    }
    case 2:
        t.insert(somewhere(), 1, '{');
        break;
    case 3:
        t.insert(somewhere(), 1, '}');
        break;
    case 4: {
        const std::size_t b = nth(rng.chance(50) ? '{' : '}');
        if (b != std::string::npos) t.erase(b, 1);
        break;
    }
    case 5: {
        const std::size_t b = nth(rng.chance(50) ? '{' : '}');
        if (b != std::string::npos) t[b] = t[b] == '{' ? '}' : '{';
        break;
    }
    case 6: { // break, indent or recase a section line
        static const std::vector<std::string> words{"\nsymbols", "\nend", "\ncode"};
        const std::string& w = rng.pick(words);
        auto at = t.find(w);
        if (rng.chance(50) && at != std::string::npos) at = t.find(w, at + 1);
        if (at == std::string::npos) break;
        switch (rng.below(4)) {
        case 0:
            t.insert(at + 1, rng.chance(50) ? " " : "\t");
            break;
        case 1:
            t[at + 1] = static_cast<char>(t[at + 1] - 32);
            break;
        case 2:
            t.erase(at, 1);
            break;
        default:
            t.insert(at + w.size(), rng.chance(50) ? "less" : "s");
            break;
        }
        break;
    }
    case 7: { // a section line somewhere else
        static const std::vector<std::string> lines{"symbols\r\n", "end\r\n", "code\r\n", "END\r\n",
                                                    "Symbols"};
        t.insert(lineStart(somewhere()), rng.pick(lines));
        break;
    }
    case 8: { // a lone CR or a lone LF
        const std::size_t lf = nth('\n');
        if (lf == std::string::npos) break;
        if (rng.chance(50))
            t.erase(lf, 1);
        else if (lf > 0 && t[lf - 1] == '\r')
            t.erase(lf - 1, 1);
        break;
    }
    case 9:
        t.resize(somewhere());
        break;
    case 10: {
        const std::size_t a = somewhere();
        for (std::size_t i = 1 + rng.below(6); i > 0; --i) t.insert(a, rng.pick(keywordPieces()));
        break;
    }
    case 11:
        if (rng.chance(10))
            t.clear();
        else
            t.erase(somewhere() / 2, rng.below(64));
        break;
    case 12: { // remove or add a "return;"
        const auto r = t.find("return;", rng.below(t.size() + 1));
        if (r != std::string::npos && rng.chance(60))
            t.erase(r, 7);
        else
            t.insert(somewhere(), "return;");
        break;
    }
    case 13:
        t.insert(lineStart(somewhere()),
                 detail::cat(rng.pick(detail::typeKeywords()), rng.chance(50) ? " x\r\n" : ""));
        break;
    case 14: { // a comment copied into another place: duplicate node keys
        const auto c = t.find("//", rng.below(t.size() + 1));
        if (c == std::string::npos) break;
        const std::string comment = t.substr(c, lineEnd(c) - c);
        t.insert(lineStart(somewhere()), detail::cat("\t", comment));
        break;
    }
    default: { // single byte changes, including NUL and Latin-1 letters
        static const std::string bytes{'\0', '\xC4', '\xE4', ':', ';', '=', '/',
                                       '\r', '\n',   '\t',   ' ', '{', '}'};
        for (std::size_t i = 1 + rng.below(3); i > 0 && !t.empty(); --i)
            t[rng.below(t.size())] = bytes[rng.below(bytes.size())];
        break;
    }
    }
    return t;
}

inline std::string mutateMany(std::string_view text, Rng& rng, int maxSteps) {
    std::string t(text);
    for (std::size_t i = 1 + rng.below(static_cast<std::size_t>(std::max(1, maxSteps))); i > 0; --i)
        t = mutate(t, rng);
    return t;
}

} // namespace cogtext
