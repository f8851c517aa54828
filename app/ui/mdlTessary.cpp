#include "app/ui/mdlTessary.h"

#include "app/settingsvalues.h"
#include "app/ui/KeyedTreeView.h"
#include "app/ui/MRU.h"
#include "app/ui/dialogs.h"
#include "app/ui/diskfile.h"
#include "app/ui/frmMain.h"
#include "app/ui/recovery.h"
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

// Reads a file into the window's text. False, with the reason, when it cannot be read; the text
// is then unchanged when the file was refused before reading, and empty when reading failed.
bool loadInto(frmTessary* w, const QString& path, QString& reason, editor::DiskState* state = nullptr) {
    diskfile::Opened opened = diskfile::openForReading(path);
    if (!opened.file) {
        reason = opened.error;
        return false;
    }
    if (!w->txtMain->loadFrom(*opened.file)) {
        reason = opened.file->error() == QFileDevice::NoError
                     ? QStringLiteral("there is not enough memory for it")
                     : opened.file->errorString();
        return false;
    }
    if (state) {
        *state = opened.state;
        const std::string_view bytes = w->txtMain->bytes();
        state->hash = diskfile::digest({QByteArrayView(bytes)});
    }
    return true;
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
    recovery::startSession();
    gFrame->show();
    objMRU->LoadMRU(gFrame->mnuFileMRU, gFrame->mnuFileBar6);
    if (!commandLine.isEmpty())
        OpenCogFile(commandLinePath(commandLine));
    else
        NewCogWindow(QStringLiteral("blank"), QString());
    gFrame->cmbTvwSel->setCurrentIndex(0);
    gFrame->cmbTvwSel_Click();
    colVarTypes = cog::symbolTypes();
    recovery::offer();
    return gFrame;
}

void reportUnreadable(const QString& path, const QString& reason) {
    ui::MsgBox(QStringLiteral("Could not open ") + path + QStringLiteral(": ") + reason, ui::vbOKOnly,
               ui::vbCritical);
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

    recovery::attach(w);
    QObject::connect(w, &frmTessary::reloadRequested, w, [w] { ReloadCogFile(w); });

    // A missing default.cog gives an empty window; one that cannot be read is reported.
    const QString defaults = programDirectory() + QStringLiteral("/default.cog");
    if (QString reason; !loadInto(w, defaults, reason) && QFileInfo::exists(defaults))
        reportUnreadable(defaults, reason);
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
    QString reason;
    editor::DiskState state;
    if (!loadInto(w, path, reason, &state)) {
        // The window stays, bound to no file: Save cannot overwrite a file it never read.
        w->strFile = QStringLiteral("blank");
        w->strFileTitle.clear();
        w->setCaption(QStringLiteral("Cog ") + w->Tag.mid(3));
        w->setDiskState({});
        w->clearModified();
        RefreshCogList();
        if (reportFailure) reportUnreadable(path, reason);
        return false;
    }
    w->setDiskState(state);
    w->clearModified();
    RefreshCogList();
    return true;
}

void ReloadCogFile(frmTessary* w) {
    const QString name = w->strFileTitle.isEmpty() ? w->Caption() : w->strFileTitle;
    if (w->bMod &&
        ui::MsgBox(QStringLiteral("Reload ") + name +
                       QStringLiteral(" from disk?\r\nThe changes made in this window will be replaced by "
                                      "the file's text (Undo brings them back)."),
                   ui::vbYesNo | ui::vbDefaultButton2, ui::vbExclamation) != ui::vbYes)
        return;
    QByteArray bytes;
    QString reason;
    editor::DiskState state;
    if (!diskfile::readAll(w->strFile, bytes, reason, &state)) {
        reportUnreadable(w->strFile, reason);
        return;
    }
    // One step that Undo takes back, so that the window's own text is never lost.
    w->txtMain->SendScintilla(QsciScintilla::SCI_BEGINUNDOACTION);
    w->txtMain->setTextBytes(bytes);
    w->txtMain->SendScintilla(QsciScintilla::SCI_ENDUNDOACTION);
    w->setDiskState(state);
    w->clearModified();
    recovery::forget(w);
}

bool SaveCogFile(frmTessary* w, const QString& path, const QString& title) {
    // Another program, or another window of the same file, may have written it since this
    // window read or wrote it.
    if (path == w->strFile &&
        editor::compareDiskState(w->diskState, diskfile::currentState(path)) == editor::DiskChange::Changed &&
        ui::MsgBox(path +
                       QStringLiteral(" has changed on disk since you opened it.\r\nSave anyway, replacing "
                                      "it with the text of this window?"),
                   ui::vbYesNo | ui::vbDefaultButton2, ui::vbExclamation) != ui::vbYes)
        return false;
    const std::string_view text = w->txtMain->bytes();
    QString error;
    editor::DiskState written;
    if (!diskfile::write(path, {QByteArrayView(text), QByteArrayView("\r\n")}, error, &written)) {
        // The window still holds the file it held before, and its text.
        ui::MsgBox(QStringLiteral("Could not save ") + path + QStringLiteral(": ") + error +
                       QStringLiteral("\r\nYour text is still in its window."),
                   ui::vbOKOnly, ui::vbCritical);
        return false;
    }
    w->strFile = path;
    w->strFileTitle = title;
    w->setDiskState(written);
    recovery::forget(w);
    return true;
}

void RefreshCogList() {
    QComboBox* list = frame()->cmbCog;
    list->clear();
    for (int i = 1; i <= colCogs.count(); ++i) list->addItem(colCogs.item(i)->Caption(), i);
    list->setCurrentIndex(-1);
    list->setEditText(QStringLiteral("Choose a Cog"));
    if (ui::lcUi().isInfoEnabled()) {
        QStringList captions;
        for (int i = 1; i <= colCogs.count(); ++i) captions << colCogs.item(i)->Caption();
        static QString logged;
        const QString line = captions.join(QStringLiteral(" | "));
        if (line != logged) qCInfo(ui::lcUi).noquote() << "windows:" << line;
        logged = line;
    }
}

} // namespace mdlTessary
