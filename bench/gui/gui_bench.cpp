// The editor's own figures, measured on the real widgets (offscreen): start-up to a shown frame,
// resident memory, keystrokes in a 1 KB and a 10 MB script and on a 10 MB line, opening and saving
// a 50 MB file.
// Prints one line per figure: name | value | unit | baseline | baseline unit.
#include "app/ui/dialogs.h"
#include "app/ui/frmMain.h"
#include "app/ui/mdlTessary.h"
#include "bench/cogtext.h"
#include "cog/layout.h"
#include "editor/ui/CogTextBox.h"
#include "editor/ui/frmTessary.h"

#include <QApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>
#include <QSettings>
#include <QTemporaryDir>
#include <QTest>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstring>
#include <fstream>
#include <memory>
#include <string>
#include <time.h>
#include <vector>

namespace {

using Clock = std::chrono::steady_clock;

double msSince(Clock::time_point t0) {
    return std::chrono::duration<double, std::milli>(Clock::now() - t0).count();
}

// Milliseconds of CPU time used by this process: on a shared machine the wall clock also counts
// the time other programs ran. Figures report CPU time, and the wall clock beside it.
double cpuMs() {
    timespec ts{};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &ts);
    return static_cast<double>(ts.tv_sec) * 1e3 + static_cast<double>(ts.tv_nsec) / 1e6;
}

struct Stopwatch {
    Clock::time_point wall = Clock::now();
    double cpu = cpuMs();
    double cpuElapsed() const { return cpuMs() - cpu; }
    double wallElapsed() const { return msSince(wall); }
};

// Resident memory of this process in MB, from /proc/self/status.
double residentMB() {
    std::ifstream in("/proc/self/status");
    std::string line;
    while (std::getline(in, line))
        if (line.rfind("VmRSS:", 0) == 0) return std::stod(line.substr(6)) / 1024.0;
    return -1;
}

// One memchr pass over bytes, the best of several, in microseconds.
double memchrMicros(const char* data, std::size_t size) {
    double best = 1e12;
    for (int i = 0; i < 9; ++i) {
        const auto t0 = Clock::now();
        const void* volatile hit = std::memchr(data, '\x01', size);
        (void)hit;
        best = std::min(best, msSince(t0) * 1000.0);
    }
    return best;
}

// Milliseconds of CPU time to take two fresh blocks of `size` bytes into use, one after the other:
// what an editor that keeps the text and one style byte per character spends on memory before
// it has read the first byte of a file.
double freshMemoryMs(std::size_t size) {
    const Stopwatch watch;
    for (int i = 0; i < 2; ++i) {
        const std::unique_ptr<char[]> block(new char[size]);
        std::memset(block.get(), i, size);
        asm volatile("" : : "r"(block.get()) : "memory"); // the writes must happen
    }
    return watch.cpuElapsed();
}

void figure(const char* name, double value, const char* unit, double baseline = -1,
            const char* baseUnit = "") {
    if (baseline >= 0)
        std::printf("%s | %.3f | %s | %.3f | %s\n", name, value, unit, baseline, baseUnit);
    else
        std::printf("%s | %.3f | %s | - | -\n", name, value, unit);
    std::fflush(stdout);
}

// Answers every dialog without showing one: the benchmark must never wait for a user.
struct SilentDialogs : ui::Dialogs {
    int msgBox(const QString&, int buttons, int, const QString&) override {
        return buttons == ui::vbYesNoCancel ? ui::vbNo : ui::vbOK;
    }
    QString inputBox(const QString&, const QString&, const QString&) override { return {}; }
    QString openFileName(const QString&, const QString&) override { return {}; }
    QString saveFileName(const QString&, const QString&, const QString&) override { return {}; }
    bool printDialog(QPrinter&) override { return false; }
    bool fontDialog(const QFont&, QFont&) override { return false; }
};

// Microseconds per keystroke: a letter typed and removed again with Backspace, `rounds` times,
// the editor repainting after each key, with the caret at `caret`.
double keystrokeMicros(frmTessary* w, long caret, int rounds) {
    CogTextBox* box = w->txtMain;
    box->setFocus();
    box->setSelStart(caret);
    box->ensureCursorVisible();
    QCoreApplication::processEvents();
    const Stopwatch watch;
    for (int i = 0; i < rounds; ++i) {
        QTest::keyClick(box, Qt::Key_X);
        QCoreApplication::processEvents();
        QTest::keyClick(box, Qt::Key_Backspace);
        QCoreApplication::processEvents();
    }
    return watch.cpuElapsed() * 1000.0 / (2.0 * rounds);
}

void keystrokes(const char* size, std::size_t bytes, int rounds) {
    const std::string text = cogtext::generate(20261123, bytes);
    frmTessary* w = mdlTessary::NewCogWindow(QStringLiteral("blank"), QString());
    w->txtMain->setTextBytes(QByteArray::fromStdString(text));
    QCoreApplication::processEvents();
    const cog::Markers m = cog::findMarkers(text);
    const double base = memchrMicros(text.data(), text.size());
    const long inSymbols = (m.symbols + m.end) / 2;
    const long inCode = (m.code + static_cast<long>(text.size())) / 2;
    figure(("keystroke in the symbols range, " + std::string(size)).c_str(),
           keystrokeMicros(w, inSymbols, rounds), "us", base, "us");
    figure(("keystroke in the code, " + std::string(size)).c_str(), keystrokeMicros(w, inCode, rounds), "us",
           base, "us");
    if (w->txtMain->textLength() != static_cast<long>(text.size()))
        std::fprintf(stderr, "keystrokes lost text\n");
    w->bMod = false;
    w->close();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

// A 10 MB script that is one line (a declaration, then a comment to the end): caret moves along
// it and a letter typed and removed at its start, the editor repainting after each key.
void longLine() {
    QByteArray text = "thing door = 1.5; #";
    while (text.size() < (10 << 20)) text += " thing abc = 1.5; x";
    frmTessary* w = mdlTessary::NewCogWindow(QStringLiteral("blank"), QString());
    w->txtMain->setTextBytes(text);
    CogTextBox* box = w->txtMain;
    box->setFocus();
    box->setSelStart(0);
    QCoreApplication::processEvents();
    const double base = memchrMicros(text.constData(), static_cast<std::size_t>(text.size()));
    constexpr int kMoves = 20;
    Stopwatch watch;
    for (int i = 0; i < kMoves; ++i) {
        QTest::keyClick(box, Qt::Key_Right);
        QCoreApplication::processEvents();
    }
    figure("caret move on a 10 MB line", watch.cpuElapsed() * 1000.0 / kMoves, "us", base, "us");
    QTest::keyClick(box, Qt::Key_X); // the first edit after the load costs more than the later ones
    QCoreApplication::processEvents();
    watch = Stopwatch();
    QTest::keyClick(box, Qt::Key_Backspace);
    QCoreApplication::processEvents();
    QTest::keyClick(box, Qt::Key_X);
    QCoreApplication::processEvents();
    figure("keystroke on a 10 MB line", watch.cpuElapsed() * 1000.0 / 2, "us", base, "us");
    w->bMod = false;
    w->close();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

} // namespace

int main(int argc, char** argv) {
    const auto processStart = Clock::now();
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QTemporaryDir config;
    qputenv("XDG_CONFIG_HOME", config.path().toLocal8Bit());
    QApplication app(argc, argv);
    QApplication::setOrganizationName(QStringLiteral("Tessary"));
    QApplication::setApplicationName(QStringLiteral("Tessary"));
    mdlTessary::setProgramDirectory(QStringLiteral(TESSARY_BIN_DIR));
    SilentDialogs dialogs;
    ui::setDialogs(&dialogs);

    frmMain* frame = mdlTessary::Main(QString());
    if (!frame || !QTest::qWaitForWindowExposed(frame)) {
        std::fprintf(stderr, "the frame was not shown\n");
        return 1;
    }
    QCoreApplication::processEvents();
    figure("start-up to a shown frame (in process)", cpuMs(), "ms");
    figure("start-up to a shown frame (in process), wall clock", msSince(processStart), "ms");
    figure("resident memory at start", residentMB(), "MB");

    keystrokes("1 KB", 1024, 300);
    keystrokes("10 MB", 10u << 20, 40);
    longLine();

    // A 50 MB script on disk, opened as the File menu does, then saved.
    QTemporaryDir dir;
    const QString path = dir.filePath(QStringLiteral("big.cog"));
    std::string big = cogtext::generate(50, 50u << 20);
    {
        QFile f(path);
        if (!f.open(QIODevice::WriteOnly) ||
            f.write(big.data(), static_cast<qint64>(big.size())) != qint64(big.size()))
            return 1;
    }
    const double base50 = memchrMicros(big.data(), big.size()) / 1000.0;
    const std::size_t bigSize = big.size();
    big = std::string(); // only the editor holds the text from here on
    const double rssBefore = residentMB();
    Stopwatch open;
    mdlTessary::OpenCogFile(path);
    QCoreApplication::processEvents();
    figure("open a 50 MB file", open.cpuElapsed(), "ms", base50, "ms");
    figure("open a 50 MB file, wall clock", open.wallElapsed(), "ms", base50, "ms");
    frmTessary* w = mdlTessary::currentCog();
    if (!w || w->txtMain->textLength() != static_cast<long>(bigSize)) {
        std::fprintf(stderr, "the 50 MB file was not opened whole\n");
        return 1;
    }
    figure("resident memory with a 50 MB file open", residentMB(), "MB", rssBefore, "MB");
    figure("fresh memory for a 50 MB text and its styles", freshMemoryMs(bigSize), "ms", base50, "ms");
    const Stopwatch save;
    mdlTessary::SaveCogFile(w, dir.filePath(QStringLiteral("saved.cog")), QStringLiteral("saved.cog"));
    figure("save a 50 MB file", save.cpuElapsed(), "ms", base50, "ms");
    figure("save a 50 MB file, wall clock", save.wallElapsed(), "ms", base50, "ms");
    if (QFileInfo(dir.filePath(QStringLiteral("saved.cog"))).size() != static_cast<qint64>(bigSize) + 2)
        std::fprintf(stderr, "the saved file has the wrong size\n");

    for (int i = 1; i <= mdlTessary::colCogs.count(); ++i) mdlTessary::colCogs.item(i)->bMod = false;
    frame->close();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    ui::setDialogs(nullptr);
    return 0;
}
