// The request by which a second start of the program hands a path to the one already running,
// over a local socket. Both sides are written here so that they always agree:
//
//     OPEN <length>\n<path>
//
// where the path is <length> bytes of UTF-8 (1 to kMaxRequestPath bytes, no NUL byte) and the
// length is written in decimal without leading zeros. The running program answers "ok\n" when it
// takes the path, or "refused: <why>\n", and closes the connection.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace app {

// The longest path a request carries, in bytes; longer ones are not handed over.
inline constexpr std::size_t kMaxRequestPath = 4096;

// The request for path; empty when the path cannot be sent (empty, too long, a NUL byte, not UTF-8).
std::string encodeOpenRequest(std::string_view path);

// Reads one request as its bytes arrive, in pieces of any size. Each byte is looked at once and
// at most kMaxRequestPath + a few bytes are kept, so a hostile peer costs neither time nor memory.
class OpenRequestDecoder {
public:
    enum class State { Incomplete, Complete, Refused };

    // Takes the next bytes; the state after them. A request is refused as soon as a byte shows
    // it malformed; bytes after a complete request refuse it too.
    State feed(std::string_view bytes);

    State state() const { return state_; }
    const std::string& path() const { return path_; }       // once Complete
    const std::string& problem() const { return problem_; } // once Refused

private:
    State refuse(std::string problem);

    State state_ = State::Incomplete;
    std::string header_; // the header's bytes so far, without its line feed
    bool inPath_ = false;
    std::size_t length_ = 0;
    std::string path_;
    std::string problem_;
};

// True when bytes are well-formed UTF-8 (no overlong forms, surrogates or values past U+10FFFF).
bool isUtf8(std::string_view bytes);

} // namespace app
