// The message names offered by the pop-up list while a message declaration is typed.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace editor {

// The names of a messages file: every line after the first, whole (no trimming), in file order.
// A line that repeats an earlier one is kept once, at its first place.
std::vector<std::string> readMessages(std::string_view bytes);

// The names of the messages file at path; empty when the file is missing or cannot be read.
std::vector<std::string> loadMessages(const std::string& path);

} // namespace editor
