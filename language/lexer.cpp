#include "language/lexer.h"

#include "language/text.h"

#include <cstdio>

namespace language {

namespace {

bool isBlank(char c) {
    return c == ' ' || c == '\t' || c == '\v' || c == '\f';
}
bool isLineEnd(char c) {
    return c == '\n' || c == '\r';
}

char hexByte(char c, char (&out)[8]) {
    std::snprintf(out, sizeof out, "0x%02X", static_cast<unsigned char>(c));
    return c;
}

} // namespace

const char* lexErrorCode(LexError e) {
    switch (e) {
    case LexError::IllegalCharacter:
        return "illegal-character";
    case LexError::UnknownPunctuator:
        return "unknown-punctuator";
    case LexError::DigitOutOfRange:
    case LexError::ExpectedHexDigit:
    case LexError::ExpectedFraction:
    case LexError::ExpectedExponent:
    case LexError::NumberTooLarge:
        return "bad-number";
    case LexError::VectorTooLong:
    case LexError::VectorNeedsNumber:
        return "bad-vector";
    case LexError::UnknownEscape:
    case LexError::NewlineInString:
        return "bad-string";
    case LexError::EofInString:
        return "unexpected-eof";
    case LexError::None:
        break;
    }
    return "";
}

std::string lexErrorText(const Token& t) {
    char hex[8];
    switch (t.error) {
    case LexError::IllegalCharacter:
        hexByte(t.errorByte, hex);
        return std::string("the byte ") + hex + " is not allowed outside comments and strings";
    case LexError::UnknownPunctuator:
        return std::string("'") + t.errorByte + "' is not an operator or punctuation mark of the language";
    case LexError::DigitOutOfRange:
        return "a letter cannot follow the digits of a number";
    case LexError::ExpectedHexDigit:
        return "'0x' must be followed by hexadecimal digits";
    case LexError::ExpectedFraction:
        return "a digit must follow the decimal point";
    case LexError::ExpectedExponent:
        return "the exponent of the number has no digits";
    case LexError::NumberTooLarge:
        return "the whole number does not fit in 32 bits";
    case LexError::VectorTooLong:
        return "a vector literal ends after three numbers";
    case LexError::VectorNeedsNumber:
        return "a vector literal holds three numbers";
    case LexError::UnknownEscape:
        if (isLineEnd(t.errorByte)) return "a backslash may only continue a string on the next line with LF";
        return std::string("'\\") + t.errorByte + "' is not an escape sequence (\\\\, \\\" and \\n are)";
    case LexError::NewlineInString:
        return "the string is not closed on its line";
    case LexError::EofInString:
        return "the file ends inside a string";
    case LexError::None:
        break;
    }
    return {};
}

std::string describe(const Token& t, std::string_view text) {
    switch (t.kind) {
    case Tok::Eof:
        return "the end of the file";
    case Tok::Newline:
        return "the end of the line";
    default:
        break;
    }
    std::string_view s = text.substr(t.span.begin.offset, t.span.end.offset - t.span.begin.offset);
    const bool cut = s.size() > 24;
    if (cut) s = s.substr(0, 24);
    return cut ? quote(std::string(s) + "...") : quote(s);
}

void Lexer::lineEnd() {
    if (text_[pos_] == '\r' && at(pos_ + 1) == '\n') ++pos_;
    ++pos_;
    ++line_;
    lineStart_ = pos_;
}

bool Lexer::skipBlanks(Mode mode) {
    bool crossed = false;
    while (!atEnd(pos_)) {
        const char c = text_[pos_];
        if (isBlank(c)) {
            ++pos_;
        } else if (isLineEnd(c)) {
            if (mode == Mode::Symbols) break;
            lineEnd();
            crossed = true;
        } else if (c == '#' || (c == '/' && at(pos_ + 1) == '/')) {
            const char* p = text_.data() + pos_;
            const char* const end = text_.data() + text_.size();
            while (p != end && *p != '\n' && *p != '\r') ++p;
            pos_ = static_cast<std::uint32_t>(p - text_.data());
        } else {
            break;
        }
    }
    return crossed;
}

Token Lexer::finish(Token& t, Tok kind) {
    t.kind = kind;
    t.span.end = position();
    return t;
}

Token Lexer::fail(Token& t, LexError e, Position errorBegin, Position errorEnd, char byte) {
    t.error = e;
    t.errorByte = byte;
    t.errorSpan = {errorBegin, errorEnd};
    return finish(t, Tok::Error);
}

Token Lexer::next(Mode mode) {
    if (skipBlanks(mode)) atLineStart_ = true;
    Token t;
    t.firstOnLine = atLineStart_;
    atLineStart_ = false;
    t.span.begin = position();
    if (atEnd(pos_)) return finish(t, Tok::Eof);
    const char c = text_[pos_];
    if (isLineEnd(c)) {
        lineEnd();
        atLineStart_ = true;
        return finish(t, Tok::Newline);
    }
    if (isIdentStart(c)) {
        const char* p = text_.data() + pos_ + 1;
        const char* const end = text_.data() + text_.size();
        while (p != end && isIdentChar(*p)) ++p;
        pos_ = static_cast<std::uint32_t>(p - text_.data());
        return finish(t, Tok::Identifier);
    }
    if (isDigit(c) || (c == '.' && isDigit(at(pos_ + 1)))) return lexNumber(t, mode == Mode::Code);
    const char n = at(pos_ + 1);
    auto punct = [&](Tok kind, std::uint32_t length) {
        pos_ += length;
        return finish(t, kind);
    };
    switch (c) {
    case '=':
        return n == '=' ? punct(Tok::Eq, 2) : punct(Tok::Assign, 1);
    case '!':
        return n == '=' ? punct(Tok::Ne, 2) : punct(Tok::Bang, 1);
    case '<':
        return n == '=' ? punct(Tok::Le, 2) : punct(Tok::Lt, 1);
    case '>':
        return n == '=' ? punct(Tok::Ge, 2) : punct(Tok::Gt, 1);
    case '&':
        return n == '&' ? punct(Tok::AndAnd, 2) : punct(Tok::Amp, 1);
    case '|':
        return n == '|' ? punct(Tok::OrOr, 2) : punct(Tok::Pipe, 1);
    case '^':
        return punct(Tok::Caret, 1);
    case '+':
        return punct(Tok::Plus, 1);
    case '-':
        return punct(Tok::Minus, 1);
    case '*':
        return punct(Tok::Star, 1);
    case '/':
        return punct(Tok::Slash, 1);
    case '%':
        return punct(Tok::Percent, 1);
    case ':':
        return punct(Tok::Colon, 1);
    case ';':
        return punct(Tok::Semi, 1);
    case ',':
        return punct(Tok::Comma, 1);
    case '(':
        return punct(Tok::LParen, 1);
    case ')':
        return punct(Tok::RParen, 1);
    case '[':
        return punct(Tok::LBracket, 1);
    case ']':
        return punct(Tok::RBracket, 1);
    case '{':
        return punct(Tok::LBrace, 1);
    case '}':
        return punct(Tok::RBrace, 1);
    case '\'':
        if (mode == Mode::Code) return lexVector(t);
        return punct(Tok::Quote, 1);
    case '"':
        if (mode == Mode::Code) return lexString(t);
        break;
    default:
        break;
    }
    const Position begin = position();
    ++pos_;
    const auto byte = static_cast<unsigned char>(c);
    const bool printable = byte > 0x20 && byte < 0x7F;
    return fail(t, printable ? LexError::UnknownPunctuator : LexError::IllegalCharacter, begin, position(),
                c);
}

LexError Lexer::scanNumber(std::uint32_t& p, bool code, bool& isFloat) const {
    isFloat = false;
    auto trailingLetters = [&] {
        if (!isLetter(at(p))) return LexError::None;
        while (isIdentChar(at(p))) ++p;
        return LexError::DigitOutOfRange;
    };
    auto malformed = [&](LexError e) {
        while (isIdentChar(at(p))) ++p;
        return e;
    };
    if (at(p) == '0' && (at(p + 1) == 'x' || at(p + 1) == 'X')) {
        p += 2;
        const std::uint32_t digits = p;
        while (isHexDigit(at(p))) ++p;
        if (p == digits) return malformed(LexError::ExpectedHexDigit);
        return trailingLetters(); // the value is cut to 32 bits, never too large
    }
    const std::uint32_t begin = p;
    while (isDigit(at(p))) ++p;
    const bool loneZero = p == begin + 1 && text_[begin] == '0';
    if (at(p) == '.') {
        ++p;
        if (!isDigit(at(p))) return malformed(LexError::ExpectedFraction);
        while (isDigit(at(p))) ++p;
        isFloat = true;
    }
    const bool exponent = at(p) == 'e' || at(p) == 'E';
    // In code a lone 0 ends before an "e": "0e5" reads as 0 and the name e5.
    if (exponent && code && loneZero && !isFloat) return LexError::None;
    if (exponent) {
        std::uint32_t q = p + 1;
        if (at(q) == '+' || at(q) == '-') ++q;
        if (!isDigit(at(q))) {
            p = q;
            return malformed(LexError::ExpectedExponent);
        }
        p = q;
        while (isDigit(at(p))) ++p;
        isFloat = true;
    }
    if (const LexError e = trailingLetters(); e != LexError::None) return e;
    if (!isFloat) {
        std::uint32_t first = begin;
        while (first + 1 < p && text_[first] == '0') ++first; // leading zeros: 058 is 58
        if (p - first > 10 || (p - first == 10 && text_.substr(first, 10) > "2147483647"))
            return LexError::NumberTooLarge;
    }
    return LexError::None;
}

Token Lexer::lexNumber(Token& t, bool code) {
    std::uint32_t p = pos_;
    bool isFloat = false;
    const LexError e = scanNumber(p, code, isFloat);
    pos_ = p;
    if (e != LexError::None) return fail(t, e, t.span.begin, position());
    return finish(t, isFloat ? Tok::Float : Tok::Integer);
}

Token Lexer::lexString(Token& t) {
    ++pos_; // the opening quote
    LexError error = LexError::None;
    Position errorBegin, errorEnd;
    char errorByte = 0;
    while (true) {
        if (atEnd(pos_)) {
            if (error == LexError::None) return fail(t, LexError::EofInString, t.span.begin, position());
            break;
        }
        const char c = text_[pos_];
        if (c == '"') {
            ++pos_;
            break;
        }
        if (isLineEnd(c)) {
            if (error == LexError::None) {
                error = LexError::NewlineInString;
                errorBegin = t.span.begin;
                errorEnd = position();
            }
            break; // the line end is not part of the token
        }
        if (c != '\\') {
            ++pos_;
            continue;
        }
        const char n = at(pos_ + 1);
        if (atEnd(pos_ + 1)) {
            pos_ = static_cast<std::uint32_t>(text_.size());
            if (error == LexError::None) return fail(t, LexError::EofInString, t.span.begin, position());
            break;
        }
        if (n == '\\' || n == '"' || n == 'n') {
            pos_ += 2;
        } else if (n == '\n') { // a continued line
            ++pos_;
            lineEnd();
        } else {
            if (error == LexError::None) {
                error = LexError::UnknownEscape;
                errorByte = n;
                errorBegin = position();
                errorEnd = positionAt(pos_ + (isLineEnd(n) ? 1 : 2)); // a span never takes in a line end
            }
            if (n == '\r') { // the string goes no further than its line
                ++pos_;
                continue;
            }
            pos_ += 2;
        }
    }
    if (error != LexError::None) return fail(t, error, errorBegin, errorEnd, errorByte);
    return finish(t, Tok::String);
}

Token Lexer::lexVector(Token& t) {
    ++pos_; // the opening quote
    auto skip = [&] {
        while (!atEnd(pos_) && isBlank(text_[pos_])) ++pos_;
    };
    // A fault: the token runs on to the closing quote on this line, so that reading goes on
    // after the literal.
    auto failHere = [&](LexError e, std::uint32_t errorEnd) {
        const Position begin = position();
        const Position end = positionAt(errorEnd);
        pos_ = errorEnd;
        if (text_[errorEnd - 1] == '\'' && errorEnd - 1 > t.span.begin.offset) return fail(t, e, begin, end);
        while (!atEnd(pos_) && !isLineEnd(text_[pos_]) && text_[pos_] != '\'') ++pos_;
        if (at(pos_) == '\'') ++pos_;
        return fail(t, e, begin, end);
    };
    auto wordEnd = [&](std::uint32_t p) {
        if (atEnd(p) || isLineEnd(text_[p])) return p;
        if (text_[p++] == '\'') return p; // the closing quote, too early
        while (isIdentChar(at(p)) || at(p) == '.') ++p;
        return p;
    };
    for (int component = 0; component < 3; ++component) {
        skip();
        std::uint32_t p = pos_;
        if (at(p) == '+' || at(p) == '-') ++p;
        if (!(isDigit(at(p)) || (at(p) == '.' && isDigit(at(p + 1)))))
            return failHere(LexError::VectorNeedsNumber, wordEnd(pos_));
        bool isFloat = false;
        const std::uint32_t numberBegin = p;
        if (const LexError e = scanNumber(p, true, isFloat); e != LexError::None) {
            pos_ = numberBegin;
            return failHere(e, p);
        }
        pos_ = p;
        skip();
        if (at(pos_) == ',') ++pos_;
    }
    skip();
    if (at(pos_) != '\'') return failHere(LexError::VectorTooLong, wordEnd(pos_));
    ++pos_;
    return finish(t, Tok::Vector);
}

Token Lexer::rawValue() {
    while (!atEnd(pos_) && (isBlank(text_[pos_]) || isLineEnd(text_[pos_]))) {
        if (isLineEnd(text_[pos_]))
            lineEnd();
        else
            ++pos_;
    }
    Token t;
    t.span.begin = position();
    while (!atEnd(pos_) && !isBlank(text_[pos_]) && !isLineEnd(text_[pos_]) && text_[pos_] != ',') ++pos_;
    return finish(t, atEnd(t.span.begin.offset) ? Tok::Eof : Tok::Word);
}

void Lexer::skipLine() {
    while (!atEnd(pos_) && !isLineEnd(text_[pos_])) ++pos_;
}

} // namespace language
