#include "cli/commands.h"
#include "cli/json.h"
#include "reference/cogref.h"

#include <iostream>

namespace cli {

namespace {

const char* const kReferenceUsage =
    "Usage: tessary-cli reference [--json] FILE\n"
    "\n"
    "Reads a COG reference file as the editor does and prints its tree: the groups and, indented\n"
    "under each, the names of its entries. With --json prints {\"file\": FILE, \"nodes\": [...]},\n"
    "each node with its key, text, tag and parent, in tree order.\n"
    "Every line that is skipped is reported on stderr as FILE:LINE: REASON.\n"
    "\n"
    "Exit status: 0 nothing skipped; 1 some lines skipped; 2 a usage error or an unreadable file.\n";

} // namespace

int runReference(const Args& args) {
    bool json = false;
    std::string file;
    bool haveFile = false;
    for (const std::string& arg : args) {
        if (arg == "--help" || arg == "-h") {
            std::cout << kReferenceUsage;
            return 0;
        }
        if (arg == "--json") {
            json = true;
        } else if (!haveFile && (arg.empty() || arg[0] != '-' || arg == "-")) {
            file = arg;
            haveFile = true;
        } else {
            std::cerr << "tessary-cli reference: unexpected argument '" << arg << "'\n" << kReferenceUsage;
            return 2;
        }
    }
    if (!haveFile) {
        std::cerr << kReferenceUsage;
        return 2;
    }
    std::string bytes;
    if (!readFile(file, bytes)) return 2;
    const reference::CogRef ref = reference::readCogRef(bytes);
    if (json)
        std::cout << writeJson({{"file", jsonText(file)}, {"nodes", jsonNodes(ref.tree)}}) << "\n";
    else
        std::cout << plainTree(ref.tree);
    for (const auto& warning : ref.warnings)
        std::cerr << file << ":" << warning.line << ": " << warning.reason << "\n";
    return ref.warnings.empty() ? 0 : 1;
}

} // namespace cli
