#include "cli/commands.h"
#include "cli/json.h"
#include "cli/textpos.h"
#include "cog/explorer.h"

#include <filesystem>
#include <iostream>

namespace cli {

namespace {

const char* const kOutlineHelp =
    "Usage: tessary-cli outline [--json] FILE...\n"
    "\n"
    "Prints the explorer tree of each COG file, read by the same rules as the editor's\n"
    "CogExplorer: the root (the file's name), \"symbols\" with one group per type keyword and\n"
    "the declared names under it, and \"code\" with the declared messages and the \"//\" comments\n"
    "of each message's handler.\n"
    "\n"
    "Plain output: the tree, one node a line, indented two spaces a level. When the tree stops\n"
    "early, a line on stderr says why and, where there is a place, where (FILE:LINE:COLUMN:):\n"
    "a line or comment equal to an earlier one (the tree stops at the second), no symbols line,\n"
    "no end line or an end line above the symbols line, a declaration or comment without its\n"
    "line break, a message label without \"return;\" after it.\n"
    "\n"
    "--json: one JSON object per file, one line each:\n"
    "  {\"file\": F, \"nodes\": [{\"key\": K, \"text\": T, \"tag\": G, \"parent\": P}, ...], \"stop\": S}\n"
    "with the nodes in the order they were added, P the parent's key (null for the root), and S\n"
    "null for a complete tree, {\"reason\": \"duplicate\", \"key\": K} when the tree stopped at\n"
    "a key it already held, or {\"reason\": \"failure\"} when it stopped otherwise. Bytes\n"
    "0x80-0xFF are written as the characters U+0080-U+00FF; CR, LF and tab as \\r, \\n and \\t.\n"
    "\n"
    "Exit status: 0 every tree complete; 1 a tree stopped early; 2 a usage error or a file\n"
    "that cannot be read (named on stderr; the other files are still read).\n";

const char* const kOutlineUsage = "Usage: tessary-cli outline [--json] FILE...  (--help for more)\n";

Json stopJson(const cog::ExplorerResult& result) {
    switch (result.stop) {
    case cog::ExplorerResult::Stop::None:
        return nullptr;
    case cog::ExplorerResult::Stop::DuplicateKey:
        return {{"reason", "duplicate"}, {"key", jsonText(result.offendingKey)}};
    case cog::ExplorerResult::Stop::Failure:
        break;
    }
    return {{"reason", "failure"}};
}

void reportStop(const std::string& file, std::string_view text, const cog::ExplorerResult& result) {
    if (result.stop == cog::ExplorerResult::Stop::DuplicateKey)
        std::cerr << location(file, text, result.selStart)
                  << ": the same line or comment as an earlier one; the tree stops here: "
                  << jsonString(result.offendingKey) << "\n";
    else if (result.stop == cog::ExplorerResult::Stop::Failure)
        std::cerr << (result.selStart >= 0 ? location(file, text, result.selStart) : file) << ": "
                  << result.failure << "; the tree stops "
                  << (result.tree.empty() ? "before it begins" : "here") << "\n";
}

} // namespace

int runOutline(const Args& args) {
    FileArgs parsed;
    if (const auto status = parseFileArgs(args, "outline", kOutlineHelp, kOutlineUsage, parsed))
        return *status;
    return forEachFile(parsed.files, [&](const std::string& file, const std::string& text) {
        const std::string caption = std::filesystem::path(file).filename().string();
        const cog::ExplorerResult result = cog::buildExplorer(text, caption, cog::symbolTypes());
        if (parsed.json) {
            std::cout << writeJson({{"file", jsonText(file)},
                                    {"nodes", jsonNodes(result.tree)},
                                    {"stop", stopJson(result)}})
                      << "\n";
        } else {
            std::cout << plainTree(result.tree);
            std::cout.flush();
            reportStop(file, text, result);
        }
        return result.complete();
    });
}

} // namespace cli
