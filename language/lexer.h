// The COG lexer: a cursor over the bytes of a script that yields one token at a time. The parser
// drives it and tells it where it is, since the sections read the same bytes differently: line
// ends are tokens in the symbols section only, strings and vector literals exist in code only,
// and the value after "=" in a declaration is a raw word.
#pragma once

#include "language/span.h"

#include <cstdint>
#include <string>
#include <string_view>

namespace language {

enum class Tok : std::uint8_t {
    Eof,
    Newline, // symbols section only
    Identifier,
    Integer,
    Float,
    String, // code only
    Vector, // code only: 'x y z'
    Word,   // the raw value after "=" in the symbols section
    Error,  // a lexical error; see Token::error
    Assign,
    Eq,
    Ne,
    Lt,
    Le,
    Gt,
    Ge,
    AndAnd,
    OrOr,
    Amp,
    Pipe,
    Caret,
    Plus,
    Minus,
    Star,
    Slash,
    Percent,
    Bang,
    Colon,
    Semi,
    Comma,
    Quote,
    LParen,
    RParen,
    LBracket,
    RBracket,
    LBrace,
    RBrace,
};

enum class LexError : std::uint8_t {
    None,
    IllegalCharacter,
    UnknownPunctuator,
    DigitOutOfRange,
    ExpectedHexDigit,
    ExpectedFraction,
    ExpectedExponent,
    NumberTooLarge,
    VectorTooLong,
    VectorNeedsNumber,
    UnknownEscape,
    NewlineInString,
    EofInString,
};

struct Token {
    Tok kind = Tok::Eof;
    bool firstOnLine = false; // only blanks and comments stand before it on its line
    LexError error = LexError::None;
    char errorByte = 0; // the byte an IllegalCharacter, UnknownPunctuator or UnknownEscape is about
    Span span;          // the bytes the token takes
    Span errorSpan;     // for an Error token: where the fault is
};

// The diagnostic code and text of an Error token.
const char* lexErrorCode(LexError e);
std::string lexErrorText(const Token& t);
// How a token reads in a message: "';'", "'foo'", "the end of the line", "the end of the file".
std::string describe(const Token& t, std::string_view text);

class Lexer {
public:
    enum class Mode : std::uint8_t { Code, Symbols };

    explicit Lexer(std::string_view text) : text_(text) {}

    Token next(Mode mode);
    // The value after "=" in a declaration: blanks and line ends skipped, then every byte up to a
    // blank, a line end, a comma or the end of the text ("#" and "//" are ordinary bytes here).
    Token rawValue();
    // Moves to the end of the current line (its line end not consumed): recovery in the symbols
    // section.
    void skipLine();

    Position position() const { return {pos_, line_, pos_ - lineStart_ + 1}; }
    std::string_view text() const { return text_; }

private:
    char at(std::uint32_t p) const { return p < text_.size() ? text_[p] : '\0'; }
    bool atEnd(std::uint32_t p) const { return p >= text_.size(); }
    void lineEnd();             // consumes the line end at pos_
    bool skipBlanks(Mode mode); // true when a line end was crossed
    Token finish(Token& t, Tok kind);
    Token lexNumber(Token& t, bool code);
    Token lexString(Token& t);
    Token lexVector(Token& t);
    // Scans a numeric literal from p; its end, and the fault (None for a good one).
    LexError scanNumber(std::uint32_t& p, bool code, bool& isFloat) const;
    Token fail(Token& t, LexError e, Position errorBegin, Position errorEnd, char byte = 0);
    Position positionAt(std::uint32_t p) const { return {p, line_, p - lineStart_ + 1}; }

    std::string_view text_;
    std::uint32_t pos_ = 0;
    std::uint32_t line_ = 1;
    std::uint32_t lineStart_ = 0;
    bool atLineStart_ = true;
};

} // namespace language
