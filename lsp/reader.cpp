#include "lsp/reader.h"

#include "language/text.h"

#include <charconv>

namespace lsp {

namespace {

constexpr std::string_view kLengthHeader = "content-length:";

std::string_view trim(std::string_view s) {
    while (!s.empty() && (s.front() == ' ' || s.front() == '\t')) s.remove_prefix(1);
    while (!s.empty() && (s.back() == ' ' || s.back() == '\t' || s.back() == '\r')) s.remove_suffix(1);
    return s;
}

bool startsWithNoCase(std::string_view s, std::string_view prefix) {
    return s.size() >= prefix.size() && language::equalsNoCase(s.substr(0, prefix.size()), prefix);
}

} // namespace

void MessageReader::feed(std::string_view bytes) {
    buffer_.erase(0, begin_);
    begin_ = 0;
    const std::size_t dropped = std::min(skip_, bytes.size());
    skip_ -= dropped;
    buffer_.append(bytes.substr(dropped));
}

std::optional<Frame> MessageReader::fail(Frame::Kind kind, std::string fault, std::size_t consumed) {
    begin_ += consumed;
    resync_ = kind == Frame::Kind::BadHeader;
    return Frame{kind, {}, std::move(fault)};
}

std::optional<Frame> MessageReader::next() {
    std::string_view data = std::string_view(buffer_).substr(begin_);
    // After a bad header: on to the next Content-Length, wherever it stands.
    if (resync_) {
        std::size_t at = 0;
        while (at < data.size() && !startsWithNoCase(data.substr(at), kLengthHeader)) ++at;
        if (at + kLengthHeader.size() > data.size()) { // keep what may be the start of one
            begin_ += data.size() - std::min(data.size(), kLengthHeader.size() - 1);
            return std::nullopt;
        }
        resync_ = false;
        begin_ += at;
        data.remove_prefix(at);
    }
    if (!inBody_) {
        std::size_t pos = 0;
        std::optional<std::size_t> length;
        while (true) {
            const std::size_t lf = data.find('\n', pos);
            if (lf >= kMaxHeader && data.size() > kMaxHeader)
                return fail(Frame::Kind::BadHeader, "the header is longer than 8192 bytes", kMaxHeader);
            if (lf == std::string_view::npos) return std::nullopt; // more to come
            const std::size_t lineStart = pos;
            const std::string_view line = trim(data.substr(pos, lf - pos));
            pos = lf + 1;
            if (line.empty()) {
                if (length) break;
                if (lineStart == 0) { // a line end between messages: read past it
                    begin_ += pos;
                    data.remove_prefix(pos);
                    pos = 0;
                    continue;
                }
                return fail(Frame::Kind::BadHeader, "the header has no Content-Length", pos);
            }
            const std::size_t colon = line.find(':');
            if (colon == std::string_view::npos)
                return fail(Frame::Kind::BadHeader, "a header line without ':'", pos);
            if (!language::equalsNoCase(trim(line.substr(0, colon)), "content-length")) continue;
            const std::string_view value = trim(line.substr(colon + 1));
            std::size_t n = 0;
            const auto [end, ec] = std::from_chars(value.data(), value.data() + value.size(), n);
            if (value.empty() || ec != std::errc() || end != value.data() + value.size())
                return fail(Frame::Kind::BadHeader, "Content-Length is not a number of bytes", pos);
            length = n;
        }
        begin_ += pos;
        data.remove_prefix(pos);
        if (*length > kMaxBody) {
            const std::size_t dropped = std::min(*length, data.size());
            skip_ = *length - dropped;
            begin_ += dropped;
            return Frame{Frame::Kind::TooLarge,
                         {},
                         "a message of " + std::to_string(*length) + " bytes is over the limit of " +
                             std::to_string(kMaxBody) + " bytes"};
        }
        inBody_ = true;
        bodyLength_ = *length;
    }
    if (data.size() < bodyLength_) return std::nullopt;
    inBody_ = false;
    begin_ += bodyLength_;
    return Frame{Frame::Kind::Body, std::string(data.substr(0, bodyLength_)), {}};
}

} // namespace lsp
