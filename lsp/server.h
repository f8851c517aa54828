// The language server: JSON-RPC 2.0 messages of the language server protocol in, answers and
// notifications out, with no input or output of its own (tessary-cli lsp moves the bytes). It
// keeps the open documents, publishes the checker's diagnostics whenever one opens or changes,
// and answers completion, hover, definition, references, document symbols and rename from the
// language services. Any message gives an answer or is dropped; none stops it.
#pragma once

#include "language/services.h"
#include "lsp/document.h"
#include "lsp/reader.h"

#include <map>
#include <memory>
#include <string>
#include <vector>

namespace lsp {

class Server {
public:
    Server(const language::VerbTable& verbs, const language::VerbDocs& docs, std::string version = {});
    ~Server();

    // The messages to send for one frame of the reader, each a JSON text.
    std::vector<std::string> receive(const Frame& frame);

    bool exited() const { return exited_; }
    // The process's exit status: 0 when "shutdown" came before the end, 1 otherwise.
    int exitStatus() const { return shutdown_ ? 0 : 1; }

private:
    struct Open;
    struct Request;
    std::vector<std::string> handle(const std::string& body);

    const language::VerbTable& verbs_;
    const language::VerbDocs& docs_;
    std::string version_;
    std::map<std::string, std::unique_ptr<Open>> documents_; // by URI
    bool initialized_ = false, shutdown_ = false, exited_ = false;
};

} // namespace lsp
