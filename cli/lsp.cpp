#include "cli/commands.h"
#include "lsp/server.h"
#include "reference/cogref.h"

#include <cerrno>
#include <csignal>
#include <iostream>
#include <unistd.h>

namespace cli {

namespace {

const char* const kLspHelp =
    "Usage: tessary-cli lsp\n"
    "\n"
    "Runs a language server for COG scripts on standard input and output (the Language Server\n"
    "Protocol: JSON-RPC 2.0 messages with Content-Length headers), for editors that speak it.\n"
    "It publishes the errors and warnings of 'tessary-cli lint' as a file is opened and edited,\n"
    "and answers completion, hover, go to definition, references, document symbols and rename.\n"
    "Positions are counted in UTF-16 code units; the text is read as Windows-1252.\n"
    "\n"
    "The verbs come from verbs.dat and their descriptions from cogref.dat, beside the program\n"
    "(or in its installed data folder). --stdio is accepted and changes nothing.\n"
    "\n"
    "The server ends on the 'exit' notification or at the end of its input. Exit status: 0 when\n"
    "a 'shutdown' request came first, 1 otherwise; 2 for a usage error or no verb table.\n";

// Writes all of a message with its header; false when the output is gone.
bool send(const std::string& body) {
    const std::string message = "Content-Length: " + std::to_string(body.size()) + "\r\n\r\n" + body;
    for (std::size_t done = 0; done < message.size();) {
        const ssize_t n = ::write(STDOUT_FILENO, message.data() + done, message.size() - done);
        if (n < 0 && errno == EINTR) continue;
        if (n <= 0) return false;
        done += static_cast<std::size_t>(n);
    }
    return true;
}

} // namespace

int runLsp(const Args& args) {
    for (const std::string& a : args) {
        if (a == "--help" || a == "-h") {
            std::cout << kLspHelp;
            return 0;
        }
        if (a != "--stdio") {
            std::cerr << "tessary-cli lsp: unexpected argument '" << a << "'\nUsage: tessary-cli lsp\n";
            return 2;
        }
    }
    language::VerbTable verbs;
    if (!loadVerbs(verbs)) return 2;
    std::string bytes, path;
    language::VerbDocs docs;
    if (readDataFile("cogref.dat", bytes, path))
        docs = language::VerbDocs::fromReference(reference::readCogRef(bytes).tree);
    else
        std::cerr << "tessary-cli lsp: no cogref.dat beside the program: hovers show no descriptions\n";

    std::signal(SIGPIPE, SIG_IGN); // a client that goes away ends the server through a failed write
    lsp::MessageReader reader;
    lsp::Server server(verbs, docs, TESSARY_VERSION);
    char buffer[65536];
    while (!server.exited()) {
        const ssize_t n = ::read(STDIN_FILENO, buffer, sizeof buffer);
        if (n < 0 && errno == EINTR) continue;
        if (n <= 0) break;
        reader.feed({buffer, static_cast<std::size_t>(n)});
        while (!server.exited()) {
            const auto frame = reader.next();
            if (!frame) break;
            for (const std::string& message : server.receive(*frame))
                if (!send(message)) return server.exitStatus();
        }
    }
    return server.exitStatus();
}

} // namespace cli
