// The messages file reader and the line splitter of the data files.
#include "editor/lines.h"
#include "editor/messages.h"
#include "tests/fuzz/fuzztarget.h"

#include <set>

TESSARY_FUZZ_TARGET(messages) {
    const std::string_view bytes = in.rest();
    std::size_t total = 0;
    for (const std::string_view line : editor::splitLines(bytes)) {
        fuzzing::require(line.find('\r') == std::string_view::npos, "a line keeps its CR");
        total += line.size();
    }
    fuzzing::require(total <= bytes.size(), "lines longer than the file");
    const std::vector<std::string> names = editor::readMessages(bytes);
    fuzzing::require(std::set<std::string>(names.begin(), names.end()).size() == names.size(),
                     "a name is listed twice");
}
