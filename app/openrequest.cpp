#include "app/openrequest.h"

namespace app {

namespace {

constexpr std::string_view kVerb = "OPEN ";
constexpr const char* kNotARequest = "not an open request";

} // namespace

bool isUtf8(std::string_view bytes) {
    for (std::size_t i = 0; i < bytes.size();) {
        const auto c = static_cast<unsigned char>(bytes[i]);
        std::size_t extra = 0;
        unsigned long value = 0;
        if (c < 0x80) {
            ++i;
            continue;
        }
        if (c >= 0xC2 && c <= 0xDF) {
            extra = 1;
            value = c & 0x1F;
        } else if (c >= 0xE0 && c <= 0xEF) {
            extra = 2;
            value = c & 0x0F;
        } else if (c >= 0xF0 && c <= 0xF4) {
            extra = 3;
            value = c & 0x07;
        } else {
            return false; // a continuation byte, an overlong lead byte, or past U+10FFFF
        }
        if (bytes.size() - i <= extra) return false;
        for (std::size_t k = 1; k <= extra; ++k) {
            const auto next = static_cast<unsigned char>(bytes[i + k]);
            if ((next & 0xC0) != 0x80) return false;
            value = value << 6 | (next & 0x3F);
        }
        static constexpr unsigned long kSmallest[] = {0, 0x80, 0x800, 0x10000};
        if (value < kSmallest[extra] || value > 0x10FFFF || (value >= 0xD800 && value <= 0xDFFF))
            return false;
        i += extra + 1;
    }
    return true;
}

std::string encodeOpenRequest(std::string_view path) {
    if (path.empty() || path.size() > kMaxRequestPath || path.find('\0') != std::string_view::npos ||
        !isUtf8(path))
        return {};
    return std::string(kVerb) + std::to_string(path.size()) + "\n" + std::string(path);
}

OpenRequestDecoder::State OpenRequestDecoder::refuse(std::string problem) {
    state_ = State::Refused;
    problem_ = std::move(problem);
    path_.clear();
    return state_;
}

OpenRequestDecoder::State OpenRequestDecoder::feed(std::string_view bytes) {
    if (state_ == State::Refused || bytes.empty()) return state_;
    if (state_ == State::Complete) return refuse("bytes after the request");
    std::size_t i = 0;
    for (; i < bytes.size() && !inPath_; ++i) { // the header, "OPEN <length>\n"
        const char c = bytes[i];
        const std::size_t at = header_.size();
        if (at < kVerb.size()) {
            if (c != kVerb[at]) return refuse(kNotARequest);
            header_ += c;
        } else if (c == '\n') {
            if (at == kVerb.size()) return refuse(kNotARequest);
            if (length_ == 0) return refuse("an empty path");
            inPath_ = true;
        } else if (c < '0' || c > '9' || (at == kVerb.size() + 1 && header_.back() == '0')) {
            return refuse(kNotARequest);
        } else {
            header_ += c;
            length_ = length_ * 10 + static_cast<std::size_t>(c - '0');
            if (length_ > kMaxRequestPath) // refused by the digit that makes it too long
                return refuse("a path longer than " + std::to_string(kMaxRequestPath) + " bytes");
        }
    }
    const std::string_view piece = bytes.substr(i, length_ - path_.size());
    if (piece.find('\0') != std::string_view::npos) return refuse("a NUL byte in the path");
    path_ += piece;
    if (!inPath_ || path_.size() < length_) return state_; // every byte given is in the path so far
    // The path first, then what follows it: the reason must not hang on how the bytes arrived.
    if (!isUtf8(path_)) return refuse("a path that is not UTF-8");
    if (i + piece.size() < bytes.size()) return refuse("bytes after the request");
    return state_ = State::Complete;
}

} // namespace app
