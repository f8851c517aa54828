#include "editor/recovery.h"

#include <charconv>

namespace editor {

namespace {

constexpr std::string_view kMagic = "Tessary recovery 1\n";

// Header values stay on one line: '%', CR and LF are written as %25, %0D and %0A.
std::string escape(std::string_view value) {
    std::string out;
    for (const char c : value) {
        if (c == '%')
            out += "%25";
        else if (c == '\r')
            out += "%0D";
        else if (c == '\n')
            out += "%0A";
        else
            out += c;
    }
    return out;
}

std::optional<std::string> unescape(std::string_view value) {
    std::string out;
    for (std::size_t i = 0; i < value.size(); ++i) {
        if (value[i] != '%') {
            out += value[i];
            continue;
        }
        const std::string_view code = value.substr(i + 1, 2);
        if (code == "25")
            out += '%';
        else if (code == "0D")
            out += '\r';
        else if (code == "0A")
            out += '\n';
        else
            return std::nullopt;
        i += 2;
    }
    return out;
}

template <typename T> bool number(std::string_view text, T& value) {
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    return error == std::errc() && end == text.data() + text.size();
}

// Takes the next header line "<name> <value>" off bytes.
std::optional<std::string_view> field(std::string_view& bytes, std::string_view name) {
    const std::size_t end = bytes.find('\n');
    if (end == std::string_view::npos) return std::nullopt;
    std::string_view line = bytes.substr(0, end);
    bytes.remove_prefix(end + 1);
    if (!line.starts_with(name) || line.substr(name.size(), 1) != " ") return std::nullopt;
    return line.substr(name.size() + 1);
}

std::string latin1ToUtf8(std::string_view bytes) {
    std::string out;
    for (const unsigned char c : bytes) {
        if (c < 0x80) {
            out += static_cast<char>(c);
        } else {
            out += static_cast<char>(0xC0 | (c >> 6));
            out += static_cast<char>(0x80 | (c & 0x3F));
        }
    }
    return out;
}

} // namespace

std::string encodeRecovery(const RecoveryRecord& r) {
    return encodeRecoveryHeader(r, r.text.size()) + r.text;
}

std::string encodeRecoveryHeader(const RecoveryRecord& r, std::size_t textSize) {
    std::string out(kMagic);
    out += "path " + escape(r.path) + "\n";
    out += "title " + escape(r.title) + "\n";
    out += "disk " + std::string(r.disk.exists ? "1 " : "0 ") + std::to_string(r.disk.size) + " " +
           std::to_string(r.disk.mtimeNs) + " " + (r.disk.hash.empty() ? "-" : r.disk.hash) + "\n";
    out += "text " + std::to_string(textSize) + "\n";
    return out;
}

std::optional<RecoveryRecord> decodeRecovery(std::string_view bytes) {
    const std::string_view all = bytes;
    if (!bytes.starts_with(kMagic)) return std::nullopt;
    bytes.remove_prefix(kMagic.size());
    RecoveryRecord r;
    const auto path = field(bytes, "path");
    const auto title = field(bytes, "title");
    const auto disk = field(bytes, "disk");
    const auto text = field(bytes, "text");
    if (!path || !title || !disk || !text) return std::nullopt;
    auto p = unescape(*path), t = unescape(*title);
    if (!p || !t || p->empty()) return std::nullopt;
    r.path = std::move(*p);
    r.title = std::move(*t);

    // "disk <exists 0|1> <size> <mtime> <hash or ->"
    std::string_view parts[4];
    std::string_view rest = *disk;
    for (auto& part : parts) {
        const std::size_t space = rest.find(' ');
        part = rest.substr(0, space);
        rest = space == std::string_view::npos ? std::string_view() : rest.substr(space + 1);
    }
    if (!rest.empty() || (parts[0] != "0" && parts[0] != "1") || !number(parts[1], r.disk.size) ||
        !number(parts[2], r.disk.mtimeNs) || parts[3].empty())
        return std::nullopt;
    r.disk.exists = parts[0] == "1";
    if (parts[3] != "-") r.disk.hash = parts[3];

    std::size_t length = 0;
    if (!number(*text, length) || length != bytes.size()) return std::nullopt; // cut short or too long
    // Only a header as this program writes it (no leading zeros, no raw CR in a name) is taken.
    if (encodeRecoveryHeader(r, length) != all.substr(0, all.size() - bytes.size())) return std::nullopt;
    r.text = bytes;
    return r;
}

std::string recoveryOffer(const std::vector<RecoveryRecord>& records) {
    std::string out = "Tessary ended last time without saving the text of ";
    out += records.size() == 1 ? "this window:\r\n" : "these windows:\r\n";
    for (const auto& r : records) {
        out += "\r\n    ";
        if (r.path != "blank") {
            out += r.title + "  (" + r.path + ")";
            continue;
        }
        // A window never saved has no name: its first line tells which one it was.
        std::string_view first(r.text);
        first = first.substr(0, first.find_first_of("\r\n"));
        out += "a window never saved";
        if (!first.empty())
            out +=
                ", beginning \"" + latin1ToUtf8(first.substr(0, 40)) + (first.size() > 40 ? "...\"" : "\"");
    }
    out += "\r\n\r\nRestore the text into new windows? Yes restores it, No discards it, Cancel keeps it for "
           "the next start.";
    return out;
}

} // namespace editor
