// tessary-cli: the COG rules of the editor for scripts and continuous integration.
#include "cli/commands.h"

#include <algorithm>
#include <atomic>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>
#include <sstream>
#include <thread>

namespace cli {

std::string readFileOrSayWhy(const std::string& path, std::string& bytes) {
    std::error_code ec;
    if (std::filesystem::is_directory(path, ec)) // opens, but reads nothing
        return "tessary-cli: cannot read " + path + ": it is a directory\n";
    std::ifstream in(path, std::ios::binary);
    if (!in) return "tessary-cli: cannot read " + path + ": " + std::strerror(errno) + "\n";
    std::ostringstream buffer;
    buffer << in.rdbuf();
    if (in.bad()) return "tessary-cli: cannot read " + path + "\n";
    bytes = std::move(buffer).str();
    return {};
}

bool readDataFile(const std::string& name, std::string& bytes, std::string& path) {
    std::error_code ec;
    const std::filesystem::path exe = std::filesystem::read_symlink("/proc/self/exe", ec);
    const std::filesystem::path dir = ec ? std::filesystem::path(".") : exe.parent_path();
    for (const std::filesystem::path& candidate : {dir / name, dir / TESSARY_DATA_DIR_FROM_BIN / name}) {
        if (!std::filesystem::is_regular_file(candidate, ec) || !readFile(candidate.string(), bytes))
            continue;
        path = candidate.string();
        return true;
    }
    return false;
}

bool readFile(const std::string& path, std::string& bytes) {
    const std::string why = readFileOrSayWhy(path, bytes);
    std::cerr << why;
    return why.empty();
}

int forEachFileInParallel(const std::vector<std::string>& files, const ParallelReport& report) {
    struct Result {
        std::string out, err;
        int status = 0;
    };
    std::vector<Result> results(files.size());
    std::string standardInput;
    bool stdinRead = false;
    auto run = [&](std::size_t i) {
        Result& r = results[i];
        std::string bytes;
        const bool isStdin = files[i] == "-";
        if (!isStdin) r.err = readFileOrSayWhy(files[i], bytes);
        if (!r.err.empty()) {
            r.status = 2;
            return;
        }
        if (!report(isStdin ? "<stdin>" : files[i], isStdin ? standardInput : bytes, r.out)) r.status = 1;
    };
    for (const std::string& f : files)
        if (f == "-" && !stdinRead) {
            std::ostringstream buffer;
            buffer << std::cin.rdbuf();
            standardInput = std::move(buffer).str();
            stdinRead = true;
        }
    std::atomic<std::size_t> next{0};
    auto worker = [&] {
        for (std::size_t i; (i = next++) < files.size();) run(i);
    };
    const std::size_t threads =
        std::min<std::size_t>(std::max(1u, std::thread::hardware_concurrency()), files.size());
    std::vector<std::thread> pool;
    for (std::size_t t = 1; t < threads; ++t) pool.emplace_back(worker);
    worker();
    for (std::thread& t : pool) t.join();
    int status = 0;
    for (const Result& r : results) {
        std::cout << r.out;
        std::cerr << r.err;
        status = std::max(status, r.status);
    }
    return status;
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
    "  lint [--json] [--werror] [--syntax-only] PATH...\n"
    "                                      errors and warnings of the COG language in files and folders\n"
    "  lsp                                 a language server on standard input and output\n"
    "\n"
    "Exit status: 0 all well; 1 an incomplete tree, a finding, a skipped line or a script error;\n"
    "2 a usage error\n"
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
    if (command == "lint") return cli::runLint(args);
    if (command == "lsp") return cli::runLsp(args);
    std::cerr << "tessary-cli: unknown command '" << command << "'\n" << kUsage;
    return 2;
}
