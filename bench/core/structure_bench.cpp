// The COG structure tools at every size: the CogExplorer build and the syntax check.
#include "bench/core/texts.h"
#include "cog/explorer.h"
#include "cog/syntaxcheck.h"

namespace {

void BM_Explorer(benchmark::State& state) {
    const std::string& text = benchtexts::script(static_cast<std::size_t>(state.range(0)));
    std::size_t nodes = 0;
    bool complete = false;
    for (auto _ : state) {
        const cog::ExplorerResult r = cog::buildExplorer(text, "Cog 1", cog::symbolTypes());
        nodes = r.tree.count();
        complete = r.complete();
    }
    if (!complete) state.SkipWithError("the generated script did not build completely");
    state.counters["nodes"] = static_cast<double>(nodes);
    benchtexts::addBaseline(state, text);
}

void BM_SyntaxCheck(benchmark::State& state) {
    const std::string& text = benchtexts::script(static_cast<std::size_t>(state.range(0)));
    std::size_t findings = 0;
    for (auto _ : state) findings = cog::checkCog(text, 0).size();
    state.counters["findings"] = static_cast<double>(findings);
    benchtexts::addBaseline(state, text);
}

} // namespace

BENCHMARK(BM_Explorer)->Apply(benchtexts::sizes);
BENCHMARK(BM_SyntaxCheck)->Apply(benchtexts::sizes);
