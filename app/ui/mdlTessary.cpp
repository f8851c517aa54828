#include "app/ui/mdlTessary.h"

#include "app/settingsvalues.h"
#include "app/ui/KeyedTreeView.h"
#include "app/ui/MRU.h"
#include "app/ui/dialogs.h"
#include "app/ui/frmMain.h"
#include "app/ui/testlog.h"
#include "editor/ui/CogTextBox.h"
#include "editor/ui/EditorFeatures.h"
#include "editor/ui/frmTessary.h"
#include "templates/ui/frmCGT.h"

#include <QComboBox>
#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QMdiArea>
#include <QMdiSubWindow>
#include <QSaveFile>
#include <QSettings>

#include <Qsci/qscilexer.h>

#include <algorithm>

bool CogCollection::add(const QString& key, frmTessary* window) {
    if (contains(key)) return false;
    items_.emplace_back(key, window);
    return true;
}

void CogCollection::remove(const QString& key) {
    std::erase_if(items_, [&](const auto& item) { return item.first == key; });
}

frmTessary* CogCollection::item(const QString& key) const {
    const int i = indexOf(key);
    return i ? items_[static_cast<std::size_t>(i - 1)].second : nullptr;
}

frmTessary* CogCollection::item(int index) const {
    if (index < 1 || index > count()) return nullptr;
    return items_[static_cast<std::size_t>(index - 1)].second;
}

int CogCollection::indexOf(const QString& key) const {
    for (std::size_t i = 0; i < items_.size(); ++i)
        if (items_[i].first.compare(key, Qt::CaseInsensitive) == 0) return static_cast<int>(i) + 1;
    return 0;
}

namespace mdlTessary {

CogCollection colCogs;
QString strCurCog = QStringLiteral("cog1");
QString DefOpenDir, DefSaveDir;
QString DefFontName = QStringLiteral("Courier New");
bool DefFontBold = false, DefFontItalic = false;
qint16 DefFontSize = 8;
std::unique_ptr<MRU> objMRU;
std::vector<std::string> colVarTypes;

namespace {

frmMain* gFrame = nullptr;
QString gProgramDirectory;

QString readSetting(QSettings& settings, const QString& key, const QString& fallback) {
    const QVariant value = settings.value(key);
    if (!value.isValid()) return fallback;
    // A hand-edited value with an unquoted comma reads as a list: take the text as it stands.
    if (value.typeId() == QMetaType::QStringList) return value.toStringList().join(QStringLiteral(", "));
    return value.toString();
}

bool holdsDataFiles(const QString& dir) {
    return QFileInfo::exists(dir + QStringLiteral("/default.cog")) ||
           QFileInfo::exists(dir + QStringLiteral("/cogref.dat"));
}

// A relative path that names a file of the directory Tessary started in, made absolute so that
// the window, Save and the recent-files list do not depend on that directory. Anything else is
// used as typed.
QString commandLinePath(const QString& typed) {
    const QString absolute = QDir::cleanPath(QDir::current().absoluteFilePath(typed));
    return QDir::isRelativePath(typed) && QFileInfo::exists(absolute) ? absolute : typed;
}

std::string latin1(const QString& s) {
    return s.toLatin1().toStdString();
}

} // namespace

frmMain* frame() {
    return gFrame;
}

frmTessary* currentCog() {
    return colCogs.item(strCurCog);
}

QString programDirectory() {
    if (!gProgramDirectory.isEmpty()) return gProgramDirectory;
    // Beside the program in the build tree; in share/tessary beside bin when installed (found
    // relative to the program, so any install prefix works, then at the configured prefix).
    const QString exeDir = QCoreApplication::applicationDirPath();
    if (holdsDataFiles(exeDir)) return exeDir;
#ifdef TESSARY_DATA_DIR_FROM_BIN
    const QString installed = QDir::cleanPath(exeDir + QStringLiteral("/" TESSARY_DATA_DIR_FROM_BIN));
    if (holdsDataFiles(installed)) return installed;
#endif
#ifdef TESSARY_DATA_DIR
    if (holdsDataFiles(QStringLiteral(TESSARY_DATA_DIR))) return QStringLiteral(TESSARY_DATA_DIR);
#endif
    return exeDir;
}

void setProgramDirectory(const QString& dir) {
    gProgramDirectory = dir;
}

frmMain* Main(const QString& commandLine) {
    objMRU = std::make_unique<MRU>();
    strCurCog = QStringLiteral("cog1");
    colCogs.clear();

    QSettings settings;
    settings.beginGroup(QStringLiteral("Defaults"));
    DefOpenDir = readSetting(settings, QStringLiteral("DefOpenDir"), programDirectory());
    DefSaveDir = readSetting(settings, QStringLiteral("DefSaveDir"), programDirectory());
    DefFontName = readSetting(settings, QStringLiteral("DefFontName"), QStringLiteral("Courier New"));
    DefFontBold =
        settings::toBool(latin1(readSetting(settings, QStringLiteral("DefFontBold"), "False")), false);
    DefFontItalic =
        settings::toBool(latin1(readSetting(settings, QStringLiteral("DefFontItalic"), "False")), false);
    DefFontSize = settings::toInt16(latin1(readSetting(settings, QStringLiteral("DefFontSize"), "8")), 8);
    if (DefFontSize < 1) DefFontSize = 8; // no font can be drawn at that size
    settings.endGroup();

    gFrame = new frmMain;
    gFrame->setAttribute(Qt::WA_DeleteOnClose);
    QObject::connect(gFrame, &QObject::destroyed, [] { gFrame = nullptr; });
    if (!LoadCogRef()) {
        delete gFrame;
        return nullptr;
    }
    gFrame->show();
    objMRU->LoadMRU(gFrame->mnuFileMRU, gFrame->mnuFileBar6);
    if (!commandLine.isEmpty())
        OpenCogFile(commandLinePath(commandLine));
    else
        NewCogWindow(QStringLiteral("blank"), QString());
    gFrame->cmbTvwSel->setCurrentIndex(0);
    gFrame->cmbTvwSel_Click();
    colVarTypes = cog::symbolTypes();
    return gFrame;
}

QString GetFileTitle(const QString& path) {
    const int at = path.lastIndexOf(QLatin1Char('/'));
    return at < 0 ? path : path.mid(at + 1);
}

void OpenCogFile(const QString& path) {
    if (path.right(3).compare(QStringLiteral("cgt"), Qt::CaseInsensitive) == 0) {
        frmCGT::openFromCommand(path);
        return;
    }
    const QString title = GetFileTitle(path);
    frmTessary* w = NewCogWindow(path, title);
    if (!LoadCogFile(w, path, title)) return;
    objMRU->AddFile(frame()->mnuFileMRU, path, title, frame()->mnuFileBar6);
}

frmTessary* NewCogWindow(const QString& path, const QString& title) {
    // The number is the window count plus one, moved on past any number still in use (windows
    // closed out of order would otherwise give a key that is taken).
    int n = colCogs.count() + 1;
    while (colCogs.contains(QStringLiteral("cog%1").arg(n))) ++n;
    const QString key = QStringLiteral("cog%1").arg(n);

    auto* w = new frmTessary;
    colCogs.add(key, w);
    w->Tag = key;
    strCurCog = key;
    QMdiSubWindow* sub = frame()->addEditorWindow(w);
    w->strFile = path;
    w->strFileTitle = title;
    w->setCaption(title.isEmpty() ? QStringLiteral("Cog %1").arg(n) : title);
    sub->show();
    frame()->keepInsideArea(sub);
    frame()->mdiArea->setActiveSubWindow(sub);
    strCurCog = key;

    QFile defaults(programDirectory() + QStringLiteral("/default.cog"));
    if (defaults.open(QIODevice::ReadOnly)) w->txtMain->loadFrom(defaults);
    LoadMessages();
    ApplyFont(w);
    w->clearModified();
    RefreshCogList();
    return w;
}

QFont DefaultFont() {
    QFont font(DefFontName, DefFontSize);
    font.setBold(DefFontBold);
    font.setItalic(DefFontItalic);
    font.setStyleHint(QFont::TypeWriter); // a fixed-pitch stand-in when the named font is missing
    return font;
}

void ApplyFont(frmTessary* w) {
    editorfeatures::applyFont(w->txtMain, DefaultFont());
}

bool LoadCogFile(frmTessary* w, const QString& path, const QString& title, bool reportFailure) {
    w->strFile = path;
    w->strFileTitle = title;
    QFile file(path);
    const bool isDir = QFileInfo(path).isDir();
    if (isDir || !file.open(QIODevice::ReadOnly) || !w->txtMain->loadFrom(file)) {
        if (reportFailure)
            ui::MsgBox(QStringLiteral("Could not open ") + path + QStringLiteral(": ") +
                           (isDir ? QStringLiteral("it is a directory") : file.errorString()),
                       ui::vbOKOnly, ui::vbCritical);
        return false;
    }
    w->clearModified();
    RefreshCogList();
    return true;
}

bool SaveCogFile(frmTessary* w, const QString& path, const QString& title) {
    const QString oldFile = w->strFile, oldTitle = w->strFileTitle;
    w->strFile = path;
    w->strFileTitle = title;
    // Written to a temporary file and renamed over the old one only when complete.
    QSaveFile file(path);
    const std::string_view text = w->txtMain->bytes();
    const bool written =
        file.open(QIODevice::WriteOnly) &&
        file.write(text.data(), static_cast<qint64>(text.size())) == static_cast<qint64>(text.size()) &&
        file.write("\r\n", 2) == 2 && file.commit();
    if (!written) {
        // The window still holds the file it held before.
        w->strFile = oldFile;
        w->strFileTitle = oldTitle;
        ui::MsgBox(QStringLiteral("Could not save ") + path + QStringLiteral(": ") + file.errorString() +
                       QStringLiteral("\r\nYour text is still in its window."),
                   ui::vbOKOnly, ui::vbCritical);
        return false;
    }
    return true;
}

void RefreshCogList() {
    QComboBox* list = frame()->cmbCog;
    list->clear();
    for (int i = 1; i <= colCogs.count(); ++i) list->addItem(colCogs.item(i)->Caption(), i);
    list->setCurrentIndex(-1);
    list->setEditText(QStringLiteral("Choose a Cog"));
    if (testlog::active()) {
        QStringList captions;
        for (int i = 1; i <= colCogs.count(); ++i) captions << colCogs.item(i)->Caption();
        static QString logged;
        const QString line = QStringLiteral("windows: ") + captions.join(QStringLiteral(" | "));
        if (line != logged) testlog::append(line);
        logged = line;
    }
}

} // namespace mdlTessary
