#include "app/ui/testlog.h"

#include <QFile>

namespace testlog {

namespace {

QString logPath() {
    static const QString path = qEnvironmentVariable("TESSARY_TEST_LOG");
    return path;
}

} // namespace

bool active() {
    return !logPath().isEmpty();
}

void append(const QString& line) {
    if (!active()) return;
    QFile file(logPath());
    if (!file.open(QIODevice::WriteOnly | QIODevice::Append)) return;
    QString oneLine = line;
    oneLine.replace(QStringLiteral("\r\n"), QStringLiteral("\\n"))
        .replace(QLatin1Char('\n'), QStringLiteral("\\n"));
    file.write(oneLine.toUtf8() + '\n');
}

} // namespace testlog
