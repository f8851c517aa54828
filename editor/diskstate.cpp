#include "editor/diskstate.h"

#include <algorithm>
#include <charconv>
#include <cstdio>

namespace editor {

DiskChange compareDiskState(const DiskState& known, const DiskState& now) {
    if (!now.exists) return known.exists ? DiskChange::Deleted : DiskChange::Unchanged;
    if (!known.exists || now.size != known.size) return DiskChange::Changed;
    if (!known.hash.empty() && !now.hash.empty())
        return known.hash == now.hash ? DiskChange::Unchanged : DiskChange::Changed;
    return now.mtimeNs == known.mtimeNs ? DiskChange::Unchanged : DiskChange::Changed;
}

std::uint64_t openLimit(std::uint64_t available) {
    if (available == 0) return kMaxOpenBytes;
    return std::min(kMaxOpenBytes, available / 3);
}

std::uint64_t memAvailable(std::string_view meminfo) {
    constexpr std::string_view key = "MemAvailable:";
    const std::size_t at = meminfo.find(key);
    if (at == std::string_view::npos || (at > 0 && meminfo[at - 1] != '\n')) return 0;
    std::string_view rest = meminfo.substr(at + key.size());
    rest.remove_prefix(std::min(rest.find_first_not_of(' '), rest.size()));
    std::uint64_t kib = 0;
    const auto [end, error] = std::from_chars(rest.data(), rest.data() + rest.size(), kib);
    if (error != std::errc() || kib > UINT64_MAX / 1024) return 0;
    return std::string_view(end, rest.data() + rest.size() - end).starts_with(" kB") ? kib * 1024 : 0;
}

std::string describeSize(std::uint64_t bytes) {
    const char* units[] = {"KB", "MB", "GB", "TB"};
    if (bytes < 1024) return std::to_string(bytes) + (bytes == 1 ? " byte" : " bytes");
    double value = static_cast<double>(bytes) / 1024;
    int unit = 0;
    while (value >= 1024 && unit < 3) {
        value /= 1024;
        ++unit;
    }
    char text[32];
    std::snprintf(text, sizeof text, value < 10 ? "%.1f %s" : "%.0f %s", value, units[unit]);
    return text;
}

std::string refusalReason(FileKind kind, std::uint64_t size, std::uint64_t limit) {
    switch (kind) {
    case FileKind::Missing:
        return "it does not exist";
    case FileKind::Directory:
        return "it is a directory";
    case FileKind::Other:
        return "it is not a regular file (a pipe, a device or a socket)";
    case FileKind::Regular:
        break;
    }
    if (size > limit)
        return "it is too large (" + describeSize(size) + "; this editor opens files up to " +
               describeSize(limit) + ")";
    return {};
}

} // namespace editor
