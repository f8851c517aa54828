// Splitting the program's data files into lines.
#pragma once

#include <string_view>
#include <vector>

namespace editor {

// The lines of a text whose lines end at CR LF or at a CR alone; the terminator is not part of
// the line, and a line feed that does not follow a CR stays inside its line. A terminator at the
// very end does not start another, empty line.
std::vector<std::string_view> splitLines(std::string_view bytes);

} // namespace editor
