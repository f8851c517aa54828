// The subcommands of tessary-cli. Each takes the arguments after its own name and returns the
// process exit status: 0 all well, 1 findings or skipped lines, 2 usage error or unreadable file.
#pragma once

#include "language/verbs.h"

#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace cli {

using Args = std::vector<std::string>;

// Runs the command named by the first word with the words after it; the exit status.
int run(const Args& words);

int runOutline(const Args& args);
int runCheck(const Args& args);
int runReference(const Args& args);
int runGenerate(const Args& args);
int runLint(const Args& args);
int runLsp(const Args& args);

// The arguments of a command that reads files: --json, --help (or -h), "--" ending the options,
// and the files.
struct FileArgs {
    bool json = false;
    std::vector<std::string> files;
};
// Offered each other argument that starts with "-", with its index (which it may move past a value
// it takes); false for an option it does not know, and error set for one it cannot take.
using OptionHandler = std::function<bool(const Args& args, std::size_t& i, std::string& error)>;
// Parses the arguments of the command `name`. The exit status when the command ends here (0 after
// printing help, 2 after a usage error and the usage line), nothing when it goes on.
std::optional<int> parseFileArgs(const Args& args, const char* name, const char* help, const char* usage,
                                 FileArgs& parsed, const OptionHandler& option = {});

// Reads a whole file as bytes; false (and a message on stderr naming the file) when it cannot.
bool readFile(const std::string& path, std::string& bytes);
// The same, the message returned instead (empty when the file was read).
std::string readFileOrSayWhy(const std::string& path, std::string& bytes);

// Reads a data file (verbs.dat, cogref.dat) from beside the program or from its installed data
// folder; false when neither has it. path: where it was read.
bool readDataFile(const std::string& name, std::string& bytes, std::string& path);

// The verb table verbs.dat; false (said on stderr) when there is none. Skipped lines are
// reported on stderr.
bool loadVerbs(language::VerbTable& verbs);

// Reads each file in turn and hands its bytes to report, which returns false when the file has
// findings. The exit status: 2 when a file cannot be read (the others are still reported), else 1
// when a file has findings, else 0.
int forEachFile(const std::vector<std::string>& files,
                const std::function<bool(const std::string& file, const std::string& text)>& report);

} // namespace cli

namespace cli {

// Like forEachFile, with the files handled on every core: report writes what to print for a
// file into out and returns false when the file has findings. Outputs and the messages about
// unreadable files appear in the files' order. "-" is standard input, reported as "<stdin>".
using ParallelReport =
    std::function<bool(const std::string& file, const std::string& text, std::string& out)>;
int forEachFileInParallel(const std::vector<std::string>& files, const ParallelReport& report);

} // namespace cli
