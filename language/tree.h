// The syntax tree of a COG script and its symbol table: plain structs in flat vectors. Nodes refer
// to each other by index (first child, next sibling); spans are into the analysed text.
#pragma once

#include "language/span.h"
#include "language/text.h"
#include "language/types.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace language {

using NodeId = std::uint32_t;
inline constexpr NodeId kNoNode = 0xFFFFFFFF;
inline constexpr std::uint32_t kNoRef = 0xFFFFFFFF;

enum class NodeKind : std::uint8_t {
    File,        // children: the symbols section, the code section (each present when found)
    Flags,       // "flags = N"
    Symbols,     // children: Declaration
    Declaration, // one line of the symbols section; ref: its symbol
    Code,        // children: statements
    // Statements
    Empty,    // ";", or a missing clause of "for"
    Block,    // children: statements
    ExprStmt, // child: the expression
    Break,
    Return,
    Call,  // "call NAME;" ref: the label (after checking); span of the name in nameSpan
    If,    // children: condition, then, [else]
    While, // children: condition, body
    Do,    // children: body, condition
    For,   // children: init, condition, step (Empty when left out), body
    Label, // span: the name; child: the labelled statement; ref: the label
    // Expressions (type: set by the checker)
    IntLiteral,
    FloatLiteral,
    StringLiteral,
    VectorLiteral,
    Name,      // ref: the symbol (after checking)
    VerbCall,  // span starts at the verb's name; children: arguments
    Subscript, // children: the index; ref: the base symbol
    Unary,     // op: Tok::Plus, Minus or Bang; child: the operand
    Binary,    // op: the operator token; children: left, right
    Assign,    // children: target, value
    Comma,     // children: left, right
};

struct Node {
    NodeKind kind = NodeKind::Empty;
    std::uint8_t op = 0;   // the operator of Unary and Binary (a language::Tok)
    Type type = Type::Any; // the type of an expression
    NodeId firstChild = kNoNode;
    NodeId nextSibling = kNoNode;
    std::uint32_t ref = kNoRef; // a symbol or label index, by kind
    Span span;
    Span nameSpan; // the name of a verb call, a subscript's base, a call's label
};

struct SyntaxTree {
    std::vector<Node> nodes;
    NodeId root = kNoNode;

    const Node& operator[](NodeId id) const { return nodes[id]; }
    Node& operator[](NodeId id) { return nodes[id]; }
    // The children of a node in order.
    std::vector<NodeId> children(NodeId id) const;
    // The innermost node whose span holds the byte at offset; kNoNode when none does.
    NodeId nodeAt(std::uint32_t offset) const;
};

struct Symbol {
    std::string name; // as first written
    Type type = Type::Any;
    bool local = false;
    bool implicit = false; // never declared: an undeclared name used in code
    Span declaration;      // the whole declaration line (for an implicit symbol: its first use)
    Span nameSpan;
    Span valueSpan;         // the default value; empty when none
    std::vector<Span> uses; // every place the code names it, in text order
};

struct Label {
    std::string name;
    Span definition;         // the name before ":"
    std::vector<Span> calls; // the name in every "call" naming it
};

class SymbolTable {
public:
    std::vector<Symbol> symbols; // in declaration order, implicit ones after them
    std::vector<Label> labels;   // in text order; a duplicate definition is not listed again

    // The symbol or label of that name, letter case ignored: its index, or kNoRef.
    std::uint32_t findSymbol(std::string_view name) const;
    std::uint32_t findLabel(std::string_view name) const;
    std::uint32_t addSymbol(Symbol s); // a redeclared name then finds the new symbol
    std::uint32_t addLabel(Label l);
    // The symbol whose name or one of whose uses holds the byte at offset; kNoRef when none.
    std::uint32_t symbolAt(std::uint32_t offset) const;

private:
    std::unordered_map<std::string, std::uint32_t, NoCaseHash, NoCaseEqual> symbolIndex_, labelIndex_;
};

} // namespace language
