// Tessary: an editor for COG script files.
#include "app/startup.h"
#include "app/ui/KeyedTreeView.h"
#include "app/ui/OpenRequestServer.h"
#include "app/ui/frmMain.h"
#include "app/ui/mdlTessary.h"

#include <QApplication>
#include <QComboBox>
#include <QDir>
#include <QFileInfo>
#include <QPixmap>
#include <QTimer>

#include <cstdio>

int main(int argc, char* argv[]) {
    // --help and --version are answered before any window system is needed.
    QStringList words;
    for (int i = 1; i < argc; ++i) words << QString::fromLocal8Bit(argv[i]);
    const QString typed = words.join(QLatin1Char(' '));
    switch (app::startRequest(typed.toStdString(), QFileInfo::exists(typed))) {
    case app::StartRequest::Help:
        std::fputs(app::usageText().c_str(), stdout);
        return 0;
    case app::StartRequest::Version:
        std::fputs(app::versionText(TESSARY_VERSION).c_str(), stdout);
        return 0;
    case app::StartRequest::Open:
        break;
    }

    QApplication app(argc, argv);
    QApplication::setOrganizationName(QStringLiteral("Tessary"));
    QApplication::setApplicationName(QStringLiteral("Tessary"));

    // The whole command line is one path: blanks are kept, quotation marks too.
    const QString commandLine = QApplication::arguments().mid(1).join(QLatin1Char(' '));
    // A running Tessary takes the path instead. A relative path is made absolute here, where it
    // was typed: the running program may have another working directory.
    QString problem;
    const QString serverName = openrequests::serverName(problem);
    if (serverName.isEmpty())
        std::fprintf(stderr, "Tessary: %s; no file is handed over between running Tessary programs\n",
                     qUtf8Printable(problem));
    else if (!commandLine.isEmpty() &&
             openrequests::handOver(serverName, QDir::isRelativePath(commandLine)
                                                    ? QDir::current().absoluteFilePath(commandLine)
                                                    : commandLine))
        return 0;

    frmMain* frame = mdlTessary::Main(commandLine);
    if (!frame) return 0;
    if (!serverName.isEmpty()) frame->listenForExecuteRequests(serverName);

    // TESSARY_SCREENSHOT=FILE saves a picture of the frame once it is shown, then ends the
    // program without touching the settings (used to make the picture in the README).
    const QString screenshot = qEnvironmentVariable("TESSARY_SCREENSHOT");
    if (!screenshot.isEmpty()) {
        // TESSARY_SCREENSHOT_TREE=CogExplorer shows the explorer tree of the first window instead
        // of the reference tree.
        if (qEnvironmentVariable("TESSARY_SCREENSHOT_TREE") == QLatin1String("CogExplorer")) {
            frame->cmbTvwSel->setCurrentIndex(1);
            frame->cmbTvwSel_Click();
            frame->cmbCog->setCurrentIndex(0);
            frame->cmbCog_Click();
            frame->tvwCogE->expandAll();
        }
        QTimer::singleShot(1500, frame, [frame, screenshot] {
            const bool saved = frame->grab().save(screenshot);
            QCoreApplication::exit(saved ? 0 : 1);
        });
    }
    return app.exec();
}
