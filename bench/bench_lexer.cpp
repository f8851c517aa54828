// The cost of COG colouring on a 10 MB file: styling it whole, and restyling after a one-byte
// edit in its middle, which must stay about the same whatever the file's size.
#include "editor/coglexer.h"
#include "editor/ui/CogLexer.h"
#include "editor/ui/CogTextBox.h"
#include "editor/ui/EditorFeatures.h"

#include <benchmark/benchmark.h>

#include <QApplication>

#include <string>

namespace {

const std::vector<std::string> verbs{"GetSenderRef",   "GetSourceRef", "MoveToFrame", "Sleep", "SetTimer",
                                     "PlaySoundThing", "GetThingPos",  "VectorAdd",   "Print", "SetPulse"};

// A COG text of about `size` bytes: declarations, messages with verb calls, comments, strings
// and numbers, with CR LF line ends.
std::string generatedCog(std::size_t size) {
    std::string text;
    text.reserve(size + 1024);
    for (int block = 0; text.size() < size; ++block) {
        const std::string n = std::to_string(block);
        text += "# Block " + n + ": moves a door and plays a sound\r\n";
        text += "symbols\r\nmessage activated\r\nthing door" + n + " linkid=" + n + "\r\n";
        text += "flex speed=2.5 desc=door speed\r\nint mask=0x1F local\r\nsound click=beep" + n + ".wav\r\n";
        text += "end\r\n// ========================\r\ncode\r\nactivated:\r\n";
        text += "    if (GetSenderRef() == door" + n + ") {\r\n";
        text += "        MoveToFrame(door" + n + ", 1, speed); // to the top\r\n";
        text += "        PlaySoundThing(click, door" + n + ", 1.0, -1, 10, 0x80);\r\n";
        text += "        Print(\"Door " + n + " opens\");\r\n    }\r\n    stop;\r\nend\r\n\r\n";
    }
    return text;
}

constexpr std::size_t tenMegabytes = 10 * 1024 * 1024;

void styleRulesWholeText(benchmark::State& state) {
    const std::string text = generatedCog(static_cast<std::size_t>(state.range(0)));
    editor::CogWords words;
    words.setVerbs(verbs);
    std::string styles(text.size(), '\0');
    for (auto _ : state) {
        editor::styleCogText(text, words, reinterpret_cast<unsigned char*>(styles.data()));
        benchmark::DoNotOptimize(styles.data());
    }
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * text.size()));
}

struct Editor {
    CogTextBox box;
    CogLexer* lexer = nullptr;
    explicit Editor(std::size_t size) {
        editorfeatures::install(&box);
        lexer = static_cast<CogLexer*>(box.lexer());
        const std::string text = generatedCog(size);
        box.setTextBytes(QByteArray(text.data(), static_cast<qsizetype>(text.size())));
    }
    // Styles what is not styled yet up to the end of the text, as drawing the text would up to
    // the end of the window.
    void styleAll() {
        const long styled = box.SendScintilla(QsciScintillaBase::SCI_GETENDSTYLED);
        box.SendScintilla(QsciScintillaBase::SCI_COLOURISE, static_cast<unsigned long>(styled), -1L);
    }
};

void editorStyleWholeFile(benchmark::State& state) {
    Editor editor(static_cast<std::size_t>(state.range(0)));
    for (auto _ : state) {
        editor.lexer->setVerbs(verbs); // forgets every style
        editor.styleAll();
    }
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * editor.box.textLength()));
}

// Scintilla asks for styles from the edit to wherever it needs them; here to the end of the text,
// the worst case: the lexer stops after the lines the edit changed. Only the restyle is timed:
// the edit itself is Scintilla's and grows with the text by its own.
void editorRestyleAfterOneByteEdit(benchmark::State& state) {
    Editor editor(static_cast<std::size_t>(state.range(0)));
    editor.styleAll();
    const long middle = editor.box.textLength() / 2;
    bool insert = true;
    for (auto _ : state) {
        state.PauseTiming();
        if (insert)
            editor.box.replaceRange(middle, 0, "#");
        else
            editor.box.replaceRange(middle, 1, QByteArray());
        insert = !insert;
        state.ResumeTiming();
        editor.styleAll();
    }
}

} // namespace

BENCHMARK(styleRulesWholeText)->Arg(tenMegabytes)->Unit(benchmark::kMillisecond);
BENCHMARK(editorStyleWholeFile)->Arg(tenMegabytes)->Unit(benchmark::kMillisecond);
BENCHMARK(editorRestyleAfterOneByteEdit)->Arg(1024 * 1024)->Arg(tenMegabytes)->Unit(benchmark::kMicrosecond);

int main(int argc, char** argv) {
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
