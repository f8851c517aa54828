// The shared module: the state that every part of the program shares, and the procedures that
// create, load, save and list editor windows.
#pragma once

#include <QFont>
#include <QString>
#include <QStringList>

#include <memory>
#include <string>
#include <vector>

class frmMain;
class frmTessary;
class MRU;
class QWidget;

// The open editor windows in creation order, keyed by their Tag ("cog" + a number).
class CogCollection {
public:
    bool add(const QString& key, frmTessary* window); // false when the key is taken
    void remove(const QString& key);
    void clear() { items_.clear(); }
    int count() const { return static_cast<int>(items_.size()); }
    frmTessary* item(const QString& key) const; // nullptr when absent
    frmTessary* item(int index) const;          // 1-based; nullptr when out of range
    int indexOf(const QString& key) const;      // 1-based; 0 when absent
    bool contains(const QString& key) const { return indexOf(key) > 0; }

private:
    std::vector<std::pair<QString, frmTessary*>> items_;
};

namespace mdlTessary {

extern CogCollection colCogs;
extern QString strCurCog;              // key of the current editor window
extern QString DefOpenDir, DefSaveDir; // initial directories of the Open and Save As dialogs
extern QString DefFontName;            // the editor font
extern bool DefFontBold, DefFontItalic;
extern qint16 DefFontSize;
extern std::unique_ptr<MRU> objMRU;
extern std::vector<std::string> colVarTypes; // the symbol-type keywords

frmMain* frame();
frmTessary* currentCog(); // colCogs(strCurCog), or nullptr when it names no window

// Where default.cog, messages.dat and cogref.dat are read from: the executable's directory when
// it holds them, else the installed data directory.
QString programDirectory();
void setProgramDirectory(const QString& dir); // for tests

// Start-up: reads the settings, loads the reference, shows the frame and opens the command
// line's path or a blank window. nullptr when the program must end (no reference file).
frmMain* Main(const QString& commandLine);

void OpenCogFile(const QString& path);
// Tells the user that path cannot be opened, and why.
void reportUnreadable(const QString& path, const QString& reason);
QString GetFileTitle(const QString& path);
frmTessary* NewCogWindow(const QString& path, const QString& title);
// Replaces the window's text by the file's bytes; false when the file cannot be read (after
// telling the user, unless reportFailure is false), which leaves the window bound to no file.
bool LoadCogFile(frmTessary* w, const QString& path, const QString& title, bool reportFailure = true);
// Reads the window's file again (asking first when the window is modified); Undo brings back
// what the window held.
void ReloadCogFile(frmTessary* w);
// Writes the text plus CR LF; false (after telling the user which file and why) when it fails,
// leaving the old file and the window's strFile and strFileTitle as they were. Asks first when
// the window's own file changed on disk since the window read or wrote it; false when the user
// answers No.
bool SaveCogFile(frmTessary* w, const QString& path, const QString& title);
void RefreshCogList();
// The editor and printing font of the settings.
QFont DefaultFont();
// Applies the editor font of the settings to a window.
void ApplyFont(frmTessary* w);

// Provided by the tools.
void BuildCogExplorer();
bool LoadCogRef(); // false when the program must end
void LoadMessages();
void PlaceAtCaret(QWidget* pic);
void OpenLink(QWidget* owner, const QString& target);

} // namespace mdlTessary
