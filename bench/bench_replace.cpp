// Replace All on a 10 MB script with 100,000 occurrences of the word, beside a pass of memchr
// over the same bytes and a plain copy of them: the series must stay within a small factor of
// reading and writing the text once.
#include "editor/findreplace.h"

#include <benchmark/benchmark.h>

#include <cstring>
#include <string>

namespace {

constexpr std::size_t kSize = 10 * 1000 * 1000;
constexpr int kOccurrences = 100000;

// Lines of code in which every 100th byte or so starts "Count", in mixed case, so that the search
// meets both cases of the first letter, and "c" alone also occurs in other words.
const std::string& script() {
    static const std::string text = [] {
        std::string t;
        t.reserve(kSize + 200);
        const std::size_t gap = kSize / kOccurrences;
        int n = 0;
        while (t.size() < kSize) {
            const std::size_t start = t.size();
            t += n % 2 ? "    Count = " : "    count = ";
            ++n;
            while (t.size() < start + gap - 2) t += "cog + 1 ";
            t.resize(start + gap - 2);
            t += "\r\n";
        }
        return t;
    }();
    return text;
}

void memchrPass(benchmark::State& state) {
    const std::string& t = script();
    for (auto _ : state) {
        std::size_t lines = 0;
        const char* p = t.data();
        const char* end = t.data() + t.size();
        while ((p = static_cast<const char*>(std::memchr(p, '\n', static_cast<std::size_t>(end - p))))) {
            ++lines;
            ++p;
        }
        benchmark::DoNotOptimize(lines);
    }
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * t.size()));
}

// Writing the result costs at least one copy of the text.
void copyPass(benchmark::State& state) {
    const std::string& t = script();
    for (auto _ : state) {
        std::string copy = t;
        benchmark::DoNotOptimize(copy.data());
    }
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * t.size()));
}

void replaceAll(benchmark::State& state) {
    const std::string& t = script();
    const bool edges = state.range(0) != 0;
    long replaced = 0;
    for (auto _ : state) {
        const auto r = editor::replaceSeries(t, 2, "count", "total", true, edges);
        replaced = r.replaced;
        benchmark::DoNotOptimize(r.edit.inserted.data());
    }
    state.counters["replaced"] = static_cast<double>(replaced);
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * t.size()));
}

void replaceAllNonEnding(benchmark::State& state) {
    const std::string& t = script();
    for (auto _ : state) {
        const auto r = editor::replaceSeries(t, 1, "count", "recount", true, false);
        benchmark::DoNotOptimize(r.edit.inserted.data());
    }
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * t.size()));
}

} // namespace

BENCHMARK(memchrPass)->Unit(benchmark::kMillisecond);
BENCHMARK(copyPass)->Unit(benchmark::kMillisecond);
BENCHMARK(replaceAll)->Arg(0)->Arg(1)->ArgName("edges")->Unit(benchmark::kMillisecond);
BENCHMARK(replaceAllNonEnding)->Unit(benchmark::kMillisecond);
BENCHMARK_MAIN();
