// tessary-cli on any command line: the words are cut from the input ('/' and NUL made '_', so
// that every file named is one of a small folder's own), the command runs with its output kept
// in memory, and it ends with a status of 0, 1 or 2; JSON output is one object a line.
#include "cli/commands.h"
#include "tests/fuzz/fuzztarget.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <iostream>
#include <sstream>
#include <unistd.h>

namespace {

// A folder holding a script, a template and a reference file, made once per run and removed at
// its end.
struct FuzzFolder {
    std::string path;
    FuzzFolder() {
        char name[] = "/tmp/tessary-fuzz-cli-XXXXXX";
        fuzzing::require(::mkdtemp(name) != nullptr, "no folder for the files");
        path = name;
        for (const auto& [file, text] : kFiles) std::ofstream(path + "/" + file, std::ios::binary) << text;
    }
    ~FuzzFolder() {
        for (const auto& [file, text] : kFiles) std::remove((path + "/" + file).c_str());
        ::rmdir(path.c_str());
    }
    static constexpr std::pair<const char*, const char*> kFiles[] = {
        {"a.cog", "# door\r\nsymbols\r\nmessage activated\r\nthing door=-1 linkid=1\r\nend\r\ncode\r\n"
                  "activated:\r\n  // open {\r\n  return;\r\nend\r\n"},
        {"t.cgt",
         "3\r\nValue,Name,Note\r\n2.0,speed,how fast\r\ndoor,what,\r\nend\r\n# <%what%> <%speed%>\r\n"},
        {"r.dat", "A reference\r\n.Group\r\nVerb(x)|Does a thing.\r\nbroken line\r\n"},
    };
};

} // namespace

TESSARY_FUZZ_TARGET(cli) {
    cli::Args words;
    while (!in.empty() && words.size() < 12) {
        std::string word(in.piece());
        for (char& c : word)
            if (c == '/' || c == '\0') c = '_';
        words.push_back(std::move(word));
    }
    // The language server reads the process's own standard input; the lspreader target feeds it.
    if (!words.empty() && words[0] == "lsp") return;
    char cwd[4096];
    static const FuzzFolder folder;
    fuzzing::require(::getcwd(cwd, sizeof cwd) != nullptr && ::chdir(folder.path.c_str()) == 0, "no folder");
    std::ostringstream out, err;
    std::streambuf* const oldOut = std::cout.rdbuf(out.rdbuf());
    std::streambuf* const oldErr = std::cerr.rdbuf(err.rdbuf());
    const int status = cli::run(words);
    std::cout.rdbuf(oldOut);
    std::cerr.rdbuf(oldErr);
    fuzzing::require(::chdir(cwd) == 0, "cannot go back");

    fuzzing::require(status >= 0 && status <= 2, "an exit status other than 0, 1 or 2");
    auto given = [&](const char* word) { return std::find(words.begin(), words.end(), word) != words.end(); };
    const bool json = !words.empty() &&
                      (words[0] == "outline" || words[0] == "check" || words[0] == "reference") &&
                      given("--json") && !given("--") && !given("--help") && !given("-h");
    if (json && status != 2) {
        std::istringstream lines(out.str());
        for (std::string line; std::getline(lines, line);)
            fuzzing::require(line.size() >= 2 && line.front() == '{' && line.back() == '}',
                             "JSON output not one object a line");
    }
}
