// Edit-menu rules on large texts: Replace All with 100,000 occurrences in 10 MB (beside sed
// doing the same replacement on the same bytes), and Match Brace.
#include "bench/core/texts.h"
#include "editor/findreplace.h"

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <string>
#include <unistd.h>

namespace {

constexpr long kOccurrences = 100000;

// The 10 MB script with kOccurrences statements naming "zqx" spread evenly over its code lines.
const std::string& replaceText() {
    static const std::string text = [] {
        const std::string& base = benchtexts::script(10 << 20);
        const std::size_t step = base.size() / kOccurrences;
        std::string t;
        t.reserve(base.size() + kOccurrences * 16);
        std::size_t from = 0;
        for (long i = 0; i < kOccurrences; ++i) {
            std::size_t at = base.find("\r\n", std::max(from, static_cast<std::size_t>(i) * step));
            if (at == std::string::npos) at = base.size();
            t.append(base, from, at - from);
            t += "\r\n\t\tZqx = 1;";
            from = at;
        }
        t.append(base, from, std::string::npos);
        return t;
    }();
    return text;
}

void BM_ReplaceAll_100k(benchmark::State& state) {
    const std::string& text = replaceText();
    long replaced = 0;
    for (auto _ : state) {
        const editor::ReplaceResult r = editor::replaceSeries(text, 1, "zqx", "spark", true, false);
        std::string out = editor::applyEdit(text, r.edit);
        benchmark::DoNotOptimize(out.data());
        replaced = r.replaced;
    }
    if (replaced != kOccurrences) state.SkipWithError("wrong number of replacements");
    state.counters["replaced"] = static_cast<double>(replaced);
    benchtexts::addBaseline(state, text);
}

// sed with the same replacement (letter case ignored), reading and writing files in /tmp.
void BM_Sed_ReplaceAll_100k(benchmark::State& state) {
    const std::string& text = replaceText();
    const std::string dir = std::string(std::getenv("TMPDIR") ? std::getenv("TMPDIR") : "/tmp");
    const std::string in = dir + "/tessary-bench-" + std::to_string(getpid()) + ".cog";
    std::ofstream(in, std::ios::binary).write(text.data(), static_cast<std::streamsize>(text.size()));
    const std::string command = "sed 's/zqx/spark/gI' '" + in + "' > '" + in + ".out'";
    for (auto _ : state) {
        const auto t0 = std::chrono::steady_clock::now();
        if (std::system(command.c_str()) != 0) state.SkipWithError("sed failed");
        const std::chrono::duration<double> d = std::chrono::steady_clock::now() - t0;
        state.SetIterationTime(d.count());
    }
    std::remove(in.c_str());
    std::remove((in + ".out").c_str());
    benchtexts::addBaseline(state, text);
}

void BM_MatchBrace(benchmark::State& state) {
    const std::string& text = benchtexts::script(static_cast<std::size_t>(state.range(0)));
    const auto caret = static_cast<long>(text.find('{', text.size() / 2));
    for (auto _ : state) benchmark::DoNotOptimize(editor::matchBrace(text, caret));
    benchtexts::addBaseline(state, text);
}

} // namespace

BENCHMARK(BM_ReplaceAll_100k)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_Sed_ReplaceAll_100k)->UseManualTime()->Iterations(5)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_MatchBrace)->Apply(benchtexts::sizes);
