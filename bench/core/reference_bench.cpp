// Reading the shipped reference file, as start-up does.
#include "bench/core/texts.h"
#include "reference/cogref.h"

#include <fstream>
#include <sstream>

namespace {

void BM_ReadCogRef(benchmark::State& state) {
    std::string bytes;
    for (auto _ : state) {
        std::ifstream in(TESSARY_BIN_DIR "/cogref.dat", std::ios::binary);
        std::ostringstream all;
        all << in.rdbuf();
        bytes = all.str();
        const reference::CogRef ref = reference::readCogRef(bytes);
        benchmark::DoNotOptimize(ref.tree.count());
    }
    if (bytes.empty()) state.SkipWithError("cogref.dat not found beside the programs");
    benchtexts::addBaseline(state, bytes);
}

} // namespace

BENCHMARK(BM_ReadCogRef)->Unit(benchmark::kMicrosecond);
