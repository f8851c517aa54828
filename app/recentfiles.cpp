#include "app/recentfiles.h"

namespace app {

namespace {

void moveDown(RecentFiles& list, int from, bool reveal) {
    auto& target = list.entries[static_cast<std::size_t>(from + 1)];
    const auto& source = list.entries[static_cast<std::size_t>(from)];
    target.title = source.title;
    target.path = source.path;
    if (reveal && !target.title.empty()) target.visible = true;
}

} // namespace

void addFile(RecentFiles& list, std::string_view path, std::string_view title) {
    int found = -1;
    for (int k = 0; k < RecentFiles::kSlots && found < 0; ++k)
        if (list.entries[static_cast<std::size_t>(k)].title == title) found = k;
    if (found == 0) return;
    if (found == 1 || found == 2) {
        for (int k = found - 1; k >= 0; --k) moveDown(list, k, false);
    } else {
        for (int k = RecentFiles::kSlots - 2; k >= 0; --k) moveDown(list, k, true);
    }
    auto& top = list.entries[0];
    top.title = title;
    top.path = path;
    top.visible = true;
    list.separatorVisible = true;
}

void loadSlot(RecentFiles& list, int k, std::string_view value) {
    if (k < 0 || k >= RecentFiles::kSlots) return;
    auto& slot = list.entries[static_cast<std::size_t>(k)];
    const RecentSlot read = parseStoredValue(value);
    slot.title = read.title;
    slot.path = read.path;
    if (!slot.title.empty()) {
        slot.visible = true;
        list.separatorVisible = true;
    }
}

std::string storedValue(const RecentSlot& slot) {
    return slot.title + ":" + slot.path;
}

RecentSlot parseStoredValue(std::string_view value) {
    const auto first = value.find(':');
    if (first == std::string_view::npos) return {};
    auto split = first;
    for (auto at = first; at != std::string_view::npos; at = value.find(':', at + 1)) {
        const std::string_view title = value.substr(0, at);
        const std::string_view path = value.substr(at + 1);
        if (title.find('/') != std::string_view::npos) break; // a file name holds no "/"
        if (title.empty()) continue;
        if (path.size() > title.size() && path.ends_with(title) &&
            path[path.size() - title.size() - 1] == '/') {
            split = at;
            break;
        }
    }
    RecentSlot slot;
    slot.title = std::string(value.substr(0, split));
    slot.path = std::string(value.substr(split + 1));
    return slot;
}

std::string slotKey(int k) {
    return std::to_string(k + 1);
}

std::string slotCaption(int k, std::string_view title) {
    std::string caption = "&";
    caption += std::to_string(k + 1);
    caption += ' ';
    for (char c : title) {
        if (c == '&') caption += '&';
        caption += c;
    }
    return caption;
}

std::string titleOfCaption(std::string_view caption) {
    if (caption.size() <= 3) return {};
    const std::string_view rest = caption.substr(3);
    std::string title;
    for (std::size_t i = 0; i < rest.size(); ++i) {
        title += rest[i];
        if (rest[i] == '&' && i + 1 < rest.size() && rest[i + 1] == '&') ++i;
    }
    return title;
}

} // namespace app
