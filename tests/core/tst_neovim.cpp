// A real client: Neovim's built-in language client, headless, starts tessary-cli lsp on a COG
// file with an error, and writes down the diagnostics it received and a hover it asked for.
#include <QProcess>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QtTest>

class tst_Neovim : public QObject {
    Q_OBJECT
private slots:
    void diagnosticsAndHover() {
        const QString nvim = QStandardPaths::findExecutable(QStringLiteral("nvim"));
        if (nvim.isEmpty())
            QSKIP("Neovim (nvim) is not installed: scripts/test installs the Debian package neovim when run "
                  "as root");
        QTemporaryDir dir;
        QVERIFY(dir.isValid());
        const auto write = [&](const QString& name, const QByteArray& bytes) {
            QFile f(dir.filePath(name));
            QVERIFY(f.open(QIODevice::WriteOnly));
            f.write(bytes);
        };
        write("door.cog", "symbols\r\nmessage startup\r\nend\r\ncode\r\nstartup:\r\n"
                          "    Sleep(1.0);\r\n    PrintInt(1, 2);\r\n    return;\r\nend\r\n");
        write("client.lua", QString(R"(
local out = {}
local client = vim.lsp.start_client({name = 'tessary', cmd = {'%1', 'lsp'}, root_dir = '%2'})
local buf = vim.api.nvim_get_current_buf()
vim.lsp.buf_attach_client(buf, client)
vim.wait(20000, function() return #vim.diagnostic.get(buf) > 0 end, 50)
for _, d in ipairs(vim.diagnostic.get(buf)) do
  table.insert(out, string.format('diagnostic %d:%d severity %d: %s', d.lnum + 1, d.col + 1, d.severity, d.message))
end
local answers = vim.lsp.buf_request_sync(buf, 'textDocument/hover',
  {textDocument = {uri = vim.uri_from_bufnr(buf)}, position = {line = 5, character = 6}}, 10000)
for _, a in pairs(answers or {}) do
  if a.result then table.insert(out, 'hover ' .. (a.result.contents.value:gsub('\n', ' | '))) end
end
vim.fn.writefile(out, '%2/out.txt')
vim.lsp.stop_client(client)
vim.cmd('qa!')
)")
                                .arg(TESSARY_BIN_DIR "/tessary-cli", dir.path())
                                .toUtf8());
        QProcess p;
        QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
        for (const char* v : {"HOME", "XDG_CONFIG_HOME", "XDG_DATA_HOME", "XDG_STATE_HOME", "XDG_CACHE_HOME"})
            env.insert(v, dir.path());
        p.setProcessEnvironment(env);
        p.setWorkingDirectory(dir.path());
        p.start(nvim, {"--headless", "--clean", "-n", "door.cog", "-c", "luafile client.lua"});
        QVERIFY2(p.waitForFinished(60000), "Neovim did not end");
        QFile out(dir.filePath("out.txt"));
        QVERIFY2(out.open(QIODevice::ReadOnly), p.readAllStandardError().constData());
        const QStringList lines = QString::fromUtf8(out.readAll()).split('\n', Qt::SkipEmptyParts);
        QCOMPARE(lines.value(0), "diagnostic 7:5 severity 1: 'PrintInt' takes 1 argument but is given 2");
        QCOMPARE(lines.value(1).section(" | ", 0, 0), "hover void Sleep(float seconds)");
        QVERIFY2(lines.value(1).contains("Pauses the running handler"), qPrintable(lines.value(1)));
        QCOMPARE(lines.size(), 2);
    }
};

QTEST_GUILESS_MAIN(tst_Neovim)
#include "tst_neovim.moc"
