#include "cli/commands.h"
#include "cli/json.h"
#include "language/analyse.h"

#include <algorithm>
#include <filesystem>
#include <iostream>

namespace cli {

namespace {

const char* const kLintHelp =
    "Usage: tessary-cli lint [--json] [--werror] [--syntax-only] PATH...\n"
    "\n"
    "Checks COG scripts as the language reads them: lexical and syntax errors, the symbols\n"
    "section (types, default values, extensions), names, verbs and their arguments, the types of\n"
    "expressions, labels and calls, and code that never runs or runs on into another label.\n"
    "\n"
    "PATH is a file, a folder (every *.cog file below it, in sorted order) or - (standard input,\n"
    "reported as <stdin>). Files are checked in parallel; the output keeps the order of the paths.\n"
    "\n"
    "Plain output: one line a diagnostic, FILE:LINE:COLUMN: error: TEXT or\n"
    "FILE:LINE:COLUMN: warning: TEXT, with the 1-based line and byte column where it starts.\n"
    "\n"
    "--json: one JSON object per file, one line each:\n"
    "  {\"file\": F, \"diagnostics\": [{\"line\": L, \"column\": C, \"endLine\": EL, \"endColumn\": EC,\n"
    "  \"severity\": \"error\" or \"warning\", \"code\": K, \"text\": T}, ...]}\n"
    "where the end is the place just past the diagnostic's last byte and K a stable short name of\n"
    "the check (for example \"unknown-verb\").\n"
    "\n"
    "--werror: a warning fails the run as an error does.\n"
    "--syntax-only: only lexical and syntax errors, for scripts still being written.\n"
    "\n"
    "The verbs come from verbs.dat beside the program (or in its installed data folder).\n"
    "\n"
    "Exit status: 0 no file has an error (warnings alone pass); 1 a file has an error (or a\n"
    "warning, with --werror); 2 a usage error, a path that cannot be read (named on stderr; the\n"
    "other paths are still checked) or no verb table.\n";

const char* const kLintUsage =
    "Usage: tessary-cli lint [--json] [--werror] [--syntax-only] PATH...  (--help for more)\n";

bool isCogFile(const std::filesystem::path& p) {
    std::string ext = p.extension().string();
    std::transform(ext.begin(), ext.end(), ext.begin(), [](unsigned char c) { return std::tolower(c); });
    return ext == ".cog";
}

// The files to check: folders replaced by the *.cog files below them, sorted. False when a
// folder cannot be read to its end (said on stderr).
bool expandPaths(const std::vector<std::string>& paths, std::vector<std::string>& files) {
    bool ok = true;
    for (const std::string& path : paths) {
        std::error_code ec;
        if (path == "-" || !std::filesystem::is_directory(path, ec)) {
            files.push_back(path);
            continue;
        }
        std::vector<std::string> found;
        std::filesystem::recursive_directory_iterator it(path, ec), end;
        for (; !ec && it != end; it.increment(ec))
            if (it->is_regular_file(ec) && isCogFile(it->path()))
                found.push_back(it->path().lexically_normal());
        if (ec) {
            std::cerr << "tessary-cli: cannot read the folder " << path << ": " << ec.message() << "\n";
            ok = false;
        }
        std::sort(found.begin(), found.end());
        files.insert(files.end(), found.begin(), found.end());
    }
    return ok;
}

// The verb table beside the program, or in the data folder of an installed one.

std::string jsonDiagnostics(const std::string& file, const std::vector<language::Diagnostic>& diagnostics) {
    Json list = Json::array();
    for (const language::Diagnostic& d : diagnostics)
        list.push_back({{"line", d.span.begin.line},
                        {"column", d.span.begin.column},
                        {"endLine", d.span.end.line},
                        {"endColumn", d.span.end.column},
                        {"severity", language::severityName(d.severity)},
                        {"code", d.code},
                        {"text", jsonText(d.text)}});
    return writeJson({{"file", jsonText(file)}, {"diagnostics", list}}) + "\n";
}

} // namespace

bool loadVerbs(language::VerbTable& verbs) {
    std::string bytes, path;
    if (!readDataFile("verbs.dat", bytes, path)) {
        std::cerr << "tessary-cli: cannot find the verb table verbs.dat beside the program\n";
        return false;
    }
    std::vector<language::VerbTableWarning> warnings;
    verbs = language::VerbTable::read(bytes, &warnings);
    for (const auto& w : warnings)
        std::cerr << "tessary-cli: " << path << ":" << w.line << ": skipped: " << w.reason << "\n";
    return true;
}

int runLint(const Args& args) {
    bool werror = false;
    language::AnalyseOptions options;
    const OptionHandler lintOptions = [&](const Args& all, std::size_t& i, std::string&) {
        if (all[i] == "--werror") return werror = true;
        if (all[i] == "--syntax-only") return options.syntaxOnly = true;
        return false;
    };
    FileArgs parsed;
    if (const auto status = parseFileArgs(args, "lint", kLintHelp, kLintUsage, parsed, lintOptions))
        return *status;
    language::VerbTable verbs;
    if (!loadVerbs(verbs)) return 2;
    std::vector<std::string> files;
    const bool foldersRead = expandPaths(parsed.files, files);
    const int status =
        forEachFileInParallel(files, [&](const std::string& file, const std::string& text, std::string& out) {
            const language::Analysis analysis = language::analyse(text, verbs, options);
            if (parsed.json) {
                out = jsonDiagnostics(file, analysis.diagnostics);
            } else {
                for (const language::Diagnostic& d : analysis.diagnostics)
                    out += language::formatDiagnostic(file, d) + "\n";
            }
            return std::none_of(analysis.diagnostics.begin(), analysis.diagnostics.end(), [&](const auto& d) {
                return d.severity == language::Severity::Error || werror;
            });
        });
    return foldersRead ? status : 2;
}

} // namespace cli
