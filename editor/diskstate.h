// What a window knows of its file on disk, and the rules that compare it with what is there now
// and decide whether a file may be opened at all.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace editor {

// The file as it was when the window last read or wrote it, or as it is now.
struct DiskState {
    bool exists = false;
    std::uint64_t size = 0;
    std::int64_t mtimeNs = 0; // modification time, nanoseconds since the epoch
    std::string hash;         // digest of the bytes; empty when they were not read
    bool operator==(const DiskState&) const = default;
};

enum class DiskChange { Unchanged, Changed, Deleted };

// Whether the file changed since `known` was taken. The bytes decide when both digests are known
// (a file rewritten with the same bytes is unchanged); otherwise size and time do.
DiskChange compareDiskState(const DiskState& known, const DiskState& now);

// What a path names, as far as opening it goes.
enum class FileKind { Missing, Regular, Directory, Other };

// The largest file the editor opens when `memAvailable` bytes of memory are free (0: unknown).
// The editor keeps about two bytes per byte of text, and a file is never allowed to take the
// last of the memory.
std::uint64_t openLimit(std::uint64_t memAvailable);
inline constexpr std::uint64_t kMaxOpenBytes = std::uint64_t{1} << 30;

// The MemAvailable figure of /proc/meminfo in bytes; 0 when absent.
std::uint64_t memAvailable(std::string_view meminfo);

// Why a file cannot be opened ("it is a directory", ...), or "" when it can.
std::string refusalReason(FileKind kind, std::uint64_t size, std::uint64_t limit);

// "1.5 GB", "700 KB", "12 bytes": a size for messages.
std::string describeSize(std::uint64_t bytes);

} // namespace editor
