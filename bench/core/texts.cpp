#include "bench/core/texts.h"

#include <algorithm>
#include <chrono>
#include <cstring>
#include <fstream>
#include <map>
#include <sstream>

namespace benchtexts {

const std::string& script(std::size_t bytes) {
    static std::map<std::size_t, std::string> cache;
    auto it = cache.find(bytes);
    if (it == cache.end()) it = cache.emplace(bytes, cogtext::generate(20261123, bytes)).first;
    return it->second;
}

double memchrSeconds(const std::string& text) {
    double best = 1e9;
    for (int round = 0; round < 15; ++round) {
        const auto t0 = std::chrono::steady_clock::now();
        const void* hit = std::memchr(text.data(), '\x01', text.size()); // a byte no script holds
        benchmark::DoNotOptimize(hit);
        const std::chrono::duration<double> d = std::chrono::steady_clock::now() - t0;
        best = std::min(best, d.count());
    }
    return best;
}

void addBaseline(benchmark::State& state, const std::string& text) {
    state.counters["baseline_us"] = memchrSeconds(text) * 1e6;
    state.counters["text_bytes"] = static_cast<double>(text.size());
}

const language::VerbTable& verbs() {
    static const language::VerbTable table = [] {
        std::ifstream in(TESSARY_BIN_DIR "/verbs.dat", std::ios::binary);
        std::ostringstream bytes;
        bytes << in.rdbuf();
        return language::VerbTable::read(bytes.str());
    }();
    return table;
}

void sizes(benchmark::internal::Benchmark* b) {
    for (long kb : {1L, 100L, 1024L, 10240L}) b->Arg(kb * 1024);
    b->Unit(benchmark::kMicrosecond);
}

} // namespace benchtexts

BENCHMARK_MAIN();
