// The subcommands of tessary-cli. Each takes the arguments after its own name and returns the
// process exit status: 0 all well, 1 findings or skipped lines, 2 usage error or unreadable file.
#pragma once

#include <string>
#include <vector>

namespace cli {

using Args = std::vector<std::string>;

int runOutline(const Args& args);
int runCheck(const Args& args);
int runReference(const Args& args);
int runGenerate(const Args& args);

// Reads a whole file as bytes; false (and a message on stderr naming the file) when it cannot.
bool readFile(const std::string& path, std::string& bytes);

} // namespace cli
