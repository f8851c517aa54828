// Synthetic COG scripts for benchmarks, differential tests and fuzz corpora: realistic texts of
// any size (a symbols section with many declarations of every type, a code section with message
// handlers full of comments and nested braces, CR LF line ends), and random mutations of them.
// Everything is deterministic from its seed and free of Qt, and header-only so that tests,
// benchmarks and fuzz tools share it without a library of their own.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace cogtext {

// A small deterministic generator (SplitMix64): the same seed gives the same text everywhere.
class Rng {
public:
    explicit Rng(std::uint64_t seed) : state_(seed) {}
    std::uint64_t next() {
        std::uint64_t z = (state_ += 0x9E3779B97F4A7C15ull);
        z = (z ^ (z >> 30)) * 0xBF58476D1CE4E5B9ull;
        z = (z ^ (z >> 27)) * 0x94D049BB133111EBull;
        return z ^ (z >> 31);
    }
    // A whole number in [0, n); 0 when n is 0.
    std::size_t below(std::size_t n) { return n == 0 ? 0 : static_cast<std::size_t>(next() % n); }
    bool chance(unsigned percent) { return below(100) < percent; }
    template <class T> const T& pick(const std::vector<T>& v) { return v[below(v.size())]; }

private:
    std::uint64_t state_;
};

struct Shape {
    std::size_t targetBytes = 100 * 1024;
    unsigned symbolsShare = 20; // percent of the text given to declarations
};

// A well-formed script of about shape.targetBytes bytes: header comment, "symbols", declarations
// of all 14 types (unique lines, so an explorer build runs to the end), "end", "code", one handler
// per declared message with unique "//" comments and balanced braces, "end".
inline std::string generate(std::uint64_t seed, const Shape& shape);
inline std::string generate(std::uint64_t seed, std::size_t targetBytes) {
    Shape s;
    s.targetBytes = targetBytes;
    return generate(seed, s);
}

// A small script (a few hundred bytes to a few KB) for tests that run thousands of cases.
inline std::string generateSmall(std::uint64_t seed);

// One random damaging change: duplicated or deleted lines, braces inserted, removed or swapped,
// section lines broken, indented, recased or moved, a lone CR or LF, a truncation, bytes from the
// rule's own alphabet ("{}\r\n:/=;" and keyword pieces), or the text emptied.
inline std::string mutate(std::string_view text, Rng& rng);

// Applies 1 to maxSteps mutations.
inline std::string mutateMany(std::string_view text, Rng& rng, int maxSteps = 4);

// Fragments that the rules look for; useful for building needles and dictionaries.
inline const std::vector<std::string>& keywordPieces();

} // namespace cogtext

#include "bench/cogtext_impl.h"
