// The frame of every fuzz target in this folder. A target is written once as
//     TESSARY_FUZZ_TARGET(name) { ... use `in` ... }
// and becomes either a libFuzzer entry point (the fuzz build) or an entry of the table that the
// regression test, built with every target's source, replays its corpus and past findings through
// (the normal and sanitizer builds).
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <map>
#include <string>
#include <string_view>

namespace fuzzing {

// Cuts the input into the arguments of a rule: small numbers from single bytes, strings up to
// the next 0xFF byte, and the rest as the main text. Every input gives some arguments.
class Input {
public:
    Input(const std::uint8_t* data, std::size_t size) : rest_(reinterpret_cast<const char*>(data), size) {}
    std::uint8_t byte() {
        if (rest_.empty()) return 0;
        const auto b = static_cast<std::uint8_t>(rest_.front());
        rest_.remove_prefix(1);
        return b;
    }
    bool flag() { return byte() & 1; }
    long number(long below) { // 0 .. below-1 from two bytes
        const long v = byte() * 256L + byte();
        return below > 0 ? v % below : 0;
    }
    std::string_view piece() {
        const auto end = rest_.find('\xFF');
        const std::string_view p = rest_.substr(0, end);
        rest_.remove_prefix(end == std::string_view::npos ? rest_.size() : end + 1);
        return p;
    }
    std::string_view rest() {
        const std::string_view r = rest_;
        rest_ = {};
        return r;
    }
    bool empty() const { return rest_.empty(); }

private:
    std::string_view rest_;
};

// A property every run must keep; a broken one stops the run like a crash, with the reason.
inline void require(bool ok, const char* what) {
    if (ok) return;
    std::fprintf(stderr, "broken: %s\n", what);
    std::abort();
}

// An edit (start, removed) that lies inside the text.
template <typename Edit> bool inside(const Edit& e, std::string_view text) {
    return e.start >= 0 && e.removed >= 0 && e.start + e.removed <= static_cast<long>(text.size());
}

// The table of targets that the regression test replays its inputs through.
using Body = void (*)(Input&);
inline std::map<std::string, Body>& targets() {
    static std::map<std::string, Body> table;
    return table;
}
inline bool registerTarget(const char* name, Body body) {
    return targets().emplace(name, body).second;
}

} // namespace fuzzing

#ifdef TESSARY_FUZZ_REGISTRY
#define TESSARY_FUZZ_TARGET(name)                                                                            \
    static void fuzzBody(fuzzing::Input& in);                                                                \
    [[maybe_unused]] static const bool registered = fuzzing::registerTarget(#name, &fuzzBody);               \
    static void fuzzBody(fuzzing::Input& in)
#else
#define TESSARY_FUZZ_TARGET(name)                                                                            \
    static void fuzzBody(fuzzing::Input& in);                                                                \
    extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {                      \
        fuzzing::Input in(data, size);                                                                       \
        fuzzBody(in);                                                                                        \
        return 0;                                                                                            \
    }                                                                                                        \
    static void fuzzBody(fuzzing::Input& in)
#endif
