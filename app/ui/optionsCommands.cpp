// The View menu's font and options commands, the About box and the links it opens.
#include "app/settingsvalues.h"
#include "app/ui/dialogs.h"
#include "app/ui/frmAbout.h"
#include "app/ui/frmMain.h"
#include "app/ui/frmOptions.h"
#include "app/ui/mdlTessary.h"
#include "editor/ui/frmTessary.h"

#include <QDesktopServices>
#include <QFontInfo>
#include <QSettings>
#include <QUrl>

void frmMain::mnuViewFont_Click() {
    using namespace mdlTessary;
    // The dialog starts on the font the editor shows: the stand-in when the named one is missing.
    QFont initial = DefaultFont();
    initial.setFamily(QFontInfo(initial).family());
    QFont chosen;
    if (!ui::dialogs().fontDialog(initial, chosen)) return;
    if (chosen.family().isEmpty()) return;
    DefFontName = chosen.family();
    DefFontBold = chosen.bold();
    DefFontItalic = chosen.italic();
    // A font given in pixels has no point size; the size then stays as it was.
    if (chosen.pointSizeF() > 0) DefFontSize = settings::roundFontSize(chosen.pointSizeF());
    for (int i = 1; i <= colCogs.count(); ++i) ApplyFont(colCogs.item(i));

    QSettings store;
    store.beginGroup(QStringLiteral("Defaults"));
    store.setValue(QStringLiteral("DefFontName"), DefFontName);
    store.setValue(QStringLiteral("DefFontBold"), QString::fromStdString(settings::boolText(DefFontBold)));
    store.setValue(QStringLiteral("DefFontItalic"),
                   QString::fromStdString(settings::boolText(DefFontItalic)));
    store.setValue(QStringLiteral("DefFontSize"), QString::number(DefFontSize));
    store.endGroup();
    store.sync();
}

void frmMain::mnuViewOptions_Click() {
    frmOptions options(this);
    options.exec();
}

void frmMain::showAbout() {
    frmAbout about(this);
    about.exec();
}

void mdlTessary::OpenLink(QWidget*, const QString& target) {
    QDesktopServices::openUrl(QUrl(target, QUrl::TolerantMode)); // a failure is not reported
}
