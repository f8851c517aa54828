#include "app/startup.h"

namespace app {

StartRequest startRequest(std::string_view commandLine, bool namesExistingFile) {
    if (namesExistingFile) return StartRequest::Open;
    if (commandLine == "--help" || commandLine == "-h") return StartRequest::Help;
    if (commandLine == "--version") return StartRequest::Version;
    return StartRequest::Open;
}

std::string usageText() {
    return "Usage: tessary [FILE]\n"
           "An editor for COG script files.\n"
           "\n"
           "FILE is one path, blanks included (no quoting needed); a *.cgt template opens in the\n"
           "template window. Without FILE a new window opens. When Tessary is already running, the\n"
           "file opens in the running program.\n"
           "\n"
           "  --help      show this text and exit\n"
           "  --version   show the version and exit\n"
           "\n"
           "A file named --help or --version opens like any other file.\n"
           "tessary-cli runs the COG tools without a window: see tessary-cli --help.\n";
}

std::string versionText(std::string_view version) {
    return "tessary " + std::string(version) + "\n";
}

} // namespace app
