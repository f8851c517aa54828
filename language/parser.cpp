#include "language/parser.h"

#include "language/lexer.h"
#include "language/names.h"
#include "language/text.h"

#include <array>
#include <string>

namespace language {

namespace {

constexpr int kMaxNesting = 200; // deeper statements or expressions are refused, not recursed into

enum class ValueKind { Integer, Float, Word };

// What a raw value after "=" in a declaration is.
ValueKind classifyValue(std::string_view v) {
    if (!v.empty() && (v.front() == '+' || v.front() == '-')) v.remove_prefix(1);
    auto allOf = [](std::string_view s, bool (*pred)(char)) {
        for (char c : s)
            if (!pred(c)) return false;
        return true;
    };
    if (v.size() > 2 && v[0] == '0' && (v[1] == 'x' || v[1] == 'X'))
        return allOf(v.substr(2), isHexDigit) ? ValueKind::Integer : ValueKind::Word;
    std::size_t i = 0, digits = 0;
    for (; i < v.size() && isDigit(v[i]); ++i) ++digits;
    bool isFloat = false;
    if (i < v.size() && v[i] == '.') {
        isFloat = true;
        for (++i; i < v.size() && isDigit(v[i]); ++i) ++digits;
    }
    if (digits == 0) return ValueKind::Word;
    if (i < v.size() && (v[i] == 'e' || v[i] == 'E')) {
        ++i;
        if (i < v.size() && (v[i] == '+' || v[i] == '-')) ++i;
        const std::size_t exponent = i;
        while (i < v.size() && isDigit(v[i])) ++i;
        if (i == exponent) return ValueKind::Word;
        isFloat = true;
    }
    if (i != v.size()) return ValueKind::Word;
    return isFloat ? ValueKind::Float : ValueKind::Integer;
}

enum class Ext { Local, NoLink, LinkId, Mask, Desc, Count };
constexpr std::array<std::string_view, 5> kExtensionNames{"local", "nolink", "linkid", "mask", "desc"};

bool extensionFits(Ext e, Type t) {
    switch (e) {
    case Ext::Local:
    case Ext::Desc:
        return t != Type::Message;
    case Ext::NoLink:
        return t == Type::Cog || t == Type::Sector || t == Type::Surface || t == Type::Thing;
    case Ext::LinkId:
    case Ext::Mask:
        return t == Type::Sector || t == Type::Surface || t == Type::Thing;
    case Ext::Count:
        break;
    }
    return false;
}

int binaryLevel(Tok t) {
    switch (t) {
    case Tok::Star:
    case Tok::Slash:
    case Tok::Percent:
        return 3;
    case Tok::Plus:
    case Tok::Minus:
        return 4;
    case Tok::Lt:
    case Tok::Le:
    case Tok::Gt:
    case Tok::Ge:
        return 5;
    case Tok::Eq:
    case Tok::Ne:
        return 6;
    case Tok::Amp:
        return 7;
    case Tok::Caret:
        return 8;
    case Tok::Pipe:
        return 9;
    case Tok::AndAnd:
        return 10;
    case Tok::OrOr:
        return 11;
    default:
        return 0;
    }
}

class Parser {
public:
    Parser(std::string_view text, Analysis& out)
        : lex_(text), text_(text), tree_(out.tree), symbols_(out.symbols), diags_(out.diagnostics) {}

    ParseOutcome run() {
        advance();
        const NodeId file =
            add(NodeKind::File, Position{}); // the whole text, comments before the first token too
        const std::size_t mark = kids_.size();
        if (isWord(tok_, "flags") && !parseFlags()) {
            skipToLineStarting("symbols", "code"); // nothing more is reported on the way
        } else if (!isWord(tok_, "symbols")) {
            syntaxError(tok_, "expected-symbols",
                        "expected the 'symbols' section but found " + describe(tok_, text_));
            skipToLineStarting("symbols", "code");
        }
        bool codeNext = false;
        if (!isWord(tok_, "symbols")) {
            outcome_.symbolsBroken = true;
            codeNext = isWord(tok_, "code");
        } else if (!(codeNext = parseSymbols()) && !symbolsCutShort_) {
            syntaxError(tok_, "expected-code",
                        "expected the 'code' section but found " + describe(tok_, text_));
            skipToLineStarting("code", "code");
            codeNext = isWord(tok_, "code");
        }
        if (codeNext)
            parseCode();
        else
            outcome_.codeBroken = true;
        link(file, mark);
        tree_[file].span.end = prevEnd_;
        tree_.root = file;
        return outcome_;
    }

private:
    // Tokens
    void advance() {
        prevEnd_ = tok_.span.end;
        if (hasPeek_) {
            tok_ = peek_;
            hasPeek_ = false;
        } else {
            tok_ = lex_.next(mode_);
        }
    }
    const Token& peek() {
        if (!hasPeek_) {
            peek_ = lex_.next(mode_);
            hasPeek_ = true;
        }
        return peek_;
    }
    std::string_view textOf(const Token& t) const {
        return text_.substr(t.span.begin.offset, t.span.end.offset - t.span.begin.offset);
    }
    bool isWord(const Token& t, std::string_view word) const {
        return t.kind == Tok::Identifier && equalsNoCase(textOf(t), word);
    }

    // Diagnostics. A syntax error at the place of the previous one is a consequence of it and
    // dropped, so one fault gives one report.
    void report(Span span, const char* code, std::string text, Severity severity = Severity::Error,
                bool syntax = false) {
        diags_.push_back({severity, code, span, std::move(text), syntax});
    }
    void syntaxError(const Token& at, const char* code, std::string text) {
        Span span = at.kind == Tok::Error ? at.errorSpan : at.span;
        if (at.kind == Tok::Newline || at.kind == Tok::Eof) span.end = span.begin;
        // A fault that ran to the end of the file (a string) already says the file ends there.
        if (span.begin.offset == lastError_ || (at.kind == Tok::Eof && lastErrorEnd_ == text_.size())) return;
        lastError_ = span.begin.offset;
        lastErrorEnd_ = span.end.offset;
        if (at.kind == Tok::Error)
            report(span, lexErrorCode(at.error), lexErrorText(at), Severity::Error, true);
        else
            report(span, code, std::move(text), Severity::Error, true);
    }
    void expected(const char* what) {
        syntaxError(tok_, "expected-token",
                    std::string("expected ") + what + " but found " + describe(tok_, text_));
    }
    bool expect(Tok kind, const char* what) {
        if (tok_.kind == kind) {
            advance();
            return true;
        }
        expected(what);
        return false;
    }

    // Nodes
    NodeId add(NodeKind kind, Position begin) {
        Node n;
        n.kind = kind;
        n.span = {begin, begin};
        tree_.nodes.push_back(n);
        return static_cast<NodeId>(tree_.nodes.size() - 1);
    }
    // Makes kids_[mark..] the children of parent, in order, and drops them from kids_.
    void link(NodeId parent, std::size_t mark) {
        NodeId* next = &tree_[parent].firstChild;
        for (std::size_t i = mark; i < kids_.size(); ++i) {
            *next = kids_[i];
            next = &tree_[kids_[i]].nextSibling;
        }
        kids_.resize(mark);
    }
    NodeId node(NodeKind kind, Position begin, std::initializer_list<NodeId> children) {
        const NodeId id = add(kind, begin);
        const std::size_t mark = kids_.size();
        for (NodeId c : children) kids_.push_back(c);
        link(id, mark);
        tree_[id].span.end = prevEnd_;
        return id;
    }

    // File level
    // Moves (in code mode) to the first token of a line that reads a or b, or to the end.
    void skipToLineStarting(std::string_view a, std::string_view b) {
        mode_ = Lexer::Mode::Code;
        while (tok_.kind != Tok::Eof && !(tok_.firstOnLine && (isWord(tok_, a) || isWord(tok_, b))))
            advance();
    }

    bool parseFlags() {
        const Position begin = tok_.span.begin;
        advance();
        bool ok = expect(Tok::Assign, "'='");
        if (ok && tok_.kind != Tok::Integer && tok_.kind != Tok::Float) {
            syntaxError(tok_, "expected-number",
                        "expected a number after 'flags =' but found " + describe(tok_, text_));
            ok = false;
        }
        if (ok) {
            advance();
            const NodeId flags = add(NodeKind::Flags, begin);
            tree_[flags].span.end = prevEnd_;
            kids_.push_back(flags);
        }
        return ok;
    }

    // Symbols section. True when the code section follows.
    bool parseSymbols() {
        const NodeId section = add(NodeKind::Symbols, tok_.span.begin);
        const std::size_t mark = kids_.size();
        mode_ = Lexer::Mode::Symbols;
        advance();
        bool codeNext = false;
        while (true) {
            while (tok_.kind == Tok::Newline) advance();
            if (tok_.kind == Tok::Eof) {
                syntaxError(tok_, "unexpected-eof", "the file ends inside the symbols section");
                outcome_.symbolsBroken = true;
                symbolsCutShort_ = true;
                break;
            }
            if (isWord(tok_, "end")) {
                mode_ = Lexer::Mode::Code;
                advance();
                codeNext = isWord(tok_, "code");
                break;
            }
            if (isWord(tok_, "code") && tok_.firstOnLine) {
                syntaxError(tok_, "expected-end", "the symbols section has no 'end' before 'code'");
                outcome_.symbolsBroken = true;
                mode_ = Lexer::Mode::Code;
                codeNext = true;
                break;
            }
            parseDeclaration();
        }
        link(section, mark);
        tree_[section].span.end = prevEnd_;
        kids_.push_back(section);
        return codeNext;
    }

    void recoverLine() {
        outcome_.symbolsBroken = true;
        if (tok_.kind == Tok::Newline || tok_.kind == Tok::Eof) return;
        hasPeek_ = false;
        lex_.skipLine();
        advance();
    }

    struct LineDiagnostic {
        Span span;
        const char* code;
        std::string text;
        Severity severity;
    };

    void parseDeclaration() {
        const Position begin = tok_.span.begin;
        if (tok_.kind != Tok::Identifier) {
            syntaxError(tok_, "expected-symbol-type",
                        "a declaration starts with a symbol type, not " + describe(tok_, text_));
            return recoverLine();
        }
        const Token typeTok = tok_;
        advance();
        if (tok_.kind != Tok::Identifier) {
            syntaxError(tok_, "expected-symbol-name",
                        "expected the symbol's name but found " + describe(tok_, text_));
            return recoverLine();
        }
        const Token nameTok = tok_;
        advance();

        std::vector<LineDiagnostic> found; // reported only when the whole line reads well
        Symbol symbol;
        symbol.name = std::string(textOf(nameTok));
        symbol.nameSpan = nameTok.span;
        const auto type = symbolType(textOf(typeTok));
        const std::string typeText = type ? typeName(*type) : std::string(textOf(typeTok));
        if (!type)
            found.push_back(
                {typeTok.span, "unknown-type", "unknown symbol type " + quote(typeText), Severity::Error});
        symbol.type = type.value_or(Type::Any);
        symbol.local = symbol.type == Type::Message;

        if (tok_.kind == Tok::Assign) {
            const Token value = lex_.rawValue();
            tok_ = value;
            if (value.kind == Tok::Eof) return; // the section loop reports the end of the file
            advance();
            symbol.valueSpan = value.span;
            const ValueKind kind = classifyValue(textOf(value));
            const std::string shown = quote(textOf(value));
            switch (symbol.type) {
            case Type::Int:
            case Type::Float:
                if (kind == ValueKind::Word)
                    found.push_back({value.span, "wrong-value-kind",
                                     withArticle(typeText) + " symbol needs a number, not " + shown,
                                     Severity::Error});
                break;
            case Type::Ai:
            case Type::Keyframe:
            case Type::Material:
            case Type::Model:
            case Type::Sound:
            case Type::Template:
                if (kind != ValueKind::Word)
                    found.push_back({value.span, "wrong-value-kind",
                                     withArticle(typeText) + " symbol needs a file name, not " + shown,
                                     Severity::Error});
                break;
            default:
                found.push_back({value.span, "type-takes-no-default",
                                 withArticle(typeText) + " symbol takes no default value", Severity::Error});
            }
        }

        std::array<bool, static_cast<std::size_t>(Ext::Count)> seen{};
        while (tok_.kind != Tok::Newline && tok_.kind != Tok::Eof) {
            if (tok_.kind == Tok::Comma) {
                advance();
                continue;
            }
            if (tok_.kind != Tok::Identifier) {
                syntaxError(tok_, "expected-extension",
                            "expected an extension name but found " + describe(tok_, text_));
                return recoverLine();
            }
            const Token extTok = tok_;
            const std::string_view extName = textOf(extTok);
            advance();
            Span span = extTok.span;
            std::string_view value;
            bool hasValue = false;
            if (tok_.kind == Tok::Assign) {
                const Token v = lex_.rawValue();
                tok_ = v;
                if (v.kind == Tok::Eof) return;
                advance();
                value = textOf(v);
                hasValue = true;
                span.end = v.span.end;
            }
            std::size_t e = 0;
            while (e < kExtensionNames.size() && !equalsNoCase(extName, kExtensionNames[e])) ++e;
            const std::string shown = quote(extName);
            if (e == kExtensionNames.size()) {
                found.push_back(
                    {extTok.span, "unknown-extension", "unknown extension " + shown, Severity::Error});
                continue;
            }
            const auto ext = static_cast<Ext>(e);
            if ((ext == Ext::Local || ext == Ext::NoLink) && hasValue)
                found.push_back({span, "value-not-allowed", "the extension " + shown + " takes no value",
                                 Severity::Error});
            else if (ext != Ext::Local && ext != Ext::NoLink && !hasValue)
                found.push_back(
                    {span, "value-missing", "the extension " + shown + " needs a value", Severity::Error});
            else if ((ext == Ext::LinkId || ext == Ext::Mask) && classifyValue(value) != ValueKind::Integer)
                found.push_back({span, "value-not-integer",
                                 "the extension " + shown + " needs a whole number", Severity::Error});
            if (type && !extensionFits(ext, symbol.type))
                found.push_back(
                    {span, "extension-not-valid",
                     "the extension " + shown + " has no effect on " + withArticle(typeText) + " symbol",
                     Severity::Warning});
            if (seen[e])
                found.push_back({span, "repeated-extension",
                                 "the extension " + shown + " is given again; the last one counts",
                                 Severity::Warning});
            seen[e] = true;
            if (ext == Ext::Local) symbol.local = true;
        }

        symbol.declaration = {begin, prevEnd_};
        const NodeId decl = add(NodeKind::Declaration, begin);
        tree_[decl].span.end = prevEnd_;
        kids_.push_back(decl);

        if (const std::uint32_t earlier = symbols_.findSymbol(symbol.name); earlier != kNoRef)
            found.push_back({nameTok.span, "redeclared",
                             quote(symbol.name) + " is declared again (before on line " +
                                 std::to_string(symbols_.symbols[earlier].nameSpan.begin.line) + ")",
                             Severity::Warning});
        if (isGlobalName(symbol.name))
            found.push_back({nameTok.span, "hides-global",
                             quote(symbol.name) + " hides the engine's global variable of that name",
                             Severity::Warning});
        tree_[decl].ref = symbols_.addSymbol(std::move(symbol));
        for (LineDiagnostic& d : found) report(d.span, d.code, std::move(d.text), d.severity);
    }

    // Code section
    void parseCode() {
        const NodeId section = add(NodeKind::Code, tok_.span.begin);
        const std::size_t mark = kids_.size();
        mode_ = Lexer::Mode::Code;
        advance();
        while (true) {
            if (tok_.kind == Tok::Eof) {
                syntaxError(tok_, "unexpected-eof", "the file ends inside the code section");
                outcome_.codeBroken = true;
                break;
            }
            if (isWord(tok_, "end")) { // the text after it is not read
                prevEnd_ = tok_.span.end;
                break;
            }
            statementInList(true);
        }
        link(section, mark);
        tree_[section].span.end = prevEnd_;
        kids_.push_back(section);
    }

    // One statement of a statement list; on an error, the list goes on after the statement.
    void statementInList(bool topLevel) {
        const std::size_t nodeMark = tree_.nodes.size();
        const std::size_t kidMark = kids_.size();
        const NodeId s = statement();
        if (s != kNoNode) {
            kids_.push_back(s);
            return;
        }
        tree_.nodes.resize(nodeMark);
        kids_.resize(kidMark);
        outcome_.codeBroken = true;
        const std::uint32_t at = tok_.span.begin.offset;
        recoverStatement(topLevel);
        // A "}" with no block to close stops the skipping where it began: pass over it.
        if (topLevel && tok_.span.begin.offset == at && tok_.kind == Tok::RBrace) advance();
    }

    // Skips to the end of the broken statement: past the next ";" or the "}" that closes a block
    // the statement opened, before a "}" it did not open, or before an "end" line of the section.
    void recoverStatement(bool topLevel) {
        if (inForHeader_) {
            // The ";" inside "for (...)" do not end the statement: skip to the header's ")",
            // unless the line ends first.
            inForHeader_ = false;
            for (int parens = 1; parens > 0;) {
                if (tok_.kind == Tok::Eof || tok_.firstOnLine) return;
                if (tok_.kind == Tok::LParen) ++parens;
                if (tok_.kind == Tok::RParen) --parens;
                advance();
            }
        }
        int depth = 0;
        while (tok_.kind != Tok::Eof) {
            if (tok_.kind == Tok::Semi && depth == 0) {
                advance();
                return;
            }
            if (tok_.kind == Tok::RBrace) {
                if (depth == 0) return;
                advance();
                if (--depth == 0) return;
                continue;
            }
            if (tok_.kind == Tok::LBrace) ++depth;
            if (topLevel && depth == 0 && tok_.firstOnLine && isWord(tok_, "end")) return;
            advance();
        }
    }

    struct Nesting {
        Parser& p;
        bool ok;
        explicit Nesting(Parser& parser) : p(parser), ok(++parser.depth_ <= kMaxNesting) {
            if (!ok) p.syntaxError(p.tok_, "too-deep", "statements or expressions nest too deeply here");
        }
        ~Nesting() { --p.depth_; }
    };

    NodeId statement() {
        const Nesting nesting(*this);
        if (!nesting.ok) return kNoNode;
        const Position begin = tok_.span.begin;
        switch (tok_.kind) {
        case Tok::Semi:
            advance();
            return node(NodeKind::Empty, begin, {});
        case Tok::LBrace:
            return block();
        case Tok::Identifier:
            break;
        default:
            return expressionStatement();
        }
        const std::string_view word = textOf(tok_);
        if (equalsNoCase(word, "if")) return ifStatement();
        if (equalsNoCase(word, "while")) {
            advance();
            const NodeId cond = condition();
            if (cond == kNoNode) return kNoNode;
            const NodeId body = statement();
            if (body == kNoNode) return kNoNode;
            return node(NodeKind::While, begin, {cond, body});
        }
        if (equalsNoCase(word, "do")) {
            advance();
            const NodeId body = statement();
            if (body == kNoNode) return kNoNode;
            if (!isWord(tok_, "while")) {
                expected("'while'");
                return kNoNode;
            }
            advance();
            const NodeId cond = condition();
            if (cond == kNoNode || !expect(Tok::Semi, "';'")) return kNoNode;
            return node(NodeKind::Do, begin, {body, cond});
        }
        if (equalsNoCase(word, "for")) return forStatement();
        if (equalsNoCase(word, "break") || equalsNoCase(word, "return")) {
            const NodeKind kind = equalsNoCase(word, "break") ? NodeKind::Break : NodeKind::Return;
            advance();
            if (!expect(Tok::Semi, "';'")) return kNoNode;
            return node(kind, begin, {});
        }
        if (equalsNoCase(word, "call")) {
            advance();
            if (tok_.kind != Tok::Identifier) {
                syntaxError(tok_, "expected-label",
                            "'call' needs a label name, not " + describe(tok_, text_));
                return kNoNode;
            }
            const Span name = tok_.span;
            advance();
            if (!expect(Tok::Semi, "';'")) return kNoNode;
            const NodeId call = node(NodeKind::Call, begin, {});
            tree_[call].nameSpan = name;
            return call;
        }
        if (peek().kind == Tok::Colon) {
            const Span name = tok_.span;
            advance();
            advance();
            const NodeId inner = statement();
            if (inner == kNoNode) return kNoNode;
            const NodeId label = node(NodeKind::Label, begin, {inner});
            tree_[label].span = name;
            return label;
        }
        return expressionStatement();
    }

    NodeId expressionStatement() {
        const Position begin = tok_.span.begin;
        const NodeId e = expression();
        if (e == kNoNode || !expect(Tok::Semi, "';'")) return kNoNode;
        return node(NodeKind::ExprStmt, begin, {e});
    }

    NodeId block() {
        const NodeId id = add(NodeKind::Block, tok_.span.begin);
        const std::size_t mark = kids_.size();
        advance();
        while (tok_.kind != Tok::RBrace) {
            if (tok_.kind == Tok::Eof) {
                syntaxError(tok_, "unexpected-eof", "the file ends inside a block: a '}' is missing");
                kids_.resize(mark);
                return kNoNode;
            }
            statementInList(false);
        }
        advance();
        link(id, mark);
        tree_[id].span.end = prevEnd_;
        return id;
    }

    // "(" expression ")"
    NodeId condition() {
        if (!expect(Tok::LParen, "'('")) return kNoNode;
        const NodeId e = expression();
        if (e == kNoNode || !expect(Tok::RParen, "')'")) return kNoNode;
        return e;
    }

    NodeId ifStatement() {
        const Position begin = tok_.span.begin;
        advance();
        const NodeId cond = condition();
        if (cond == kNoNode) return kNoNode;
        const NodeId then = statement();
        if (then == kNoNode) return kNoNode;
        if (!isWord(tok_, "else")) return node(NodeKind::If, begin, {cond, then});
        advance();
        const NodeId otherwise = statement();
        if (otherwise == kNoNode) return kNoNode;
        return node(NodeKind::If, begin, {cond, then, otherwise});
    }

    NodeId forStatement() {
        const Position begin = tok_.span.begin;
        advance();
        if (!expect(Tok::LParen, "'('")) return kNoNode;
        inForHeader_ = true;
        std::array<NodeId, 3> clauses{};
        for (int i = 0; i < 3; ++i) {
            const Tok end = i < 2 ? Tok::Semi : Tok::RParen;
            if (tok_.kind == end) {
                clauses[i] = add(NodeKind::Empty, tok_.span.begin);
            } else {
                clauses[i] = expression();
                if (clauses[i] == kNoNode) return kNoNode;
            }
            if (!expect(end, i < 2 ? "';'" : "')'")) return kNoNode;
        }
        inForHeader_ = false;
        const NodeId body = statement();
        if (body == kNoNode) return kNoNode;
        return node(NodeKind::For, begin, {clauses[0], clauses[1], clauses[2], body});
    }

    // Expressions, by the levels of the operator table.
    NodeId expression() { // level 13: ","
        const Position begin = tok_.span.begin;
        NodeId left = assignment();
        while (left != kNoNode && tok_.kind == Tok::Comma) {
            advance();
            const NodeId right = assignment();
            if (right == kNoNode) return kNoNode;
            left = node(NodeKind::Comma, begin, {left, right});
        }
        return left;
    }

    NodeId assignment() { // level 12: "=", right to left, its target read at level 11
        const Nesting nesting(*this);
        if (!nesting.ok) return kNoNode;
        const Position begin = tok_.span.begin;
        const NodeId target = binary(11);
        if (target == kNoNode || tok_.kind != Tok::Assign) return target;
        advance();
        const NodeId value = assignment();
        if (value == kNoNode) return kNoNode;
        return node(NodeKind::Assign, begin, {target, value});
    }

    NodeId binary(int maxLevel) { // levels 3 to 11, left to right
        const Position begin = tok_.span.begin;
        NodeId left = unary();
        while (left != kNoNode) {
            const int level = binaryLevel(tok_.kind);
            if (level == 0 || level > maxLevel) break;
            const auto op = static_cast<std::uint8_t>(tok_.kind);
            advance();
            const NodeId right = binary(level - 1);
            if (right == kNoNode) return kNoNode;
            left = node(NodeKind::Binary, begin, {left, right});
            tree_[left].op = op;
        }
        return left;
    }

    NodeId unary() { // level 2: prefix + - !
        if (tok_.kind != Tok::Plus && tok_.kind != Tok::Minus && tok_.kind != Tok::Bang) return primary();
        const Nesting nesting(*this);
        if (!nesting.ok) return kNoNode;
        const Position begin = tok_.span.begin;
        const auto op = static_cast<std::uint8_t>(tok_.kind);
        advance();
        const NodeId operand = unary();
        if (operand == kNoNode) return kNoNode;
        const NodeId id = node(NodeKind::Unary, begin, {operand});
        tree_[id].op = op;
        return id;
    }

    NodeId primary() {
        const Position begin = tok_.span.begin;
        NodeKind literal = NodeKind::Empty;
        switch (tok_.kind) {
        case Tok::Integer:
            literal = NodeKind::IntLiteral;
            break;
        case Tok::Float:
            literal = NodeKind::FloatLiteral;
            break;
        case Tok::String:
            literal = NodeKind::StringLiteral;
            break;
        case Tok::Vector:
            literal = NodeKind::VectorLiteral;
            break;
        case Tok::LParen: {
            const Nesting nesting(*this);
            if (!nesting.ok) return kNoNode;
            advance();
            const NodeId inner = expression();
            if (inner == kNoNode || !expect(Tok::RParen, "')'")) return kNoNode;
            return inner;
        }
        case Tok::Identifier:
            return nameOrCall();
        default:
            syntaxError(tok_, "expected-expression",
                        "expected an expression but found " + describe(tok_, text_));
            return kNoNode;
        }
        advance();
        return node(literal, begin, {});
    }

    NodeId nameOrCall() {
        const Span name = tok_.span;
        const Tok next = peek().kind;
        advance();
        if (next == Tok::LParen) {
            const Nesting nesting(*this);
            if (!nesting.ok) return kNoNode;
            advance();
            const std::size_t mark = kids_.size();
            if (tok_.kind != Tok::RParen) {
                while (true) {
                    const NodeId arg = assignment();
                    if (arg == kNoNode) {
                        kids_.resize(mark);
                        return kNoNode;
                    }
                    kids_.push_back(arg);
                    if (tok_.kind == Tok::Comma) {
                        advance();
                        continue;
                    }
                    if (tok_.kind == Tok::RParen) break;
                    expected("',' or ')'");
                    kids_.resize(mark);
                    return kNoNode;
                }
            }
            advance();
            const NodeId call = add(NodeKind::VerbCall, name.begin);
            link(call, mark);
            tree_[call].span.end = prevEnd_;
            tree_[call].nameSpan = name;
            return call;
        }
        if (next == Tok::LBracket) {
            const Nesting nesting(*this);
            if (!nesting.ok) return kNoNode;
            advance();
            const NodeId index = expression();
            if (index == kNoNode || !expect(Tok::RBracket, "']'")) return kNoNode;
            const NodeId sub = node(NodeKind::Subscript, name.begin, {index});
            tree_[sub].nameSpan = name;
            return sub;
        }
        const NodeId id = add(NodeKind::Name, name.begin);
        tree_[id].span = name;
        tree_[id].nameSpan = name;
        return id;
    }

    Lexer lex_;
    std::string_view text_;
    SyntaxTree& tree_;
    SymbolTable& symbols_;
    std::vector<Diagnostic>& diags_;
    Lexer::Mode mode_ = Lexer::Mode::Code;
    Token tok_, peek_;
    bool hasPeek_ = false;
    Position prevEnd_;
    std::uint32_t lastError_ = 0xFFFFFFFF, lastErrorEnd_ = 0xFFFFFFFF;
    int depth_ = 0;
    bool symbolsCutShort_ = false; // the file ended inside the symbols section
    bool inForHeader_ = false;     // between the parentheses of a "for"
    std::vector<NodeId> kids_;     // children being gathered, innermost last
    ParseOutcome outcome_;
};

} // namespace

ParseOutcome parse(std::string_view text, Analysis& out) {
    Parser parser(text, out);
    return parser.run();
}

} // namespace language
