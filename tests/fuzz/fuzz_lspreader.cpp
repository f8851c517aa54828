// The language server's message reader: input cut in pieces of any size reads as the same
// frames as in one piece, and every frame the server receives gets its answers without failing.
#include "lsp/server.h"
#include "tests/fuzz/fuzztarget.h"

#include <vector>

TESSARY_FUZZ_TARGET(lspreader) {
    const std::size_t piece = in.byte() + 1u;
    const std::string_view bytes = in.rest();
    lsp::MessageReader whole, cut;
    whole.feed(bytes);
    std::vector<lsp::Frame> frames;
    while (auto f = whole.next()) frames.push_back(std::move(*f));
    std::size_t n = 0;
    for (std::size_t i = 0; i < bytes.size(); i += piece) {
        cut.feed(bytes.substr(i, piece));
        while (const auto f = cut.next()) {
            fuzzing::require(n < frames.size() && f->kind == frames[n].kind && f->body == frames[n].body,
                             "pieces read otherwise than the whole");
            ++n;
        }
    }
    fuzzing::require(n == frames.size(), "pieces give fewer frames than the whole");

    static const auto verbs = language::VerbTable::read("nothing sleep(flex)\nint getthinghealth(thing)\n");
    static const language::VerbDocs docs;
    lsp::Server server(verbs, docs);
    for (const lsp::Frame& f : frames) {
        fuzzing::require(f.body.size() <= lsp::kMaxBody, "a body over the limit");
        server.receive(f);
    }
}
