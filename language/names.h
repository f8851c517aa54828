// The names the COG engine gives a script before it declares any: its message names (the
// language's only named constants), its global variables and the statement keywords.
#pragma once

#include "language/text.h"

#include <array>
#include <string_view>

namespace language {

inline constexpr std::array<std::string_view, 41> kMessageNames{
    "activated",   "activate", "removed", "startup",  "timer",      "blocked",    "entered",
    "exited",      "crossed",  "sighted", "damaged",  "arrived",    "killed",     "pulse",
    "touched",     "created",  "loading", "selected", "deselected", "autoselect", "changed",
    "deactivated", "shutdown", "respawn", "ai_event", "skill",      "taken",      "user0",
    "user1",       "user2",    "user3",   "user4",    "user5",      "user6",      "user7",
    "new_player",  "fire",     "join",    "leave",    "splash",     "trigger"};

// The words that begin or continue a statement where they stand first ("else" after an if's
// body); they are not reserved, but a name spelt so cannot be used at a statement's start.
inline constexpr std::array<std::string_view, 9> kStatementKeywords{"if",    "else",   "while", "do", "for",
                                                                    "break", "return", "call",  "end"};

inline bool isMessageName(std::string_view name) {
    for (std::string_view m : kMessageNames)
        if (equalsNoCase(name, m)) return true;
    return false;
}

// global0 to global15: the engine's variables shared by every script.
inline bool isGlobalName(std::string_view name) {
    if (name.size() < 7 || name.size() > 8 || !equalsNoCase(name.substr(0, 6), "global")) return false;
    const std::string_view d = name.substr(6);
    if (d.size() == 1) return isDigit(d[0]);
    return d[0] == '1' && d[1] >= '0' && d[1] <= '5';
}

inline bool isStatementKeyword(std::string_view name) {
    for (std::string_view k : kStatementKeywords)
        if (equalsNoCase(name, k)) return true;
    return false;
}

// A name as the lexer reads one: a letter or "_", then letters, digits and "_".
inline bool isName(std::string_view s) {
    if (s.empty() || !isIdentStart(s.front())) return false;
    for (char c : s)
        if (!isIdentChar(c)) return false;
    return true;
}

} // namespace language
