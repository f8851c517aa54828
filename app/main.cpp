// Tessary: an editor for COG script files.
#include "app/ui/frmMain.h"
#include "app/ui/mdlTessary.h"

#include <QApplication>
#include <QLocalSocket>

namespace {

// Hands the path to a running Tessary; true when one took it.
bool handOver(const QString& path) {
    QLocalSocket socket;
    socket.connectToServer(frmMain::executeServerName());
    if (!socket.waitForConnected(1000)) return false;
    socket.write(path.toUtf8() + '\n');
    return socket.waitForBytesWritten(2000) && socket.waitForReadyRead(5000) && socket.readLine() == "ok\n";
}

} // namespace

int main(int argc, char* argv[]) {
    QApplication app(argc, argv);
    QApplication::setOrganizationName(QStringLiteral("Tessary"));
    QApplication::setApplicationName(QStringLiteral("Tessary"));

    // The whole command line is one path: blanks are kept.
    QStringList args = QApplication::arguments().mid(1);
    const QString commandLine = args.join(QLatin1Char(' '));
    if (!commandLine.isEmpty() && handOver(commandLine)) return 0;

    frmMain* frame = mdlTessary::Main(commandLine);
    if (!frame) return 0;
    frame->listenForExecuteRequests();
    return app.exec();
}
