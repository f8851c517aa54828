// The base layer of the language server protocol: messages framed by a header of
// "Name: value" lines (Content-Length required), an empty line, and a body of exactly
// Content-Length bytes. The reader takes the input in pieces of any size and hands out whole
// bodies, or the faults it met and read past, so that bad input never stops the server.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace lsp {

inline constexpr std::size_t kMaxBody = std::size_t(64) << 20; // bytes of one message
inline constexpr std::size_t kMaxHeader = 8192;                // bytes of one header

struct Frame {
    enum class Kind {
        Body,      // body holds the message
        BadHeader, // a header that cannot be read; reading goes on at the next "Content-Length:"
        TooLarge,  // a body over kMaxBody; its bytes are skipped
    };
    Kind kind = Kind::Body;
    std::string body;
    std::string fault; // what was wrong, for the error answer
};

class MessageReader {
public:
    void feed(std::string_view bytes);
    // The next whole message or fault; nothing until more bytes come.
    std::optional<Frame> next();
    // Bytes of an unfinished message are held (a message cut short when the input ends).
    bool holdsPart() const { return buffer_.size() > begin_ || skip_ > 0 || inBody_; }

private:
    std::optional<Frame> fail(Frame::Kind kind, std::string fault, std::size_t consumed);

    std::string buffer_;
    std::size_t begin_ = 0;      // bytes of buffer_ already handed out
    std::size_t skip_ = 0;       // body bytes of a refused message still to drop
    std::size_t bodyLength_ = 0; // of the message whose header was read
    bool inBody_ = false;
    bool resync_ = false; // after a bad header: drop bytes up to a Content-Length line
};

} // namespace lsp
