// The reader of recovery copies: whatever a copy on disk holds, reading it never fails badly, and
// a copy that reads back is written again byte for byte.
#include "editor/recovery.h"
#include "tests/fuzz/fuzztarget.h"

TESSARY_FUZZ_TARGET(recovery) {
    const std::string_view bytes = in.rest();
    const auto record = editor::decodeRecovery(bytes);
    if (!record) return;
    fuzzing::require(editor::encodeRecovery(*record) == bytes, "a copy is not written back as it was read");
    fuzzing::require(!editor::recoveryOffer({*record}).empty(), "no question for a copy");
}
