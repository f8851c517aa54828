// The language checker (tessary-cli lint) at every size, and on a script of 50 KB.
#include "bench/core/texts.h"
#include "language/analyse.h"

namespace {

void lint(benchmark::State& state, bool syntaxOnly) {
    const std::string& text = benchtexts::script(static_cast<std::size_t>(state.range(0)));
    if (benchtexts::verbs().size() == 0) state.SkipWithError("no verbs.dat beside the benchmark");
    std::size_t diagnostics = 0, nodes = 0;
    for (auto _ : state) {
        const language::Analysis a = language::analyse(text, benchtexts::verbs(), {.syntaxOnly = syntaxOnly});
        diagnostics = a.diagnostics.size();
        nodes = a.tree.nodes.size();
    }
    state.counters["diagnostics"] = static_cast<double>(diagnostics);
    state.counters["nodes"] = static_cast<double>(nodes);
    benchtexts::addBaseline(state, text);
}

void BM_Lint(benchmark::State& state) {
    lint(state, false);
}
void BM_LintSyntaxOnly(benchmark::State& state) {
    lint(state, true);
}

} // namespace

BENCHMARK(BM_Lint)->Apply(benchtexts::sizes)->Arg(50 * 1024);
BENCHMARK(BM_LintSyntaxOnly)->Arg(1 << 20);
