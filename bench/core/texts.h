// Shared inputs of the core benchmarks: generated scripts by size, and the baseline that every
// figure is printed beside (one memchr pass over the same bytes).
#pragma once

#include "bench/cogtext.h"
#include "language/verbs.h"

#include <benchmark/benchmark.h>

#include <string>

namespace benchtexts {

// The script of about `bytes` bytes, generated once per run from a fixed seed.
const std::string& script(std::size_t bytes);

// Seconds of one memchr pass over text (the best of several), for the "baseline_us" counter.
double memchrSeconds(const std::string& text);

// Records the baseline of text on the benchmark, in microseconds, and the bytes processed.
void addBaseline(benchmark::State& state, const std::string& text);

// The verb table verbs.dat of the build, read once; empty when the build has none.
const language::VerbTable& verbs();

// The sizes every per-size figure runs at: 1 KB, 100 KB, 1 MB and 10 MB.
void sizes(benchmark::internal::Benchmark* b);

} // namespace benchtexts
