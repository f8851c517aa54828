// tessary-cli: the COG rules of the editor for scripts and continuous integration.
#include "cli/commands.h"

#include <algorithm>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>
#include <sstream>

namespace cli {

bool readFile(const std::string& path, std::string& bytes) {
    std::error_code ec;
    if (std::filesystem::is_directory(path, ec)) { // opens, but reads nothing
        std::cerr << "tessary-cli: cannot read " << path << ": it is a directory\n";
        return false;
    }
    std::ifstream in(path, std::ios::binary);
    if (!in) {
        std::cerr << "tessary-cli: cannot read " << path << ": " << std::strerror(errno) << "\n";
        return false;
    }
    std::ostringstream buffer;
    buffer << in.rdbuf();
    if (in.bad()) {
        std::cerr << "tessary-cli: cannot read " << path << "\n";
        return false;
    }
    bytes = std::move(buffer).str();
    return true;
}

int forEachFile(const std::vector<std::string>& files,
                const std::function<bool(const std::string& file, const std::string& text)>& report) {
    int status = 0;
    for (const std::string& file : files) {
        std::string text;
        if (!readFile(file, text))
            status = 2;
        else if (!report(file, text))
            status = std::max(status, 1);
    }
    return status;
}

std::optional<int> parseFileArgs(const Args& args, const char* name, const char* help, const char* usage,
                                 FileArgs& parsed, const OptionHandler& option) {
    auto usageError = [&](const std::string& message) {
        std::cerr << "tessary-cli " << name << ": " << message << "\n" << usage;
        return 2;
    };
    bool optionsDone = false;
    for (std::size_t i = 0; i < args.size(); ++i) {
        const std::string& a = args[i];
        if (optionsDone || a.size() < 2 || a[0] != '-') {
            parsed.files.push_back(a);
        } else if (a == "--") {
            optionsDone = true;
        } else if (a == "--help" || a == "-h") {
            std::cout << help;
            return 0;
        } else if (a == "--json") {
            parsed.json = true;
        } else {
            std::string error;
            if (!option || !option(args, i, error)) return usageError("unknown option '" + a + "'");
            if (!error.empty()) return usageError(error);
        }
    }
    if (parsed.files.empty()) return usageError("no file given");
    return std::nullopt;
}

} // namespace cli

namespace {

const char* const kUsage =
    "Usage: tessary-cli COMMAND [OPTIONS] FILE...\n"
    "\n"
    "Commands:\n"
    "  outline [--json] FILE...            the explorer tree of each COG file\n"
    "  check [--json] [--caret N] FILE...  brace and section findings, as FILE:LINE:COLUMN: TEXT\n"
    "  reference [--json] FILE             the tree of a reference file, warnings for skipped lines\n"
    "  generate TEMPLATE [NAME=VALUE]...   the COG text a template generates (--list: its parameters)\n"
    "\n"
    "Exit status: 0 all well; 1 an incomplete tree, a finding or a skipped line; 2 a usage error\n"
    "or a file that cannot be read.\n"
    "Run 'tessary-cli COMMAND --help' for the details of one command.\n";

} // namespace

int main(int argc, char** argv) {
    if (argc < 2) {
        std::cerr << kUsage;
        return 2;
    }
    const std::string command = argv[1];
    const cli::Args args(argv + 2, argv + argc);
    if (command == "--help" || command == "-h" || command == "help") {
        std::cout << kUsage;
        return 0;
    }
    if (command == "outline") return cli::runOutline(args);
    if (command == "check") return cli::runCheck(args);
    if (command == "reference") return cli::runReference(args);
    if (command == "generate") return cli::runGenerate(args);
    std::cerr << "tessary-cli: unknown command '" << command << "'\n" << kUsage;
    return 2;
}
