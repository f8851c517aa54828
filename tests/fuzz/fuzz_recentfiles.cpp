// The recent-files values read back from the settings store, and the list kept by AddFile.
#include "app/recentfiles.h"
#include "tests/fuzz/fuzztarget.h"

TESSARY_FUZZ_TARGET(recentfiles) {
    app::RecentFiles list;
    for (int k = 0; k < app::RecentFiles::kSlots; ++k) app::loadSlot(list, k, in.piece());
    while (!in.empty()) {
        const std::string_view title = in.piece();
        const std::string_view path = in.piece();
        app::addFile(list, path, title);
        fuzzing::require(list.entries[0].title == title, "the added file is not on top");
    }
    for (int k = 0; k < app::RecentFiles::kSlots; ++k) {
        const app::RecentSlot& slot = list.entries[static_cast<std::size_t>(k)];
        if (slot.title.empty()) continue;
        fuzzing::require(app::titleOfCaption(app::slotCaption(k, slot.title)) == slot.title,
                         "a title does not survive its menu caption");
        const app::RecentSlot back = app::parseStoredValue(app::storedValue(slot));
        fuzzing::require(back.title.size() + back.path.size() == slot.title.size() + slot.path.size(),
                         "a stored value loses bytes");
    }
}
