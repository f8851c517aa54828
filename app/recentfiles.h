// The recent-files list: four slots, the most recent first, each a file title and its full path.
// The rules here work on a plain copy of the slots; the menu that shows them lives in the frame.
#pragma once

#include <array>
#include <string>
#include <string_view>

namespace app {

struct RecentSlot {
    std::string title; // the file name without its directory; empty for an empty slot
    std::string path;  // the full path
    bool visible = false;
};

struct RecentFiles {
    static constexpr int kSlots = 4;
    std::array<RecentSlot, kSlots> entries;
    bool separatorVisible = false;
};

// Puts a file at the top of the list. Titles are compared exactly (letter case counts); the paths
// are not compared. A title already in slot 0 changes nothing, not even the stored path; one in
// slot 1 or 2 moves to the top, the slots above it moving down one; otherwise every slot moves
// down one and the last one's file drops out.
void addFile(RecentFiles& list, std::string_view path, std::string_view title);

// Fills slot k from a stored value (see parseStoredValue); a slot with a title becomes visible,
// and so does the separator.
void loadSlot(RecentFiles& list, int k, std::string_view value);

// The stored form of a slot: title + ":" + path; ":" for an empty slot.
std::string storedValue(const RecentSlot& slot);

// Reads a stored value back into a title and a path. The title is separated from the path by a
// ":"; since a file name may itself hold ":", the separating one is the ":" after which the rest
// ends in "/" + the title before it, or else the first ":". A value without ":" is an empty slot.
RecentSlot parseStoredValue(std::string_view value);

// The settings key of slot k: "1" to "4".
std::string slotKey(int k);

// The menu caption of slot k: "&" + (k + 1) + " " + title, with any "&" of the title doubled so
// that the menu shows it as written.
std::string slotCaption(int k, std::string_view title);

// The title shown by a caption made by slotCaption: the caption without its first three
// characters, doubled "&" read back as one.
std::string titleOfCaption(std::string_view caption);

} // namespace app
