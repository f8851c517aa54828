#include "language/services.h"

#include "language/lexer.h"
#include "language/names.h"
#include "reference/cogref.h"

#include <algorithm>

namespace language {

VerbDocs VerbDocs::fromReference(const cog::KeyedTree& tree) {
    VerbDocs docs;
    for (const auto& node : tree.nodes()) {
        if (!node.hasParent || reference::isGroupTag(node.tag)) continue;
        const auto parts = reference::splitTag(node.tag);
        if (docs.byName_.emplace(node.text, docs.entries_.size()).second)
            docs.entries_.push_back({node.text, std::string(parts.callText), std::string(parts.description)});
    }
    return docs;
}

const VerbDocs::Entry* VerbDocs::find(std::string_view name) const {
    const auto it = byName_.find(name);
    return it == byName_.end() ? nullptr : &entries_[it->second];
}

namespace {

std::string_view textOf(std::string_view text, const Span& s) {
    return text.substr(s.begin.offset, s.end.offset - s.begin.offset);
}

bool startsWithNoCase(std::string_view s, std::string_view prefix) {
    return s.size() >= prefix.size() && equalsNoCase(s.substr(0, prefix.size()), prefix);
}

std::string lower(std::string_view s) {
    std::string out(s);
    for (char& c : out) c = lowerAscii(c);
    return out;
}

std::string lineList(const std::vector<Span>& spans) {
    std::string out = spans.size() == 1 ? "line " : "lines ";
    for (std::size_t i = 0; i < spans.size(); ++i)
        out += (i ? ", " : "") + std::to_string(spans[i].begin.line);
    return out;
}

// The line and column of an offset, counted as the lexer counts them.
Position positionAt(std::string_view text, std::uint32_t offset) {
    Position p{0, 1, 1};
    std::uint32_t lineStart = 0;
    for (std::uint32_t i = 0; i < offset && i < text.size(); ++i)
        if (text[i] == '\n' || (text[i] == '\r' && (i + 1 == text.size() || text[i + 1] != '\n'))) {
            ++p.line;
            lineStart = i + 1;
        }
    p.offset = offset;
    p.column = offset - lineStart + 1;
    return p;
}

NodeId codeSection(const SyntaxTree& tree) {
    if (tree.root == kNoNode) return kNoNode;
    for (NodeId c = tree[tree.root].firstChild; c != kNoNode; c = tree[c].nextSibling)
        if (tree[c].kind == NodeKind::Code) return c;
    return kNoNode;
}

// What names the text at an offset.
struct NameAt {
    enum class Kind { None, Symbol, Label, Verb, Message, Global, Keyword } kind = Kind::None;
    Span span;
    std::uint32_t index = kNoRef; // of the symbol or label
};

// The name whose span holds the byte at the offset or, failing that, ends at it (the caret just
// after a name).
NameAt nameAt(const Script& s, std::uint32_t offset) {
    const SymbolTable& table = s.analysis.symbols;
    for (const bool atEnd : {false, true}) {
        auto hits = [&](const Span& span) {
            return atEnd ? span.end.offset == offset && span.begin.offset < offset : span.contains(offset);
        };
        for (std::uint32_t i = 0; i < table.symbols.size(); ++i) {
            const Symbol& sym = table.symbols[i];
            if (hits(sym.nameSpan)) return {NameAt::Kind::Symbol, sym.nameSpan, i};
            for (const Span& use : sym.uses)
                if (hits(use)) return {NameAt::Kind::Symbol, use, i};
        }
        for (std::uint32_t i = 0; i < table.labels.size(); ++i) {
            const Label& label = table.labels[i];
            if (hits(label.definition)) return {NameAt::Kind::Label, label.definition, i};
            for (const Span& call : label.calls)
                if (hits(call)) return {NameAt::Kind::Label, call, i};
        }
        for (const Node& n : s.analysis.tree.nodes) {
            if (n.kind == NodeKind::VerbCall && hits(n.nameSpan)) return {NameAt::Kind::Verb, n.nameSpan};
            if (n.kind == NodeKind::Name && n.ref == kNoRef && hits(n.nameSpan)) {
                const std::string_view name = textOf(s.text, n.nameSpan);
                if (isMessageName(name)) return {NameAt::Kind::Message, n.nameSpan};
                if (isGlobalName(name)) return {NameAt::Kind::Global, n.nameSpan};
            }
        }
    }
    // A keyword: the word around the offset, when it is one.
    std::uint32_t b = std::min<std::uint32_t>(offset, static_cast<std::uint32_t>(s.text.size())), e = b;
    while (b > 0 && isIdentChar(s.text[b - 1])) --b;
    while (e < s.text.size() && isIdentChar(s.text[e])) ++e;
    if (b < e && isStatementKeyword(s.text.substr(b, e - b)) && codeSection(s.analysis.tree) != kNoNode &&
        b >= s.analysis.tree[codeSection(s.analysis.tree)].span.begin.offset) {
        return {NameAt::Kind::Keyword, {positionAt(s.text, b), positionAt(s.text, e)}};
    }
    return {};
}

// The declared message symbol a label of that name handles; kNoRef when none.
std::uint32_t handledMessage(const SymbolTable& table, std::string_view label) {
    const std::uint32_t s = table.findSymbol(label);
    return s != kNoRef && !table.symbols[s].implicit && table.symbols[s].type == Type::Message ? s : kNoRef;
}

// Where a completion is asked for: nowhere to complete, after "call", or anywhere in code.
enum class Place { Nowhere, CallTarget, Code };

Place placeAt(const Script& s, std::uint32_t at) {
    const SyntaxTree& tree = s.analysis.tree;
    const NodeId code = codeSection(tree);
    if (code == kNoNode) return Place::Nowhere;
    const Span section = tree[code].span;
    if (at < section.begin.offset + 4) return Place::Nowhere; // before the code section, or on "code"
    // A closed section ends with its "end": nothing after it.
    const std::uint32_t end = section.end.offset;
    if (end >= 3 && equalsNoCase(s.text.substr(end - 3, 3), "end") && at >= end - 3 &&
        (end == 3 || !isIdentChar(s.text[end - 4])))
        return Place::Nowhere;
    // Lex the code section up to the offset: is it in a string, a number or a comment, and what
    // word stands before it?
    const std::uint32_t base = section.begin.offset;
    Lexer lex(s.text.substr(base));
    std::uint32_t prevEnd = base;
    std::string_view prevWord;
    for (Token t = lex.next(Lexer::Mode::Code); t.kind != Tok::Eof; t = lex.next(Lexer::Mode::Code)) {
        const std::uint32_t b = base + t.span.begin.offset, e = base + t.span.end.offset;
        if (b >= at) break;
        if (e > at) return Place::Nowhere; // inside a string, a number or another token
        if (e == at && s.text[b] == '"' && (e - b < 2 || s.text[e - 1] != '"')) return Place::Nowhere;
        prevEnd = e;
        prevWord = t.kind == Tok::Identifier ? s.text.substr(b, e - b) : std::string_view();
    }
    std::string_view gap = s.text.substr(prevEnd, at - prevEnd);
    if (const auto lineEnd = gap.find_last_of("\r\n"); lineEnd != std::string_view::npos)
        gap.remove_prefix(lineEnd + 1);
    if (gap.find('#') != std::string_view::npos || gap.find("//") != std::string_view::npos)
        return Place::Nowhere;
    return equalsNoCase(prevWord, "call") ? Place::CallTarget : Place::Code;
}

std::string typeList(const Verb& v) {
    std::string out = "(";
    for (std::size_t i = 0; i < v.parameters.size(); ++i)
        out += (i ? ", " : "") + std::string(typeName(v.parameters[i]));
    return out + ")";
}

// The argument names of a reference call text "Name(a, b)".
std::vector<std::string_view> argumentNames(std::string_view call) {
    std::vector<std::string_view> names;
    const auto open = call.find('('), close = call.rfind(')');
    if (open == std::string_view::npos || close == std::string_view::npos || close < open) return names;
    std::string_view args = call.substr(open + 1, close - open - 1);
    while (args.find_first_not_of(' ') != std::string_view::npos) {
        const auto comma = args.find(',');
        std::string_view a = args.substr(0, comma);
        while (!a.empty() && a.front() == ' ') a.remove_prefix(1);
        while (!a.empty() && a.back() == ' ') a.remove_suffix(1);
        names.push_back(a);
        if (comma == std::string_view::npos) break;
        args.remove_prefix(comma + 1);
    }
    return names;
}

// "thing CreateThing(template template, thing position)": the table's types, the reference's
// spelling and argument names.
std::string signature(const Verb& v, const VerbDocs::Entry* doc) {
    const auto names = doc ? argumentNames(doc->call) : std::vector<std::string_view>();
    std::string out = std::string(typeName(v.returns)) + " " + (doc ? doc->name : v.name) + "(";
    for (std::size_t i = 0; i < v.parameters.size(); ++i) {
        if (i) out += ", ";
        out += typeName(v.parameters[i]);
        if (names.size() == v.parameters.size()) (out += ' ') += names[i];
    }
    return out + ")";
}

void addCompletions(const Script& s, Place place, Completion& c) {
    const SymbolTable& table = s.analysis.symbols;
    std::vector<std::string> seen; // lower-case labels already listed
    auto add = [&](std::string_view label, ItemKind kind, std::string detail) {
        if (!startsWithNoCase(label, c.prefix)) return;
        std::string key = lower(label);
        if (std::find(seen.begin(), seen.end(), key) != seen.end()) return;
        seen.push_back(std::move(key));
        c.items.push_back({std::string(label), kind, std::move(detail)});
    };
    if (place == Place::CallTarget) {
        for (const Label& l : table.labels)
            add(l.name, ItemKind::Label,
                handledMessage(table, l.name) != kNoRef ? "handles the message " + l.name : "label");
    } else {
        for (const Symbol& sym : table.symbols) {
            if (sym.implicit) continue;
            const std::string_view line = textOf(s.text, sym.declaration);
            add(sym.name, ItemKind::Symbol, std::string(line.substr(0, line.find_first_of(" \t"))));
        }
        for (std::string_view m : kMessageNames) add(m, ItemKind::Message, "message");
        for (const Verb& v : s.verbs.verbs()) {
            const VerbDocs::Entry* doc = s.docs.find(v.name);
            add(doc ? doc->name : v.name, ItemKind::Verb,
                typeList(v) + (v.returns == Type::Void ? "" : std::string(" -> ") + typeName(v.returns)));
        }
        for (std::string_view k : kStatementKeywords)
            if (k != "end") add(k, ItemKind::Keyword, "keyword");
    }
    std::stable_sort(c.items.begin(), c.items.end(), [](const CompletionItem& x, const CompletionItem& y) {
        return lower(x.label) < lower(y.label);
    });
}

} // namespace

Completion complete(const Script& s, std::uint32_t offset) {
    Completion c;
    offset = std::min<std::uint32_t>(offset, static_cast<std::uint32_t>(s.text.size()));
    std::uint32_t from = offset;
    while (from > 0 && isIdentChar(s.text[from - 1])) --from;
    c.from = from;
    c.prefix = std::string(s.text.substr(from, offset - from));
    if (from < offset && isDigit(s.text[from])) return c; // a number
    const Place place = placeAt(s, from);
    if (place != Place::Nowhere) addCompletions(s, place, c);
    return c;
}

std::optional<Hover> hover(const Script& s, std::uint32_t offset) {
    Hover h;
    bool found = false;
    for (const Diagnostic& d : s.analysis.diagnostics) {
        const bool here = d.span.contains(offset) ||
                          (d.span.begin.offset == d.span.end.offset && d.span.begin.offset == offset);
        if (!here) continue;
        if (!found) h.span = d.span;
        found = true;
        h.text += std::string(severityName(d.severity)) + ": " + d.text + "\n";
    }
    const NameAt at = nameAt(s, offset);
    const SymbolTable& table = s.analysis.symbols;
    const std::string_view name = textOf(s.text, at.span);
    std::string about;
    switch (at.kind) {
    case NameAt::Kind::Verb:
        if (const Verb* v = s.verbs.find(name)) {
            const VerbDocs::Entry* doc = s.docs.find(name);
            about = signature(*v, doc);
            if (v->deprecated) about += "\ndeprecated: scripts should no longer use it";
            if (doc && !doc->description.empty()) about += "\n" + doc->description;
        }
        break;
    case NameAt::Kind::Symbol: {
        const Symbol& sym = table.symbols[at.index];
        about = sym.implicit ? quote(sym.name) + " is not declared: a local variable of any type"
                             : std::string(textOf(s.text, sym.declaration));
        if (!sym.implicit && sym.type == Type::Message) {
            const std::uint32_t l = table.findLabel(sym.name);
            about += l == kNoRef ? "\nno label handles it"
                                 : "\nhandled by the label on line " +
                                       std::to_string(table.labels[l].definition.begin.line);
        }
        break;
    }
    case NameAt::Kind::Label: {
        const Label& l = table.labels[at.index];
        const bool handler = handledMessage(table, l.name) != kNoRef;
        about = "label " + l.name + ": " +
                (handler           ? "the handler of the message " + l.name
                 : l.calls.empty() ? "no declared message or call leads to it"
                                   : "called on " + lineList(l.calls));
        if (handler && !l.calls.empty()) about += "\ncalled on " + lineList(l.calls);
        break;
    }
    case NameAt::Kind::Message:
        about = std::string(name) + ": one of the engine's messages";
        break;
    case NameAt::Kind::Global:
        about = std::string(name) + ": one of the engine's global variables, shared by every script";
        break;
    case NameAt::Kind::Keyword:
    case NameAt::Kind::None:
        break;
    }
    if (!about.empty()) {
        if (!found) h.span = at.span;
        h.text += (found ? "\n" : "") + about + "\n";
        found = true;
    }
    if (!found) return std::nullopt;
    h.text.pop_back(); // the last "\n"
    return h;
}

std::optional<Span> definition(const Script& s, std::uint32_t offset) {
    const NameAt at = nameAt(s, offset);
    const SymbolTable& table = s.analysis.symbols;
    if (at.kind == NameAt::Kind::Symbol && !table.symbols[at.index].implicit)
        return table.symbols[at.index].nameSpan;
    if (at.kind == NameAt::Kind::Label) return table.labels[at.index].definition;
    return std::nullopt;
}

namespace {

void sortSpans(std::vector<Span>& spans) {
    std::sort(spans.begin(), spans.end(),
              [](const Span& a, const Span& b) { return a.begin.offset < b.begin.offset; });
    spans.erase(std::unique(spans.begin(), spans.end(),
                            [](const Span& a, const Span& b) { return a.begin.offset == b.begin.offset; }),
                spans.end());
}

// The places that name a symbol or a label, its declaration or definition included.
std::vector<Span> spansOf(const SymbolTable& table, NameAt::Kind kind, std::uint32_t index,
                          bool declaration) {
    std::vector<Span> spans;
    if (kind == NameAt::Kind::Symbol) {
        const Symbol& sym = table.symbols[index];
        if (declaration && !sym.implicit) spans.push_back(sym.nameSpan);
        spans.insert(spans.end(), sym.uses.begin(), sym.uses.end());
    } else if (kind == NameAt::Kind::Label) {
        const Label& l = table.labels[index];
        if (declaration) spans.push_back(l.definition);
        spans.insert(spans.end(), l.calls.begin(), l.calls.end());
    }
    sortSpans(spans);
    return spans;
}

} // namespace

std::vector<Span> references(const Script& s, std::uint32_t offset, bool withDeclaration) {
    const NameAt at = nameAt(s, offset);
    return spansOf(s.analysis.symbols, at.kind, at.index, withDeclaration);
}

RenameTarget prepareRename(const Script& s, std::uint32_t offset) {
    const NameAt at = nameAt(s, offset);
    const std::string name = quote(textOf(s.text, at.span));
    switch (at.kind) {
    case NameAt::Kind::Symbol:
    case NameAt::Kind::Label:
        return {at.span, {}};
    case NameAt::Kind::Verb:
        return {at.span, name + " is a verb of the engine: its name cannot be changed"};
    case NameAt::Kind::Message:
        return {at.span, name + " is one of the engine's messages: its name cannot be changed"};
    case NameAt::Kind::Global:
        return {at.span, name + " is one of the engine's global variables: its name cannot be changed"};
    case NameAt::Kind::Keyword:
        return {at.span, name + " is a keyword of the language"};
    case NameAt::Kind::None:
        break;
    }
    return {at.span, "there is no symbol or label here to rename"};
}

RenameResult rename(const Script& s, std::uint32_t offset, std::string_view newName) {
    const RenameTarget target = prepareRename(s, offset);
    if (!target.ok()) return {{}, target.refusal};
    const std::string shown = quote(newName);
    if (!isName(newName))
        return {{}, shown + " is not a name: a name is a letter or '_' followed by letters, digits and '_'"};
    if (isStatementKeyword(newName)) return {{}, shown + " is a keyword of the language"};

    const SymbolTable& table = s.analysis.symbols;
    const NameAt at = nameAt(s, offset);
    // The symbol and the label renamed: a message symbol and its handler go together.
    std::uint32_t symbol = kNoRef, label = kNoRef;
    if (at.kind == NameAt::Kind::Symbol) {
        symbol = at.index;
        if (!table.symbols[symbol].implicit && table.symbols[symbol].type == Type::Message)
            label = table.findLabel(table.symbols[symbol].name);
    } else {
        label = at.index;
        symbol = handledMessage(table, table.labels[label].name);
    }
    if (symbol != kNoRef) {
        const Symbol& own = table.symbols[symbol];
        for (std::uint32_t i = 0; i < table.symbols.size(); ++i) {
            const Symbol& other = table.symbols[i];
            if (i == symbol || !equalsNoCase(other.name, newName)) continue;
            return {{},
                    other.implicit ? shown + " is already a name used in the code (line " +
                                         std::to_string(other.nameSpan.begin.line) + ")"
                                   : shown + " is already the symbol declared on line " +
                                         std::to_string(other.nameSpan.begin.line)};
        }
        const bool message = !own.implicit && own.type == Type::Message;
        if (!message && isMessageName(newName))
            return {{}, shown + " is one of the engine's messages, which the code reads before any symbol"};
        if (isGlobalName(newName)) return {{}, shown + " is one of the engine's global variables"};
    }
    if (label != kNoRef) {
        for (std::uint32_t i = 0; i < table.labels.size(); ++i)
            if (i != label && equalsNoCase(table.labels[i].name, newName))
                return {{},
                        shown + " is already the label on line " +
                            std::to_string(table.labels[i].definition.begin.line)};
    }
    std::vector<Span> spans;
    if (symbol != kNoRef) spans = spansOf(table, NameAt::Kind::Symbol, symbol, true);
    if (label != kNoRef) {
        const auto more = spansOf(table, NameAt::Kind::Label, label, true);
        spans.insert(spans.end(), more.begin(), more.end());
    }
    sortSpans(spans);
    RenameResult result;
    for (const Span& span : spans)
        if (textOf(s.text, span) != newName) result.edits.push_back({span, std::string(newName)});
    return result;
}

std::vector<OutlineItem> outline(const Script& s) {
    const SymbolTable& table = s.analysis.symbols;
    std::vector<OutlineItem> items;
    for (const Symbol& sym : table.symbols) {
        if (sym.implicit) continue;
        const std::string_view line = textOf(s.text, sym.declaration);
        const std::string type = lower(line.substr(0, line.find_first_of(" \t")));
        auto group =
            std::find_if(items.begin(), items.end(), [&](const OutlineItem& g) { return g.name == type; });
        if (group == items.end()) {
            items.push_back(
                {OutlineItem::Kind::TypeGroup, type, {}, sym.type, sym.declaration, sym.nameSpan, {}});
            group = items.end() - 1;
        }
        group->range.end = sym.declaration.end;
        group->children.push_back({OutlineItem::Kind::Symbol,
                                   sym.name,
                                   std::string(line),
                                   sym.type,
                                   sym.declaration,
                                   sym.nameSpan,
                                   {}});
    }
    const SyntaxTree& tree = s.analysis.tree;
    const NodeId code = codeSection(tree);
    std::vector<const Label*> labels;
    for (const Label& l : table.labels) labels.push_back(&l);
    std::sort(labels.begin(), labels.end(), [](const Label* a, const Label* b) {
        return a->definition.begin.offset < b->definition.begin.offset;
    });
    for (std::size_t i = 0; i < labels.size(); ++i) {
        const Label& l = *labels[i];
        const std::uint32_t next =
            i + 1 < labels.size() ? labels[i + 1]->definition.begin.offset : 0xFFFFFFFF;
        OutlineItem item;
        const bool handler = handledMessage(table, l.name) != kNoRef;
        item.kind = handler ? OutlineItem::Kind::Handler : OutlineItem::Kind::Label;
        item.name = l.name;
        item.detail = handler           ? "handles the message " + l.name
                      : l.calls.empty() ? "label"
                                        : "called on " + lineList(l.calls);
        item.range = item.selection = l.definition;
        for (NodeId st = code == kNoNode ? kNoNode : tree[code].firstChild; st != kNoNode;
             st = tree[st].nextSibling) {
            const std::uint32_t begin = tree[st].span.begin.offset;
            if (begin < l.definition.begin.offset || begin >= next) continue;
            NodeId last = st; // the statement its labels stand before
            while (tree[last].kind == NodeKind::Label && tree[last].firstChild != kNoNode)
                last = tree[last].firstChild;
            if (tree[last].span.end.offset > item.range.end.offset) item.range.end = tree[last].span.end;
        }
        items.push_back(std::move(item));
    }
    return items;
}

} // namespace language
