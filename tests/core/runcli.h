// Running the real tessary-cli from a test.
#pragma once

#include <QProcess>
#include <QStringList>

struct CliRun {
    int status = -1; // -1 when the program did not end normally
    QByteArray out, err;
};

// Runs tessary-cli with the arguments, in workingDir when one is given.
inline CliRun runTessaryCli(const QStringList& args, const QString& workingDir = {}) {
    QProcess p;
    if (!workingDir.isEmpty()) p.setWorkingDirectory(workingDir);
    p.start(QStringLiteral(TESSARY_BIN_DIR "/tessary-cli"), args);
    CliRun r;
    if (!p.waitForFinished(30000) || p.exitStatus() != QProcess::NormalExit) return r;
    r.status = p.exitCode();
    r.out = p.readAllStandardOutput();
    r.err = p.readAllStandardError();
    return r;
}
