#include "editor/messages.h"

#include "editor/lines.h"

#include <filesystem>
#include <fstream>
#include <iterator>
#include <unordered_set>

namespace editor {

std::vector<std::string> readMessages(std::string_view bytes) {
    const auto lines = splitLines(bytes);
    std::vector<std::string> names;
    std::unordered_set<std::string_view> seen;
    for (std::size_t i = 1; i < lines.size(); ++i) // the first line is a free title
        if (seen.insert(lines[i]).second) names.emplace_back(lines[i]);
    return names;
}

std::vector<std::string> loadMessages(const std::string& path) {
    std::error_code error;
    if (!std::filesystem::is_regular_file(path, error)) return {};
    try {
        std::ifstream in(path, std::ios::binary);
        if (!in) return {};
        const std::string bytes{std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
        if (in.bad()) return {};
        return readMessages(bytes);
    } catch (const std::exception&) { // a read error: no names rather than a fault
        return {};
    }
}

} // namespace editor
