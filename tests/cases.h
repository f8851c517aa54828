// Golden cases: tests/cases/<rule>/<name>.expected is a transcript of what a rule answers about the
// case's input, the file <name>.<any other extension> beside it (the empty text when there is
// none). A line "> WORDS" asks the rule something; the rule's answer follows up to the next such
// line (a transcript may begin with an answer to the empty question). Words are separated by
// blanks; "double quotes" hold blanks; \r \n \t \\ \" and \xHH stand for their bytes anywhere.
// Set TESSARY_UPDATE_CASES=1 to write the answers into the .expected files instead of comparing.
#pragma once

#include <QDir>
#include <QFile>
#include <QTest>

#include <functional>
#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace cases {

struct Args : std::vector<std::string> {
    const std::string& at(std::size_t i) const {
        static const std::string none;
        return i < size() ? (*this)[i] : none;
    }
    long num(std::size_t i) const { return at(i).empty() ? 0 : std::stol(at(i)); }
    bool has(std::string_view word) const { return std::find(begin(), end(), word) != end(); }
};

// One question about the input: the answer's lines, each ended by "\n".
using Rule = std::function<std::string(const std::string& input, const Args& args, const QString& dir)>;

inline std::string unescape(std::string_view s) {
    std::string out;
    for (std::size_t i = 0; i < s.size(); ++i) {
        if (s[i] != '\\' || i + 1 == s.size()) {
            out += s[i];
            continue;
        }
        const char c = s[++i];
        if (c == 'x' && i + 2 < s.size()) {
            out += char(std::stoi(std::string(s.substr(i + 1, 2)), nullptr, 16));
            i += 2;
        } else {
            out += c == 'r' ? '\r' : c == 'n' ? '\n' : c == 't' ? '\t' : c;
        }
    }
    return out;
}

inline Args split(std::string_view line) {
    Args a;
    for (std::size_t i = 0; i < line.size();) {
        if (line[i] == ' ' || line[i] == '\n') {
            ++i;
            continue;
        }
        std::size_t e = i;
        if (line[i] == '"') {
            for (e = i + 1; e < line.size() && line[e] != '"'; ++e) e += line[e] == '\\';
            a.push_back(unescape(line.substr(i + 1, e - i - 1)));
            i = e + 1;
        } else {
            e = std::min(line.find_first_of(" \n", i), line.size());
            a.push_back(unescape(line.substr(i, e - i)));
            i = e;
        }
    }
    return a;
}

// Bytes shown on one line: line ends, tabs, backslashes and other than printable ASCII escaped.
inline std::string esc(std::string_view s) {
    static const char* hex = "0123456789ABCDEF";
    std::string out;
    for (const unsigned char c : s) {
        if (c == '\r' || c == '\n' || c == '\t' || c == '\\')
            out += std::string("\\") + (c == '\r' ? 'r' : c == '\n' ? 'n' : c == '\t' ? 't' : '\\');
        else if (c < 0x20 || c >= 0x7f)
            out += std::string("\\x") + hex[c >> 4] + hex[c & 15];
        else
            out += char(c);
    }
    return out;
}

// A whole text, one "| " line per line of it ("|" alone for the empty text).
inline std::string block(std::string_view s) {
    std::string out;
    while (!s.empty()) {
        const auto lf = s.find('\n');
        out += "| " + esc(s.substr(0, lf == s.npos ? s.size() : lf + 1)) + "\n";
        s.remove_prefix(lf == s.npos ? s.size() : lf + 1);
    }
    return out.empty() ? "|\n" : out;
}

inline QByteArray readAll(const QString& path) {
    QFile f(path);
    return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray();
}

// Lists the cases of the given rules as rows "rule/name".
inline void listCases(const std::map<std::string, Rule>& rules) {
    QTest::addColumn<QString>("rule");
    QTest::addColumn<QString>("expected");
    for (const auto& [rule, fn] : rules) {
        const QDir dir(QStringLiteral(TESSARY_SOURCE_DIR "/tests/cases/") + QString::fromStdString(rule));
        const auto files = dir.entryList({QStringLiteral("*.expected")}, QDir::Files, QDir::Name);
        for (const QString& f : files)
            QTest::newRow(qPrintable(QString::fromStdString(rule) + '/' + f.chopped(9)))
                << QString::fromStdString(rule) << dir.filePath(f);
    }
}

// Runs the current row's case through its rule and compares the transcripts.
inline void runCase(const std::map<std::string, Rule>& rules) {
    QFETCH(QString, rule);
    QFETCH(QString, expected);
    const QFileInfo info(expected);
    const auto inputs = info.dir().entryList({info.completeBaseName() + ".*"}, QDir::Files);
    std::string input;
    for (const QString& f : inputs)
        if (!f.endsWith(QStringLiteral(".expected"))) input = readAll(info.dir().filePath(f)).toStdString();
    const std::string want = readAll(expected).toStdString();
    std::string got;
    std::string_view rest = want;
    bool first = true;
    while (!rest.empty() || first) {
        std::string_view question;
        if (rest.starts_with("> ")) {
            const auto lf = std::min(rest.find('\n'), rest.size());
            question = rest.substr(2, lf - 2);
            got += "> " + std::string(question) + "\n";
        }
        const auto next = rest.find("\n> ", question.empty() ? 0 : 1);
        rest.remove_prefix(next == rest.npos ? rest.size() : next + 1);
        got += rules.at(rule.toStdString())(input, split(question), info.path());
        first = false;
    }
    if (qEnvironmentVariableIsSet("TESSARY_UPDATE_CASES") && got != want) {
        QFile out(expected);
        QVERIFY(out.open(QIODevice::WriteOnly));
        out.write(got.data(), qint64(got.size()));
    } else if (got != want) {
        const QStringList g = QString::fromStdString(got).split('\n'),
                          w = QString::fromStdString(want).split('\n');
        for (qsizetype i = 0; i < std::max(g.size(), w.size()); ++i)
            QCOMPARE(g.value(i, "(nothing)"), w.value(i, "(nothing)"));
    }
}

} // namespace cases
