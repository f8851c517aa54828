#include "lsp/server.h"

#include <nlohmann/json.hpp>

#include <algorithm>

namespace lsp {

using json = nlohmann::json;

namespace {

// The error codes of JSON-RPC and of the protocol.
enum ErrorCode : int {
    ParseError = -32700,
    InvalidRequest = -32600,
    MethodNotFound = -32601,
    InvalidParams = -32602,
    InternalError = -32603,
    ServerNotInitialized = -32002,
    RequestFailed = -32803,
};

// A request that gets an error answer.
struct Failure {
    int code;
    std::string message;
};

std::string dump(const json& message) {
    return message.dump(-1, ' ', false, json::error_handler_t::replace);
}

std::string errorAnswer(const json& id, int code, const std::string& message) {
    return dump({{"jsonrpc", "2.0"}, {"id", id}, {"error", {{"code", code}, {"message", message}}}});
}

json capabilities(const std::string& version) {
    json info = {{"name", "tessary-cli"}};
    if (!version.empty()) info["version"] = version;
    return {{"capabilities",
             {{"positionEncoding", "utf-16"},
              {"textDocumentSync", {{"openClose", true}, {"change", 2}, {"save", {{"includeText", false}}}}},
              {"completionProvider", json::object()},
              {"hoverProvider", true},
              {"definitionProvider", true},
              {"referencesProvider", true},
              {"documentSymbolProvider", true},
              {"renameProvider", {{"prepareProvider", true}}}}},
            {"serverInfo", info}};
}

// The requests about one open document.
constexpr std::string_view kDocumentMethods[] = {"textDocument/completion",     "textDocument/hover",
                                                 "textDocument/definition",     "textDocument/references",
                                                 "textDocument/documentSymbol", "textDocument/prepareRename",
                                                 "textDocument/rename"};

int completionKind(language::ItemKind k) { // the protocol's CompletionItemKind
    switch (k) {
    case language::ItemKind::Verb:
        return 3; // Function
    case language::ItemKind::Symbol:
        return 6; // Variable
    case language::ItemKind::Message:
        return 20; // EnumMember
    case language::ItemKind::Keyword:
        return 14; // Keyword
    case language::ItemKind::Label:
        return 23; // Event
    }
    return 1;
}

int symbolKind(const language::OutlineItem& item) { // the protocol's SymbolKind
    switch (item.kind) {
    case language::OutlineItem::Kind::TypeGroup:
        return 3; // Namespace
    case language::OutlineItem::Kind::Symbol:
        return item.type == language::Type::Message ? 24 : 13; // Event, Variable
    case language::OutlineItem::Kind::Handler:
    case language::OutlineItem::Kind::Label:
        break;
    }
    return 12; // Function
}

} // namespace

struct Server::Open {
    Document doc;
    json version;
    language::Analysis analysis;

    json position(std::uint32_t offset) const {
        const Position p = doc.position(offset);
        return {{"line", p.line}, {"character", p.character}};
    }
    json range(std::uint32_t begin, std::uint32_t end) const {
        return {{"start", position(begin)}, {"end", position(end)}};
    }
    json range(const language::Span& s) const { return range(s.begin.offset, s.end.offset); }
    std::uint32_t offset(const json& p) const {
        return doc.offset({p.at("line").get<std::uint32_t>(), p.at("character").get<std::uint32_t>()});
    }

    std::string diagnostics(const std::string& uri) const {
        json list = json::array();
        for (const language::Diagnostic& d : analysis.diagnostics)
            list.push_back({{"range", range(d.span)},
                            {"severity", d.severity == language::Severity::Error ? 1 : 2},
                            {"code", d.code},
                            {"source", "tessary"},
                            {"message", utf8FromBytes(d.text)}});
        return dump({{"jsonrpc", "2.0"},
                     {"method", "textDocument/publishDiagnostics"},
                     {"params", {{"uri", uri}, {"version", version}, {"diagnostics", list}}}});
    }
};

// One request on an open document.
struct Server::Request {
    const Open& open;
    const std::string& uri;
    const json& params;
    language::Script script;

    std::uint32_t offset() const { return open.offset(params.at("position")); }

    json completion() const {
        const std::uint32_t at = offset();
        const language::Completion c = language::complete(script, at);
        json items = json::array();
        for (const auto& item : c.items) {
            const std::string label = utf8FromBytes(item.label);
            items.push_back({{"label", label},
                             {"kind", completionKind(item.kind)},
                             {"detail", utf8FromBytes(item.detail)},
                             {"textEdit", {{"range", open.range(c.from, at)}, {"newText", label}}}});
        }
        return {{"isIncomplete", false}, {"items", items}};
    }

    json hover() const {
        const auto h = language::hover(script, offset());
        if (!h) return nullptr;
        return {{"contents", {{"kind", "plaintext"}, {"value", utf8FromBytes(h->text)}}},
                {"range", open.range(h->span)}};
    }

    json location(const language::Span& s) const { return {{"uri", uri}, {"range", open.range(s)}}; }

    json definition() const {
        const auto d = language::definition(script, offset());
        return d ? location(*d) : json(nullptr);
    }

    json references() const {
        const json& context = params.contains("context") ? params.at("context") : json::object();
        json list = json::array();
        for (const auto& s :
             language::references(script, offset(), context.value("includeDeclaration", false)))
            list.push_back(location(s));
        return list;
    }

    json symbols(const std::vector<language::OutlineItem>& items) const {
        json list = json::array();
        for (const auto& item : items) {
            json symbol = {{"name", utf8FromBytes(item.name)},
                           {"kind", symbolKind(item)},
                           {"range", open.range(item.range)},
                           {"selectionRange", open.range(item.selection)}};
            if (!item.detail.empty()) symbol["detail"] = utf8FromBytes(item.detail);
            if (!item.children.empty()) symbol["children"] = symbols(item.children);
            list.push_back(std::move(symbol));
        }
        return list;
    }

    json prepareRename() const {
        const auto target = language::prepareRename(script, offset());
        if (!target.ok()) throw Failure{RequestFailed, utf8FromBytes(target.refusal)};
        const std::string_view name =
            std::string_view(script.text)
                .substr(target.span.begin.offset, target.span.end.offset - target.span.begin.offset);
        return {{"range", open.range(target.span)}, {"placeholder", utf8FromBytes(name)}};
    }

    json rename() const {
        const auto result =
            language::rename(script, offset(), bytesFromUtf8(params.at("newName").get<std::string>()));
        if (!result.ok()) throw Failure{RequestFailed, utf8FromBytes(result.refusal)};
        json edits = json::array();
        for (const auto& e : result.edits)
            edits.push_back({{"range", open.range(e.span)}, {"newText", utf8FromBytes(e.text)}});
        return {{"changes", {{uri, edits}}}};
    }
};

Server::Server(const language::VerbTable& verbs, const language::VerbDocs& docs, std::string version)
    : verbs_(verbs), docs_(docs), version_(std::move(version)) {}

Server::~Server() = default;

std::vector<std::string> Server::receive(const Frame& frame) {
    switch (frame.kind) {
    case Frame::Kind::BadHeader:
        return {errorAnswer(nullptr, ParseError, frame.fault)};
    case Frame::Kind::TooLarge:
        return {errorAnswer(nullptr, InvalidRequest, frame.fault)};
    case Frame::Kind::Body:
        break;
    }
    return handle(frame.body);
}

std::vector<std::string> Server::handle(const std::string& body) {
    const json message = json::parse(body, nullptr, false);
    if (message.is_discarded()) return {errorAnswer(nullptr, ParseError, "the message is not valid JSON")};
    if (!message.is_object()) return {errorAnswer(nullptr, InvalidRequest, "a message is a JSON object")};
    const auto idField = message.find("id");
    const bool isRequest = idField != message.end();
    const json id = isRequest ? *idField : json();
    if (isRequest && !id.is_number_integer() && !id.is_string() && !id.is_null())
        return {errorAnswer(nullptr, InvalidRequest, "an id is a number or a string")};
    const auto methodField = message.find("method");
    if (methodField == message.end()) {
        if (isRequest && (message.contains("result") || message.contains("error"))) return {}; // an answer
        return {errorAnswer(id, InvalidRequest, "the message has no method")};
    }
    const auto version = message.find("jsonrpc");
    if (!methodField->is_string() || version == message.end() || *version != "2.0")
        return isRequest ? std::vector<std::string>{errorAnswer(
                               id, InvalidRequest, "a request has \"jsonrpc\": \"2.0\" and a method name")}
                         : std::vector<std::string>{};
    const std::string method = methodField->get<std::string>();
    const json params = message.value("params", json::object());
    std::vector<std::string> out;

    auto openDocument = [&](const std::string& uri) -> Open* {
        const auto it = documents_.find(uri);
        return it == documents_.end() ? nullptr : it->second.get();
    };
    auto analyse = [&](const std::string& uri, Open& open) {
        open.analysis = language::analyse(open.doc.bytes(), verbs_);
        out.push_back(open.diagnostics(uri));
    };

    if (!isRequest) {
        if (method == "exit") exited_ = true;
        if (!initialized_ || shutdown_) return out;
        std::string uri;
        Open* changed = nullptr; // analysed again whatever happens, so that it fits its text
        try {
            const json& doc = params.at("textDocument");
            uri = doc.at("uri").get<std::string>();
            if (method == "textDocument/didOpen") {
                auto open = std::make_unique<Open>();
                open->doc.setText(doc.at("text").get<std::string>());
                open->version = doc.value("version", json());
                changed = (documents_[uri] = std::move(open)).get();
            } else if (Open* open = openDocument(uri); open && method == "textDocument/didChange") {
                changed = open;
                open->version = doc.value("version", json());
                for (const json& change : params.at("contentChanges")) {
                    const std::string text = change.at("text").get<std::string>();
                    if (!change.contains("range")) {
                        open->doc.setText(text);
                        continue;
                    }
                    const json& r = change.at("range");
                    const auto place = [](const json& p) {
                        return Position{p.at("line").get<std::uint32_t>(),
                                        p.at("character").get<std::uint32_t>()};
                    };
                    open->doc.replace(place(r.at("start")), place(r.at("end")), text);
                }
            } else if (open && method == "textDocument/didSave" && params.contains("text")) {
                changed = open;
                open->doc.setText(params.at("text").get<std::string>());
            } else if (open && method == "textDocument/didClose") {
                documents_.erase(uri);
                out.push_back(dump({{"jsonrpc", "2.0"},
                                    {"method", "textDocument/publishDiagnostics"},
                                    {"params", {{"uri", uri}, {"diagnostics", json::array()}}}}));
            }
        } catch (const std::exception&) {
            // A notification gets no answer, not even about its faults.
        }
        if (changed) analyse(uri, *changed);
        return out;
    }

    try {
        json result;
        if (!initialized_ && method != "initialize")
            throw Failure{ServerNotInitialized, "the server is not initialized yet"};
        if (shutdown_) throw Failure{InvalidRequest, "the server is shutting down"};
        if (method == "initialize") {
            if (initialized_) throw Failure{InvalidRequest, "the server is already initialized"};
            initialized_ = true;
            result = capabilities(version_);
        } else if (method == "shutdown") {
            shutdown_ = true;
        } else if (std::find(std::begin(kDocumentMethods), std::end(kDocumentMethods), method) !=
                   std::end(kDocumentMethods)) {
            const std::string uri = params.at("textDocument").at("uri").get<std::string>();
            const Open* open = openDocument(uri);
            if (!open) throw Failure{InvalidParams, "the document " + uri + " is not open"};
            const Request r{*open, uri, params, {open->doc.bytes(), open->analysis, verbs_, docs_}};
            if (method == "textDocument/completion")
                result = r.completion();
            else if (method == "textDocument/hover")
                result = r.hover();
            else if (method == "textDocument/definition")
                result = r.definition();
            else if (method == "textDocument/references")
                result = r.references();
            else if (method == "textDocument/documentSymbol")
                result = r.symbols(language::outline(r.script));
            else if (method == "textDocument/prepareRename")
                result = r.prepareRename();
            else
                result = r.rename();
        } else {
            throw Failure{MethodNotFound, "unknown method " + method};
        }
        out.push_back(dump({{"jsonrpc", "2.0"}, {"id", id}, {"result", result}}));
    } catch (const Failure& f) {
        out.push_back(errorAnswer(id, f.code, f.message));
    } catch (const json::exception& e) {
        out.push_back(errorAnswer(id, InvalidParams, std::string("invalid params: ") + e.what()));
    } catch (const std::exception& e) {
        out.push_back(errorAnswer(id, InternalError, e.what()));
    }
    return out;
}

} // namespace lsp
