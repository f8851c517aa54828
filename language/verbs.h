// The engine's verbs as the checker knows them: name, return type and argument types, read once
// from the verb table file (data/verbs.dat).
//
// The file: lines starting with "#" and blank lines are skipped; a verb line reads
// "RETURN NAME(TYPE, TYPE, ...)" optionally followed by the word "deprecated"; an alias line reads
// "alias NAME VERB" and gives a verb listed above a second name. Names ignore letter case.
#pragma once

#include "language/text.h"
#include "language/types.h"

#include <cstddef>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace language {

struct Verb {
    std::string name; // as written in the table
    Type returns = Type::Void;
    std::vector<Type> parameters;
    bool deprecated = false;
};

struct VerbTableWarning {
    std::size_t line = 0; // 1-based
    std::string reason;
};

class VerbTable {
public:
    // Reads the table; a malformed line is skipped with a warning and reading goes on.
    static VerbTable read(std::string_view bytes, std::vector<VerbTableWarning>* warnings = nullptr);

    // The verb of that name or alias, letter case ignored; null when there is none.
    const Verb* find(std::string_view name) const;
    std::size_t size() const { return verbs_.size(); }
    // Every verb in the table's order (aliases not repeated).
    const std::vector<Verb>& verbs() const { return verbs_; }

private:
    std::vector<Verb> verbs_;
    std::unordered_map<std::string, std::size_t, NoCaseHash, NoCaseEqual> byName_; // names and aliases
};

} // namespace language
