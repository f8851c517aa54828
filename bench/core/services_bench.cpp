// The language services per request, and what the language server does per keystroke: the edit
// applied to its document (UTF-16 beside Windows-1252 bytes), the script analysed again.
#include "bench/core/texts.h"
#include "language/services.h"
#include "lsp/document.h"

namespace {

// A request at the first use of a name after the middle of the text.
template <class Request> void request(benchmark::State& state, Request ask) {
    const std::string& text = benchtexts::script(static_cast<std::size_t>(state.range(0)));
    const language::Analysis analysis = language::analyse(text, benchtexts::verbs());
    static const language::VerbDocs docs;
    const language::Script script{text, analysis, benchtexts::verbs(), docs};
    const auto middle = static_cast<std::uint32_t>(text.size() / 2);
    std::uint32_t at = 0xFFFFFFFF;
    for (const auto& sym : analysis.symbols.symbols)
        for (const auto& use : sym.uses)
            if (use.begin.offset >= middle) at = std::min(at, use.begin.offset + 1);
    if (at == 0xFFFFFFFF) state.SkipWithError("no name after the middle of the text");
    for (auto _ : state) benchmark::DoNotOptimize(ask(script, at));
    benchtexts::addBaseline(state, text);
}

void BM_Complete(benchmark::State& state) {
    request(state, [](const auto& s, std::uint32_t at) { return language::complete(s, at).items.size(); });
}
void BM_Hover(benchmark::State& state) {
    request(state, [](const auto& s, std::uint32_t at) { return language::hover(s, at).has_value(); });
}
void BM_Rename(benchmark::State& state) {
    request(state,
            [](const auto& s, std::uint32_t at) { return language::rename(s, at, "renamed").edits.size(); });
}

// A letter typed in the middle of the text and removed again, each edit followed by the
// analysis the server publishes diagnostics from.
void BM_Keystroke_Lsp(benchmark::State& state) {
    const std::string& text = benchtexts::script(static_cast<std::size_t>(state.range(0)));
    lsp::Document doc(lsp::utf8FromBytes(text));
    const lsp::Position middle = doc.position(static_cast<std::uint32_t>(text.size() / 2));
    for (auto _ : state) {
        doc.replace(middle, middle, "x");
        benchmark::DoNotOptimize(language::analyse(doc.bytes(), benchtexts::verbs()).diagnostics.size());
        doc.replace(middle, {middle.line, middle.character + 1}, "");
        benchmark::DoNotOptimize(language::analyse(doc.bytes(), benchtexts::verbs()).diagnostics.size());
    }
    benchtexts::addBaseline(state, text);
}

} // namespace

BENCHMARK(BM_Complete)->Apply(benchtexts::sizes);
BENCHMARK(BM_Hover)->Apply(benchtexts::sizes);
BENCHMARK(BM_Rename)->Apply(benchtexts::sizes);
BENCHMARK(BM_Keystroke_Lsp)->Apply(benchtexts::sizes);
