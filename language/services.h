// Language services over one analysed COG script: completion, hover, go to definition,
// references, rename and the outline of its symbols and handlers. Pure functions of the text,
// its analysis, the verb table and the reference, so that the editor and the language server
// give the same answers. Offsets are 0-based byte offsets into the analysed text.
#pragma once

#include "cog/keyedtree.h"
#include "language/analyse.h"

#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace language {

// The entries of the reference file (cogref.dat) by verb name: how the reference writes the
// call, with its argument names, and the verb's description.
class VerbDocs {
public:
    struct Entry {
        std::string name; // as the reference spells it: "GetSenderRef"
        std::string call; // "SetTimer(seconds)"
        std::string description;
    };
    // The entries of a reference tree (reference::readCogRef); groups are left out.
    static VerbDocs fromReference(const cog::KeyedTree& tree);
    // The entry of that name, letter case ignored; null when the reference has none.
    const Entry* find(std::string_view name) const;

private:
    std::vector<Entry> entries_;
    std::unordered_map<std::string, std::size_t, NoCaseHash, NoCaseEqual> byName_;
};

// What every service reads. The analysis must be of this text.
struct Script {
    std::string_view text;
    const Analysis& analysis;
    const VerbTable& verbs;
    const VerbDocs& docs;
};

// Completion at an offset: the name being typed before it and the names that may go there.
enum class ItemKind : std::uint8_t { Verb, Symbol, Message, Keyword, Label };
struct CompletionItem {
    std::string label; // the text to insert: a verb as the reference spells it, a symbol as declared
    ItemKind kind = ItemKind::Symbol;
    std::string detail; // a verb's return and argument types, a symbol's type
};
struct Completion {
    std::uint32_t from = 0;            // where the prefix begins (the offset itself when nothing is typed)
    std::string prefix;                // the name's letters before the offset
    std::vector<CompletionItem> items; // those that begin with the prefix (letter case ignored),
                                       // sorted by label, letter case ignored
};
// Items come only in the code section, outside comments and strings: after "call" the labels;
// elsewhere the declared symbols, the engine's message names, the verbs and the statement
// keywords. Nothing in the symbols section (the editor has its own message list there), in a
// number, a comment or a string, or outside the sections.
Completion complete(const Script& s, std::uint32_t offset);

// What resting on the offset shows: the diagnostics there first, then what the name is: a
// verb's signature and description, a symbol's declaration line, what a label handles.
struct Hover {
    Span span;        // the name (or the diagnostic) the text is about
    std::string text; // plain text, lines separated by "\n"
};
std::optional<Hover> hover(const Script& s, std::uint32_t offset);

// From a symbol's use to its declared name, from "call x" to the label "x:". A declaration or a
// label gives its own name. Nothing on an undeclared name, a verb or a keyword.
std::optional<Span> definition(const Script& s, std::uint32_t offset);

// Every use of the symbol or label named at the offset (a symbol's uses in code, a label's
// "call"s), in text order, its declaration first when asked for. Empty when no symbol or label
// is there.
std::vector<Span> references(const Script& s, std::uint32_t offset, bool withDeclaration);

// Rename. The name at the offset and whether it can be renamed: declared and undeclared symbols
// and labels can; verbs, the engine's messages and globals, keywords and other text cannot.
struct RenameTarget {
    Span span;           // the name under the offset
    std::string refusal; // why it cannot be renamed; empty when it can
    bool ok() const { return refusal.empty(); }
};
RenameTarget prepareRename(const Script& s, std::uint32_t offset);

struct Replacement {
    Span span;
    std::string text;
};
struct RenameResult {
    std::vector<Replacement> edits; // in text order, none overlapping
    std::string refusal;            // why nothing is renamed; empty when the edits are good
    bool ok() const { return refusal.empty(); }
};
// Renames the symbol or label at the offset: its declaration and every use the parser sees.
// A message symbol and the label that handles it are renamed together. Refused when the new name
// is not a name, is a keyword, or is taken: by another symbol or label, by one of the engine's
// messages (which code reads before any symbol) or globals.
RenameResult rename(const Script& s, std::uint32_t offset, std::string_view newName);

// The outline: a group per symbol type (in order of first declaration) holding its symbols,
// then one item per label.
struct OutlineItem {
    enum class Kind : std::uint8_t { TypeGroup, Symbol, Handler, Label };
    Kind kind = Kind::Symbol;
    std::string name;
    std::string detail; // a symbol's declaration line, what a label handles
    Type type = Type::Any;
    Span range;     // all of it: a declaration line, a handler up to the next label
    Span selection; // its name
    std::vector<OutlineItem> children;
};
std::vector<OutlineItem> outline(const Script& s);

} // namespace language
