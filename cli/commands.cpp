// What the commands of tessary-cli share: reading files and file arguments, and choosing the command.
#include "cli/commands.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <filesystem>
#include <iostream>
#include <new>
#include <sstream>
#include <stdexcept>
#include <sys/stat.h>
#include <thread>
#include <unistd.h>

namespace cli {

std::string readFileOrSayWhy(const std::string& path, std::string& bytes) {
    const auto why = [&path](const std::string& reason) {
        return "tessary-cli: cannot read " + path + ": " + reason + "\n";
    };
    // Opened without blocking: a FIFO without a writer would hold the command forever.
    const int fd = ::open(path.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
    if (fd < 0) return why(std::strerror(errno));
    struct Closer {
        int fd;
        ~Closer() { ::close(fd); }
    } const closer{fd};
    struct stat st {};
    if (::fstat(fd, &st) != 0) return why(std::strerror(errno));
    if (S_ISDIR(st.st_mode)) return why("it is a directory");
    if (!S_ISREG(st.st_mode)) return why("it is not a regular file"); // a device could never end
    try {
        bytes.clear();
        bytes.reserve(static_cast<std::size_t>(st.st_size));
        std::array<char, 1 << 16> block;
        for (;;) {
            const ssize_t n = ::read(fd, block.data(), block.size());
            if (n == 0) return {};
            if (n > 0)
                bytes.append(block.data(), static_cast<std::size_t>(n));
            else if (errno != EINTR)
                return why(std::strerror(errno));
        }
    } catch (const std::length_error&) {
    } catch (const std::bad_alloc&) {
    }
    bytes = std::string();
    return why("it is too large to hold in memory");
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
    if (std::find(files.begin(), files.end(), "-") != files.end()) {
        std::ostringstream buffer;
        buffer << std::cin.rdbuf();
        standardInput = std::move(buffer).str();
    }
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
    "2 a usage error, a file that cannot be read, or output that cannot be written.\n"
    "Run 'tessary-cli COMMAND --help' for the details of one command.\n";

} // namespace

int run(const Args& words) {
    if (words.empty()) {
        std::cerr << kUsage;
        return 2;
    }
    const std::string& command = words.front();
    const Args args(words.begin() + 1, words.end());
    if (command == "--help" || command == "-h" || command == "help") {
        std::cout << kUsage;
        return 0;
    }
    if (command == "outline") return runOutline(args);
    if (command == "check") return runCheck(args);
    if (command == "reference") return runReference(args);
    if (command == "generate") return runGenerate(args);
    if (command == "lint") return runLint(args);
    if (command == "lsp") return runLsp(args);
    std::cerr << "tessary-cli: unknown command '" << command << "'\n" << kUsage;
    return 2;
}

} // namespace cli
