// What the command line asks of the editor. It is one path, blanks included; only when no file
// of that name exists do --help and --version ask for the usage text or the version instead.
#pragma once

#include <string>
#include <string_view>

namespace app {

enum class StartRequest { Open, Help, Version };

StartRequest startRequest(std::string_view commandLine, bool namesExistingFile);

std::string usageText();
std::string versionText(std::string_view version); // "tessary 0.2.0"

} // namespace app
