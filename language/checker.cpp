// What the checks do when the parser met syntax errors: every statement that parsed is checked
// as usual (its verbs, types, assignments, breaks, labels), since a broken statement is dropped
// whole and cannot change what another one means. Checks whose truth depends on the whole of a
// section are left out when that section had a syntax error, since the skipped text may hold
// what they look for: undeclared names when the symbols section is broken (a skipped line may
// declare the name); missing call targets, messages without a handler and the flow checks
// (unreachable code, falling into a label) when the code section is broken (a skipped statement
// may hold a label, a call or a return); the flow checks also when the symbols section is broken
// (it declares the messages whose labels are entry points). So a file is never warned about what it may well
// have.
#include "language/checker.h"

#include "language/lexer.h"
#include "language/names.h"
#include "language/text.h"

#include <array>
#include <string>

namespace language {

namespace {

const char* operatorText(std::uint8_t op) {
    switch (static_cast<Tok>(op)) {
    case Tok::Eq:
        return "==";
    case Tok::Ne:
        return "!=";
    case Tok::Lt:
        return "<";
    case Tok::Le:
        return "<=";
    case Tok::Gt:
        return ">";
    case Tok::Ge:
        return ">=";
    case Tok::AndAnd:
        return "&&";
    case Tok::OrOr:
        return "||";
    case Tok::Amp:
        return "&";
    case Tok::Pipe:
        return "|";
    case Tok::Caret:
        return "^";
    case Tok::Plus:
        return "+";
    case Tok::Minus:
        return "-";
    case Tok::Star:
        return "*";
    case Tok::Slash:
        return "/";
    case Tok::Percent:
        return "%";
    default:
        return "?";
    }
}

std::string a(Type t) {
    return withArticle(typeName(t));
}

class Checker {
public:
    Checker(std::string_view text, const VerbTable& verbs, const ParseOutcome& parsed, Analysis& out)
        : text_(text), verbs_(verbs), parsed_(parsed), tree_(out.tree), symbols_(out.symbols),
          diags_(out.diagnostics) {}

    void run() {
        NodeId code = kNoNode;
        if (tree_.root != kNoNode)
            for (NodeId c = tree_[tree_.root].firstChild; c != kNoNode; c = tree_[c].nextSibling)
                if (tree_[c].kind == NodeKind::Code) code = c;
        if (code != kNoNode)
            for (NodeId s = tree_[code].firstChild; s != kNoNode; s = tree_[s].nextSibling) statement(s, {});
        resolveCalls();
        if (parsed_.codeBroken) return;
        messagesWithoutHandler();
        if (code != kNoNode && !parsed_.symbolsBroken) { // the entry points are declared there
            current_ = kNoRef;
            flowSequence(tree_[code].firstChild, false, false, false);
        }
    }

private:
    std::string_view textOf(const Span& s) const {
        return text_.substr(s.begin.offset, s.end.offset - s.begin.offset);
    }
    std::string quoted(const Span& s) const { return quote(textOf(s)); }
    void report(Severity severity, const char* code, const Span& span, std::string text) {
        diags_.push_back({severity, code, span, std::move(text), false});
    }
    NodeId child(NodeId id, int n = 0) const {
        NodeId c = tree_[id].firstChild;
        while (n-- > 0 && c != kNoNode) c = tree_[c].nextSibling;
        return c;
    }

    // Statements
    struct Context {
        bool inLoop = false;
        bool inBody = false; // inside the body of an if, else, while, do or for
    };

    void statement(NodeId id, Context ctx) {
        const Node& n = tree_[id];
        switch (n.kind) {
        case NodeKind::Block:
            for (NodeId s = n.firstChild; s != kNoNode; s = tree_[s].nextSibling) statement(s, ctx);
            break;
        case NodeKind::ExprStmt:
            expression(n.firstChild, false);
            break;
        case NodeKind::Break:
            if (!ctx.inLoop) report(Severity::Error, "break-outside-loop", n.span, "'break' outside a loop");
            break;
        case NodeKind::Call:
            calls_.push_back(id);
            break;
        case NodeKind::If: {
            condition(child(id, 0));
            const Context body{ctx.inLoop, true};
            statement(child(id, 1), body);
            if (const NodeId otherwise = child(id, 2); otherwise != kNoNode) statement(otherwise, body);
            break;
        }
        case NodeKind::While:
            condition(child(id, 0));
            statement(child(id, 1), {true, true});
            break;
        case NodeKind::Do:
            statement(child(id, 0), {true, true});
            condition(child(id, 1));
            break;
        case NodeKind::For:
            if (tree_[child(id, 0)].kind != NodeKind::Empty) expression(child(id, 0), false);
            if (tree_[child(id, 1)].kind != NodeKind::Empty) condition(child(id, 1));
            if (tree_[child(id, 2)].kind != NodeKind::Empty) expression(child(id, 2), false);
            statement(child(id, 3), {true, true});
            break;
        case NodeKind::Label: {
            defineLabel(id, ctx.inBody);
            statement(n.firstChild, ctx);
            break;
        }
        default:
            break;
        }
    }

    void defineLabel(NodeId id, bool inBody) {
        Node& n = tree_[id];
        const std::string_view name = textOf(n.span);
        if (const std::uint32_t earlier = symbols_.findLabel(name); earlier != kNoRef) {
            report(Severity::Error, "duplicate-label", n.span,
                   "the label '" + std::string(name) + "' is already defined on line " +
                       std::to_string(symbols_.labels[earlier].definition.begin.line));
            n.ref = earlier;
        } else {
            n.ref = symbols_.addLabel({std::string(name), n.span, {}});
        }
        if (inBody)
            report(Severity::Warning, "nested-label", n.span,
                   "the label '" + std::string(name) +
                       "' is inside the body of an if, else, while, do or for");
    }

    void resolveCalls() {
        for (NodeId id : calls_) {
            Node& n = tree_[id];
            n.ref = symbols_.findLabel(textOf(n.nameSpan));
            if (n.ref != kNoRef)
                symbols_.labels[n.ref].calls.push_back(n.nameSpan);
            else if (!parsed_.codeBroken)
                report(Severity::Error, "missing-label", n.nameSpan,
                       "'call' names the label " + quoted(n.nameSpan) + ", which is not defined");
        }
    }

    void messagesWithoutHandler() {
        for (const Symbol& s : symbols_.symbols)
            if (!s.implicit && s.type == Type::Message && symbols_.findLabel(s.name) == kNoRef)
                report(Severity::Warning, "message-without-handler", s.nameSpan,
                       "the message '" + s.name + "' has no label in the code section to handle it");
    }

    // Expressions
    void truth(Type t, const Span& span) {
        if (!isTruthValued(t))
            report(Severity::Warning, "not-truth-value", span, a(t) + " value is used as a truth value");
    }
    void condition(NodeId id) { truth(expression(id, true), tree_[id].span); }

    Type set(NodeId id, Type t) {
        tree_[id].type = t;
        return t;
    }

    // The type a name stands for, its use recorded on its symbol.
    Type resolve(NodeId id) {
        Node& n = tree_[id];
        const std::string_view name = textOf(n.nameSpan);
        const std::uint32_t symbol = symbols_.findSymbol(name);
        n.ref = symbol;
        if (symbol != kNoRef) symbols_.symbols[symbol].uses.push_back(n.nameSpan);
        if (isMessageName(name)) return Type::Message;
        if (symbol != kNoRef) return symbols_.symbols[symbol].type;
        if (isGlobalName(name)) return Type::Any;
        if (!parsed_.symbolsBroken)
            report(Severity::Warning, "undeclared-name", n.nameSpan, quote(name) + " is not declared");
        Symbol implicit;
        implicit.name = std::string(name);
        implicit.implicit = true;
        implicit.local = true;
        implicit.declaration = implicit.nameSpan = n.nameSpan;
        implicit.uses.push_back(n.nameSpan);
        n.ref = symbols_.addSymbol(std::move(implicit));
        return Type::Any;
    }

    Type expression(NodeId id, bool used) {
        Node& n = tree_[id];
        switch (n.kind) {
        case NodeKind::IntLiteral:
            return set(id, Type::Int);
        case NodeKind::FloatLiteral:
            return set(id, Type::Float);
        case NodeKind::StringLiteral:
            return set(id, Type::String);
        case NodeKind::VectorLiteral:
            return set(id, Type::Vector);
        case NodeKind::Name:
            return set(id, resolve(id));
        case NodeKind::Subscript:
            return set(id, subscript(id));
        case NodeKind::VerbCall:
            return set(id, verbCall(id));
        case NodeKind::Unary: {
            const Type t = expression(n.firstChild, true);
            if (static_cast<Tok>(n.op) == Tok::Bang) {
                truth(t, tree_[n.firstChild].span);
                return set(id, Type::Bool);
            }
            if (t == Type::Vector || t == Type::String || t == Type::Void)
                report(Severity::Warning, "sign-on-non-numeric", n.span,
                       "a sign is applied to " + a(t) + " value");
            return set(id, t == Type::Float ? Type::Float : Type::Int);
        }
        case NodeKind::Assign:
            return set(id, assignment(id, used));
        case NodeKind::Binary:
        case NodeKind::Comma:
            return chain(id, used);
        default:
            return Type::Any;
        }
    }

    Type subscript(NodeId id) {
        const Type base = resolve(id);
        const NodeId index = tree_[id].firstChild;
        const Type t = expression(index, true);
        if (!isScalar(t))
            report(Severity::Error, "index-not-numeric", tree_[index].span,
                   "an index must be a number, not " + a(t));
        return base;
    }

    Type verbCall(NodeId id) {
        const Span name = tree_[id].nameSpan;
        const Verb* verb = verbs_.find(textOf(name));
        std::size_t count = 0;
        for (NodeId arg = tree_[id].firstChild; arg != kNoNode; arg = tree_[arg].nextSibling, ++count)
            expression(arg, true);
        if (!verb) {
            report(Severity::Error, "unknown-verb", name, "there is no verb named " + quoted(name));
            return Type::Any;
        }
        if (verb->deprecated)
            report(Severity::Warning, "deprecated-verb", name, "the verb " + quoted(name) + " is deprecated");
        if (count != verb->parameters.size()) {
            report(Severity::Error, "wrong-arg-count", tree_[id].span,
                   quoted(name) + " takes " + std::to_string(verb->parameters.size()) + " argument" +
                       (verb->parameters.size() == 1 ? "" : "s") + " but is given " + std::to_string(count));
            return verb->returns;
        }
        std::size_t i = 0;
        for (NodeId arg = tree_[id].firstChild; arg != kNoNode; arg = tree_[arg].nextSibling, ++i)
            if (!convertible(tree_[arg].type, verb->parameters[i]))
                report(Severity::Warning, "argument-type", tree_[arg].span,
                       "argument " + std::to_string(i + 1) + " of " + quoted(name) + " is " +
                           a(tree_[arg].type) + " where " + a(verb->parameters[i]) + " is expected");
        return verb->returns;
    }

    Type assignment(NodeId id, bool used) {
        const NodeId target = child(id, 0), value = child(id, 1);
        const NodeKind kind = tree_[target].kind;
        const bool assignable = kind == NodeKind::Name || kind == NodeKind::Subscript;
        const Type targetType = expression(target, assignable ? false : true);
        if (!assignable)
            report(Severity::Error, "not-assignable", tree_[target].span,
                   "the left side of '=' is not a name or an element that can be assigned to");
        const Type v = expression(value, true);
        if (assignable && !convertible(v, targetType))
            report(Severity::Warning, "assignment-type", tree_[id].span,
                   a(v) + " value is stored in " + quoted(tree_[target].nameSpan) + ", which holds " +
                       a(targetType));
        if (used)
            report(Severity::Warning, "assignment-as-value", tree_[id].span,
                   "the value of an assignment is used here, and the engine does not give the stored value");
        return v;
    }

    // A left-leaning chain of binary operators or commas, walked without recursion on its left.
    Type chain(NodeId id, bool used) {
        const std::size_t base = spine_.size(); // spine_ is shared by nested chains, each above the last
        NodeId n = id;
        while (tree_[n].kind == NodeKind::Binary || tree_[n].kind == NodeKind::Comma) {
            spine_.push_back(n);
            n = tree_[n].firstChild;
        }
        Type left = expression(n, tree_[spine_.back()].kind != NodeKind::Comma);
        for (std::size_t i = spine_.size(); i-- > base;) {
            const NodeId s = spine_[i];
            const NodeId right = tree_[tree_[s].firstChild].nextSibling;
            if (tree_[s].kind == NodeKind::Comma) {
                // A comma gives its right side's value to whatever takes the comma's.
                const bool commaUsed = i == base ? used : tree_[spine_[i - 1]].kind != NodeKind::Comma;
                left = set(s, expression(right, commaUsed));
            } else {
                left = set(s, binary(s, left, expression(right, true)));
            }
        }
        spine_.resize(base);
        return left;
    }

    Type binary(NodeId id, Type l, Type r) {
        const Node& n = tree_[id];
        const auto op = static_cast<Tok>(n.op);
        auto numeric = [&] {
            if (!isNumericOperand(l) || !isNumericOperand(r))
                report(Severity::Warning, "operand-types", n.span,
                       std::string("the operator '") + operatorText(n.op) + "' needs numbers, not " + a(l) +
                           " and " + a(r));
        };
        switch (op) {
        case Tok::AndAnd:
        case Tok::OrOr:
            truth(l, tree_[n.firstChild].span);
            truth(r, tree_[tree_[n.firstChild].nextSibling].span);
            return Type::Bool;
        case Tok::Eq:
        case Tok::Ne:
            if (isIdType(l) && isIdType(r)) {
                if (l != r && l != Type::Any && r != Type::Any)
                    report(Severity::Warning, "comparing-different-ids", n.span,
                           "comparing " + a(l) + " with " + a(r) + ": ids of different kinds");
            } else {
                numeric();
            }
            return Type::Bool;
        case Tok::Lt:
        case Tok::Le:
        case Tok::Gt:
        case Tok::Ge:
            numeric();
            return Type::Bool;
        case Tok::Plus:
        case Tok::Minus:
        case Tok::Star:
        case Tok::Slash:
            numeric();
            return l == Type::Float || r == Type::Float ? Type::Float : Type::Int;
        default:
            numeric();
            return Type::Int;
        }
    }

    // Flow: which statements run, label by label. A run of statements that nothing reaches gets
    // one warning; so does running on from one label's code into another label.
    struct DeadRun {
        bool open = false;
        Span span;
    };
    void extend(DeadRun& run, const Span& span) {
        if (!run.open) run.span.begin = span.begin;
        run.open = true;
        run.span.end = span.end;
    }
    void flush(DeadRun& run) {
        if (run.open) report(Severity::Warning, "unreachable-code", run.span, "this code is never run");
        run.open = false;
    }
    bool isEntry(std::uint32_t label) const {
        const Label& l = symbols_.labels[label];
        if (!l.calls.empty()) return true;
        const std::uint32_t s = symbols_.findSymbol(l.name);
        return s != kNoRef && !symbols_.symbols[s].implicit && symbols_.symbols[s].type == Type::Message;
    }
    void fallsInto(const Span& at, std::uint32_t from, std::uint32_t into) {
        report(Severity::Warning, "falls-through", at,
               "execution runs on from the label '" + symbols_.labels[from].name + "' into the label '" +
                   symbols_.labels[into].name + "'");
    }

    // The statements from first on (only first when one is set), entered live or not; whether
    // the code after them still runs. loopBody: these statements are a loop's body.
    bool flowSequence(NodeId first, bool one, bool live, bool loopBody) {
        DeadRun run;
        for (NodeId id = first; id != kNoNode; id = one ? kNoNode : tree_[id].nextSibling) {
            NodeId s = id;
            for (; tree_[s].kind == NodeKind::Label; s = tree_[s].firstChild) {
                const std::uint32_t label = tree_[s].ref;
                if (live) {
                    // Stacked labels ("a: b: ...") share their code: nothing runs on from one into the other.
                    if (current_ != kNoRef && current_ != label && ranCode_)
                        fallsInto(tree_[s].span, current_, label);
                    current_ = label;
                    ranCode_ = false;
                } else if (isEntry(label)) {
                    flush(run);
                    live = true;
                    current_ = label;
                    ranCode_ = false;
                } else {
                    extend(run, tree_[s].span);
                }
            }
            if (!live) {
                if (tree_[s].kind != NodeKind::Empty) extend(run, tree_[s].span);
                continue;
            }
            ranCode_ = true;
            live = flowStatement(s, loopBody);
        }
        flush(run);
        return live;
    }

    // A statement reached live; whether the code after it still runs.
    bool flowStatement(NodeId id, bool inLoopBody) {
        switch (tree_[id].kind) {
        case NodeKind::Return:
            return false;
        case NodeKind::Break:
            return !inLoopBody;
        case NodeKind::Block:
            return flowSequence(tree_[id].firstChild, false, true, false);
        case NodeKind::If: {
            const bool thenLive = flowBody(child(id, 1), false);
            const NodeId otherwise = child(id, 2);
            const bool elseLive = otherwise == kNoNode || flowBody(otherwise, false);
            return thenLive || elseLive;
        }
        case NodeKind::While:
            flowBody(child(id, 1), true);
            return true;
        case NodeKind::Do:
            flowBody(child(id, 0), true);
            return true;
        case NodeKind::For:
            flowBody(child(id, 3), true);
            return true;
        default:
            return true;
        }
    }

    // The body of an if, else or loop. A label inside it whose code runs out of the body falls
    // into the code of the label around it.
    bool flowBody(NodeId body, bool loop) {
        const std::uint32_t enclosing = current_;
        const bool live = tree_[body].kind == NodeKind::Block
                              ? flowSequence(tree_[body].firstChild, false, true, loop)
                              : flowSequence(body, true, true, loop);
        if (live && current_ != enclosing && current_ != kNoRef && enclosing != kNoRef)
            fallsInto(symbols_.labels[current_].definition, current_, enclosing);
        current_ = enclosing;
        ranCode_ = true; // the statement around the body belongs to the enclosing label's code
        return live;
    }

    std::string_view text_;
    const VerbTable& verbs_;
    const ParseOutcome& parsed_;
    SyntaxTree& tree_;
    SymbolTable& symbols_;
    std::vector<Diagnostic>& diags_;
    std::vector<NodeId> calls_;
    std::vector<NodeId> spine_;      // the left spines of the binary chains being checked
    std::uint32_t current_ = kNoRef; // the label whose code the flow walk is in
    bool ranCode_ = false;           // a statement of that label's code was walked
};

} // namespace

void check(std::string_view text, const VerbTable& verbs, const ParseOutcome& parsed, Analysis& out) {
    Checker(text, verbs, parsed, out).run();
}

} // namespace language
