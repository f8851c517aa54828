// The per-keystroke work of the editor without the widget: the change handler's two section
// markers and the typing aids' look at the word before the caret, for one character typed and
// removed again, inside the symbols range and inside the code.
#include "bench/core/texts.h"
#include "cog/layout.h"
#include "editor/firstoccurrence.h"
#include "editor/typingaids.h"

#include <cstring>
#include <string>

namespace {

using cog::Pos;

void keystroke(benchmark::State& state, bool inSymbols) {
    const std::string& text = benchtexts::script(static_cast<std::size_t>(state.range(0)));
    const cog::Markers m = cog::findMarkers(text);
    const Pos caret = inSymbols ? (m.symbols + m.end) / 2 : (m.code + static_cast<Pos>(text.size())) / 2;
    const auto size = static_cast<Pos>(text.size());
    Pos lsym = m.symbols, lsymend = m.end;
    // The two states of the text, built once: the editor's buffer holds them without copying.
    std::string typed = text;
    typed.insert(static_cast<std::size_t>(caret), 1, 'x');
    auto reader = [](const std::string& t) {
        return [&t](Pos s, Pos n) {
            return std::string_view(t).substr(static_cast<std::size_t>(s), static_cast<std::size_t>(n));
        };
    };
    const editor::RangeReader readTyped = reader(typed), readBase = reader(text);
    for (auto _ : state) {
        // The character goes in...
        const editor::Edit in{caret, 0, 1};
        lsym = editor::updateFirstOccurrence(lsym, "\nsymbols", size + 1, in, readTyped);
        lsymend = editor::updateFirstOccurrence(lsymend, "\nend", size + 1, in, readTyped);
        benchmark::DoNotOptimize(editor::insideSymbols(lsym, lsymend, caret + 1));
        benchmark::DoNotOptimize(editor::selectWordRange(typed, caret + 1));
        // ... and Backspace takes it out again.
        const editor::Edit out{caret, 1, 0};
        lsym = editor::updateFirstOccurrence(lsym, "\nsymbols", size, out, readBase);
        lsymend = editor::updateFirstOccurrence(lsymend, "\nend", size, out, readBase);
    }
    if (lsym != m.symbols || lsymend != m.end) state.SkipWithError("markers drifted");
    benchtexts::addBaseline(state, text);
}

void BM_Keystroke_Symbols(benchmark::State& state) {
    keystroke(state, true);
}
void BM_Keystroke_Code(benchmark::State& state) {
    keystroke(state, false);
}

// The change handler read literally: both markers searched from the start of the whole text.
void BM_Keystroke_WholeTextRescan(benchmark::State& state) {
    const std::string& text = benchtexts::script(static_cast<std::size_t>(state.range(0)));
    for (auto _ : state) {
        benchmark::DoNotOptimize(cog::find(1, text, "\nsymbols"));
        benchmark::DoNotOptimize(cog::find(1, text, "\nend"));
    }
    benchtexts::addBaseline(state, text);
}

void BM_Baseline_Memchr(benchmark::State& state) {
    const std::string& text = benchtexts::script(static_cast<std::size_t>(state.range(0)));
    for (auto _ : state) benchmark::DoNotOptimize(std::memchr(text.data(), '\x01', text.size()));
    benchtexts::addBaseline(state, text);
}

void BM_Markers(benchmark::State& state) {
    const std::string& text = benchtexts::script(static_cast<std::size_t>(state.range(0)));
    for (auto _ : state) benchmark::DoNotOptimize(cog::findMarkers(text));
    benchtexts::addBaseline(state, text);
}

} // namespace

BENCHMARK(BM_Baseline_Memchr)->Apply(benchtexts::sizes);
BENCHMARK(BM_Keystroke_Symbols)->Arg(1024)->Arg(10 << 20)->Unit(benchmark::kNanosecond);
BENCHMARK(BM_Keystroke_Code)->Arg(1024)->Arg(10 << 20)->Unit(benchmark::kNanosecond);
BENCHMARK(BM_Keystroke_WholeTextRescan)->Arg(1024)->Arg(10 << 20)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_Markers)->Apply(benchtexts::sizes);
