// The recovery copy of a modified window: what a window holds that is not yet saved, written to a
// file of its own a few seconds after typing pauses, so that a crash loses at most those seconds.
#pragma once

#include "editor/diskstate.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace editor {

struct RecoveryRecord {
    std::string path;  // the window's file (UTF-8), or "blank" for a window never saved
    std::string title; // its file name without directory; empty for a window never saved
    DiskState disk;    // the file as the window last read or wrote it
    std::string text;  // the window's bytes
};

// The file's bytes: a short header of text lines, then the window's bytes unchanged.
std::string encodeRecovery(const RecoveryRecord& record);
// The header alone, for a text of textSize bytes written after it (record.text is not read).
std::string encodeRecoveryHeader(const RecoveryRecord& record, std::size_t textSize);
// The record, or nothing when the bytes are not a whole recovery file.
std::optional<RecoveryRecord> decodeRecovery(std::string_view bytes);

// The question asked at start-up about the copies that a program which ended without closing
// its windows left behind (UTF-8; line ends CR LF).
std::string recoveryOffer(const std::vector<RecoveryRecord>& records);

} // namespace editor
