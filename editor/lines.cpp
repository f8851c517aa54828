#include "editor/lines.h"

namespace editor {

std::vector<std::string_view> splitLines(std::string_view bytes) {
    std::vector<std::string_view> lines;
    std::size_t start = 0;
    while (start < bytes.size()) {
        const std::size_t cr = bytes.find('\r', start);
        if (cr == std::string_view::npos) {
            lines.push_back(bytes.substr(start));
            break;
        }
        lines.push_back(bytes.substr(start, cr - start));
        start = cr + 1;
        if (start < bytes.size() && bytes[start] == '\n') ++start;
    }
    return lines;
}

} // namespace editor
