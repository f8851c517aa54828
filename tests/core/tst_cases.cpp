// The pure rules against their golden cases under tests/cases/<rule>/ (see tests/cases.h), and the
// shipped data files read by the same readers.
#include "tests/cases.h"

#include "app/recentfiles.h"
#include "app/settingsvalues.h"
#include "cog/addsymbol.h"
#include "cog/explorer.h"
#include "cog/renamedelete.h"
#include "cog/syntaxcheck.h"
#include "editor/coglexer.h"
#include "editor/firstoccurrence.h"
#include "editor/messages.h"
#include "editor/typingaids.h"
#include "language/services.h"
#include "reference/cogref.h"
#include "templates/template.h"

#include <QProcess>

#include <sstream>

using cases::Args;
using cases::block;
using cases::esc;
using cog::Pos;
using std::string;
using std::to_string;

namespace {

string sel(Pos start, Pos length) {
    return to_string(start) + "+" + to_string(length);
}

string tree(const cog::KeyedTree& t) {
    string out;
    for (const auto& n : t.nodes())
        out += to_string(t.indexOf(n.key)) + " " + (n.hasParent ? esc(n.parentKey) : "-") + " > " +
               esc(n.key) + " | " + esc(n.text) + " | " + esc(n.tag) + (n.expanded ? " +" : "") + "\n";
    return out;
}

string explorer(const string& text, const Args&, const QString&) {
    const auto r = cog::buildExplorer(text, "x.cog", cog::symbolTypes());
    using S = cog::ExplorerResult::Stop;
    return tree(r.tree) +
           (r.stop == S::None ? "complete\n"
            : r.stop == S::DuplicateKey
                ? "duplicate " + esc(r.offendingKey) + ", selects " + sel(r.selStart, r.selLength) + " " +
                      esc(text.substr(std::size_t(r.selStart), std::size_t(r.selLength))) + "\n"
                : "failure at " + to_string(r.selStart) + ": " + r.failure + "\n");
}

string keyedTree(const string& text, const Args& a, const QString&) {
    cog::KeyedTree t;
    string out;
    for (const auto& e : cases::split(text)) {
        const auto gt = e.find('>');
        const string parent = e.substr(0, gt), key = e.substr(gt + 1);
        const auto r =
            t.add(parent == "-" ? std::nullopt : std::optional<std::string_view>(parent), key, key);
        if (r != cog::KeyedTree::AddResult::Added) {
            out += "refused " + e +
                   (r == cog::KeyedTree::AddResult::DuplicateKey ? ": key taken\n" : ": no parent\n");
            break;
        }
    }
    if (a.at(0) == "remove") {
        const auto* node = t.find(a.at(1)); // by a reference to the node's own key
        out += t.remove(node ? node->key : a.at(1)) ? "removed\n" : "not found\n";
        if (t.contains(a.at(1))) out += "still there\n";
    }
    return out + tree(t);
}

string layout(const string& text, const Args& a, const QString&) {
    if (a.at(0) == "find")
        return to_string(
                   cog::find(a.num(1), text, a.at(2), a.has("exact") ? cog::Mode::Exact : cog::Mode::Text)) +
               "\n";
    if (a.at(0) == "name") return esc(cog::GetSymbolName(a.at(2), std::size_t(a.num(1)))) + "\n";
    if (a.at(0) == "bare") return esc(cog::StripDefaultValue(a.at(1))) + "\n";
    if (a.at(0) == "whole")
        return cog::isWholeWord(text, a.num(1), std::size_t(a.num(2))) ? "whole\n" : "part\n";
    if (a.at(0) == "message") {
        const auto body = cog::messageBody(text, a.at(1), cog::find(1, text, a.at(1)));
        return body ? block(*body) : "none\n";
    }
    const auto m = cog::findMarkers(text);
    const auto body = cog::symbolsBody(text);
    const bool same = cog::symbolsMarker(text) == m.symbols && cog::endMarker(text) == m.end &&
                      cog::codeMarker(text) == m.code;
    return "symbols " + to_string(m.symbols) + ", end " + to_string(m.end) + ", code " + to_string(m.code) +
           ", second end " + to_string(m.secondEnd) + (same ? "" : " (single searches differ)") + "\nbody " +
           (body ? "\n" + block(*body) : "none\n");
}

string check(const string& text, const Args& a, const QString&) {
    string out;
    for (const auto& f : cog::checkCog(text, a.num(1))) out += f.text + " @" + to_string(f.caret) + "\n";
    return out.empty() ? "nothing\n" : out;
}

string addSymbol(const string& text, const Args& a, const QString&) {
    if (a.at(0) == "shows") return cog::explorerShowsWindow(a.at(1), a.at(2)) ? "rebuilt\n" : "left alone\n";
    const auto r = cog::addSymbol(text, a.num(1), {a.at(2), a.at(3), a.at(4), a.has("local"), a.at(6)});
    using O = cog::AddSymbolResult::Outcome;
    if (r.outcome != O::Inserted)
        return r.outcome == O::NoType ? "no type\n" : r.outcome == O::NoName ? "no name\n" : "no end line\n";
    return "caret " + to_string(r.caret) + "\n" + block(editor::applyEdit(text, r.edit));
}

string renameDelete(const string& input, const Args& a, const QString&) {
    if (a.at(0) == "used") return cog::usedInCode(input, a.at(1)) ? "used\n" : "not used\n";
    cog::KeyedTree t = cog::buildExplorer(input, "x.cog", cog::symbolTypes()).tree;
    string text = input; // "without BYTES": the tree is the input's, the text has lost the bytes
    if (a.at(2) == "without") text.erase(text.find(a.at(3)), a.at(3).size());
    if (a.at(0) == "delete") {
        const auto r = cog::deleteNode(text, t, a.at(1));
        static const char* outcome[] = {"deleted", "in use", "key not in text", "not in tree", "root"};
        string out = string(outcome[int(r.outcome)]) + ", caret " + to_string(r.caret) + ", node " +
                     esc(r.removeKey) + " goes\n";
        const auto before = t.count();
        cog::applyDelete(t, r);
        out += to_string(before - t.count()) + " nodes gone" +
               (t.contains(a.at(1)) ? ", the node stays\n" : "\n");
        return out + (r.edit.isEmpty() ? "" : block(editor::applyEdit(text, r.edit)));
    }
    const auto r = a.at(0) == "node" ? cog::renameNode(text, t, a.at(1), a.at(2), a.at(3))
                                     : cog::renameLabel(text, a.at(1), a.at(2));
    static const char* outcome[] = {"renamed", "not in text", "refused"};
    string out = outcome[int(r.outcome)];
    if (r.search)
        out += ", searched " + esc(r.search->word) + " for " + esc(r.search->replacement) + " next from " +
               to_string(r.search->ipos);
    return out + "\n" + (r.edit.isEmpty() ? "" : block(editor::applyEdit(text, r.edit)));
}

string findReplace(const string& text, const Args& a, const QString&) {
    if (a.at(0) == "brace") {
        const auto s = editor::matchBrace(text, a.num(1));
        return "selects " + sel(s.start, s.length) + "\n";
    }
    if (a.at(0) == "find") {
        const auto r = editor::findWord(text, a.num(1), a.at(2));
        return r.found ? "found at " + to_string(r.found) + ", selects " +
                             sel(r.selection.start, r.selection.length) + ", next from " + to_string(r.ipos) +
                             "\n"
                       : "not found, next from " + to_string(r.ipos) + "\n";
    }
    const auto r = editor::replaceSeries(text, a.num(1), a.at(2), a.at(3), a.has("all"), a.has("edges"));
    return "replaced " + to_string(r.replaced) + ", selection " +
           (r.selection ? sel(r.selection->start, r.selection->length) : "unchanged") + ", next from " +
           to_string(r.ipos) + (r.bounded ? ", bounded" : "") + "\n" + block(editor::applyEdit(text, r.edit));
}

string templ(const string& bytes, const Args& a, const QString&) {
    if (a.at(0) == "widths") {
        std::vector<double> titles;
        for (std::size_t i = 3; i < a.size(); ++i) titles.push_back(std::stod(a[i]));
        string out;
        for (double w : templates::columnWidths(titles, std::stod(a.at(1)), std::stod(a.at(2))))
            out += QString::number(w).toStdString() + " ";
        return out + "\n";
    }
    const auto r = templates::readTemplate(bytes);
    if (!r.ok()) return r.error.describe() + "\n";
    std::vector<templates::Assignment> values = templates::defaultAssignments(r.tmpl);
    if (a.at(0) == "generate") {
        values.clear();
        for (std::size_t i = 1; i < a.size(); ++i)
            values.emplace_back(a[i].substr(0, a[i].find('=')), a[i].substr(a[i].find('=') + 1));
        return block(templates::generate(bytes, r.tmpl.ilen, values));
    }
    string out = to_string(r.tmpl.columns) + " columns:";
    for (const auto& t : r.tmpl.titles) out += " [" + esc(t) + "]";
    for (const auto& row : r.tmpl.rows) {
        out += "\nrow";
        for (const auto& f : row.fields) out += " [" + esc(f) + "]";
        if (row.fields.size() != std::size_t(r.tmpl.columns) || row.value != row.fields[0] ||
            row.name != row.fields[1])
            out += " (value and name differ from the fields)";
    }
    out += "\nbody after " + to_string(r.tmpl.ilen) + " bytes\n" +
           block(templates::templateBody(bytes, r.tmpl.ilen));
    return out + "generates\n" + block(templates::generate(bytes, r.tmpl.ilen, values));
}

string cogRef(const string& bytes, const Args& a, const QString&) {
    const auto ref = reference::readCogRef(bytes);
    if (a.at(0) == "find")
        return to_string(reference::findNode(ref.tree, a.at(1), std::size_t(a.num(2)))) + "\n";
    if (a.at(0) == "lookup") return to_string(reference::lookUpEntry(ref.tree, a.at(1))) + "\n";
    string out;
    for (const auto& n : ref.tree.nodes()) {
        if (!n.hasParent) {
            out += "group " + esc(n.text) + (reference::isGroupTag(n.tag) ? "\n" : " (no group tag)\n");
            continue;
        }
        const auto parts = reference::splitTag(n.tag);
        out += "  " + esc(n.text) + " in " + esc(n.parentKey) + ": inserts " + esc(parts.callText) +
               ", shows " + esc(parts.description) + (n.key == n.tag ? "\n" : " (key differs from tag)\n");
    }
    for (const auto& w : ref.warnings)
        out += "skipped line " + to_string(w.line) + (w.reason.empty() ? "\n" : ": " + w.reason + "\n");
    return out;
}

string typingAids(const string& text, const Args& a, const QString&) {
    if (a.at(0) == "word") {
        const auto r = editor::selectWordRange(text, a.num(1));
        return sel(r.start, r.length) + " " + esc(text.substr(std::size_t(r.start), std::size_t(r.length))) +
               "\n";
    }
    if (a.at(0) == "inside")
        return editor::insideSymbols(cog::symbolsMarker(text), cog::endMarker(text), a.num(1)) ? "inside\n"
                                                                                               : "outside\n";
    if (a.at(0) == "prefix") {
        const std::string_view from = std::string_view(text).substr(std::size_t(a.num(1) - 1));
        const auto r = editor::insertRange(from, a.num(1));
        return "\"" + esc(editor::popupPrefix(from)) + "\", typing q: \"" +
               esc(editor::popupPrefix(from, 'q')) + "\", replaces " + sel(r.start, r.length) + "\n";
    }
    if (a.at(0) == "popup") return editor::opensMessagePopup(a.at(1)) ? "opens\n" : "stays shut\n";
    // help: o "(" after a reference name, n "(" after another word, c ")" typed, O and C deleted.
    editor::HelpLine h;
    for (const char e : a.at(1)) {
        if (e == 'o' && editor::openParenTyped(h) == editor::OpenParen::LookUp) h.shown = true;
        if (e == 'n') editor::openParenTyped(h);
        if (e == 'c') editor::closeParenTyped(h);
        if (e == 'O') editor::openParenDeleted(h);
        if (e == 'C') editor::closeParenDeleted(h);
    }
    return string(h.shown ? "shown" : "hidden") + ", depth " + to_string(h.parens) + "\n";
}

string recentFiles(const string& stored, const Args& a, const QString&) {
    if (a.at(0) == "value") {
        const auto s = app::parseStoredValue(a.at(1));
        return esc(s.title) + " | " + esc(s.path) + ", stored as " + esc(app::storedValue(s)) + "\n";
    }
    if (a.at(0) == "caption") {
        const string c = app::slotCaption(int(a.num(1)), a.at(2));
        return esc(c) + ", title " + esc(app::titleOfCaption(c)) + ", key " + app::slotKey(int(a.num(1))) +
               "\n";
    }
    app::RecentFiles list;
    const Args values = cases::split(stored);
    for (int k = 0; k < 4; ++k) app::loadSlot(list, k, values.at(std::size_t(k)));
    for (std::size_t i = 1; i < a.size(); ++i) app::addFile(list, a[i], a[i].substr(a[i].rfind('/') + 1));
    string out;
    bool any = false;
    for (int k = 0; k < 4; ++k) {
        const auto& s = list.entries[std::size_t(k)];
        out += app::slotCaption(k, s.title) + "| " + esc(s.path) + (s.visible ? "\n" : " (hidden)\n");
        any = any || s.visible;
        if (s.visible == s.title.empty()) out += "(shown wrongly)\n";
    }
    return out + (list.separatorVisible ? "separator\n" : "no separator\n") +
           (list.separatorVisible == any ? "" : "(separator wrong)\n");
}

string colouring(const string& text, const Args& a, const QString&) {
    if (a.at(0) == "tracker") {
        editor::StyleTracker t;
        const long styled = a.num(1);
        if (styled < 0) t.inserted(0, -styled); // a text put in whole first
        t.styled(0, std::abs(styled));
        if (a.num(3)) t.deleted(a.num(2), a.num(3));
        if (a.num(4)) t.inserted(a.num(2), a.num(4));
        if (!t.canStopAt(a.num(6))) return "goes on\n";
        t.styled(a.num(5), a.num(6));
        return t.hasChange() ? "stops, change left\n" : "stops\n";
    }
    editor::CogWords words;
    words.setVerbs(std::vector<string>(a.begin() + std::min<std::size_t>(1, a.size()), a.end()));
    string styles(text.size(), '\0'), out, shown, codes;
    editor::styleCogText(text, words, reinterpret_cast<unsigned char*>(styles.data()));
    for (std::size_t i = 0; i <= text.size(); ++i) {
        if (i == text.size() || text[i] == '\n') {
            out += (shown.empty() ? "" : "  " + shown + "\n  " + codes + "\n");
            shown.clear(), codes.clear();
            continue;
        }
        shown += text[i] == '\r'                  ? '<'
                 : text[i] == '\t'                ? '>'
                 : text[i] < ' ' || text[i] > '~' ? '?'
                                                  : text[i];
        codes += ".#STFVL\"9"[int(styles[i])];
    }
    return out;
}

string other(const string& text, const Args& a, const QString&) {
    if (a.at(0) == "messages") {
        string out;
        for (const auto& n : editor::readMessages(text)) out += "[" + esc(n) + "]\n";
        return out;
    }
    if (a.at(0) == "setting")
        return "number " + to_string(settings::toInt16(a.at(1), -1)) + ", yes/no " +
               to_string(settings::toBool(a.at(1), true)) + to_string(settings::toBool(a.at(1), false)) +
               "\n";
    if (a.at(0) == "font") return to_string(settings::roundFontSize(std::stod(a.at(1)))) + "\n";
    // edit POS DELETED INSERTED NEEDLE: where the tracker puts the needle's first occurrence.
    string t = text;
    const Pos before = cog::find(1, t, a.at(4));
    t.replace(std::size_t(a.num(1)), std::size_t(a.num(2)), a.at(3));
    const Pos got = editor::updateFirstOccurrence(
        before, a.at(4), Pos(t.size()), {a.num(1), a.num(2), Pos(a.at(3).size())},
        [&](Pos s, Pos n) { return std::string_view(t).substr(std::size_t(s), std::size_t(n)); });
    return "at " + to_string(got) + (got == cog::find(1, t, a.at(4)) ? "\n" : " (a search finds another)\n");
}

// Language services. A place is a needle with "|" where the offset falls, and optionally which
// occurrence (1-based) of the needle: "Print|Int" 2.
string services(const string& text, const Args& a, const QString&) {
    static const auto verbs =
        language::VerbTable::read(cases::readAll(TESSARY_SOURCE_DIR "/data/verbs.dat").toStdString());
    static const auto docs = language::VerbDocs::fromReference(
        reference::readCogRef(cases::readAll(TESSARY_SOURCE_DIR "/data/cogref.dat").toStdString()).tree);
    const auto analysis = language::analyse(text, verbs);
    const language::Script script{text, analysis, verbs, docs};
    const string needle = a.at(1).substr(0, a.at(1).find('|')) + a.at(1).substr(a.at(1).find('|') + 1);
    std::size_t at = text.find(needle);
    for (long n = a.num(2); n > 1 && at != string::npos; --n) at = text.find(needle, at + 1);
    if (a.at(0) != "outline" && at == string::npos) return "no " + esc(needle) + " in the text\n";
    const auto offset = std::uint32_t(at + a.at(1).find('|'));
    const auto span = [&](const language::Span& s) {
        return to_string(s.begin.line) + ":" + to_string(s.begin.column) + "-" + to_string(s.end.line) + ":" +
               to_string(s.end.column) + " " +
               esc(text.substr(s.begin.offset, s.end.offset - s.begin.offset));
    };
    string out;
    if (a.at(0) == "complete") {
        const auto c = language::complete(script, offset);
        out = "from " + to_string(c.from) + " \"" + esc(c.prefix) + "\", " + to_string(c.items.size()) +
              " items\n";
        for (std::size_t i = 0; i < c.items.size() && i < 12; ++i)
            out += "  " + c.items[i].label + " [" + "VSMKL"[int(c.items[i].kind)] + "] " + c.items[i].detail +
                   "\n";
    } else if (a.at(0) == "hover") {
        const auto h = language::hover(script, offset);
        out = h ? "about " + span(h->span) + "\n" + block(h->text) : "nothing\n";
    } else if (a.at(0) == "definition") {
        const auto d = language::definition(script, offset);
        out = d ? span(*d) + "\n" : "nothing\n";
    } else if (a.at(0) == "references") {
        for (const auto& s : language::references(script, offset, a.has("declaration")))
            out += span(s) + "\n";
    } else if (a.at(0) == "rename") {
        const auto t = language::prepareRename(script, offset);
        out = "name " + span(t.span) + (t.ok() ? "\n" : ", refused: " + t.refusal + "\n");
        if (!t.ok() || a.at(3).empty()) return out;
        const auto r = language::rename(script, offset, a.at(3));
        if (!r.ok()) return out + "refused: " + r.refusal + "\n";
        string renamed = text;
        for (auto e = r.edits.rbegin(); e != r.edits.rend(); ++e)
            renamed.replace(e->span.begin.offset, e->span.end.offset - e->span.begin.offset, e->text);
        out += to_string(r.edits.size()) + " edits\n";
        std::istringstream before(text), after(renamed); // the lines that changed
        string was, now;
        for (int line = 1; std::getline(after, now); ++line)
            if (!std::getline(before, was) || was != now) out += to_string(line) + " | " + esc(now) + "\n";
    } else {
        std::function<void(const std::vector<language::OutlineItem>&, string)> walk = [&](const auto& items,
                                                                                          string indent) {
            for (const auto& i : items) {
                out += indent + "OSHL"[int(i.kind)] + " " + i.name + " (" + esc(i.detail) + ") " +
                       span(i.selection) + " in " + to_string(i.range.begin.line) + ":" +
                       to_string(i.range.begin.column) + "-" + to_string(i.range.end.line) + ":" +
                       to_string(i.range.end.column) + "\n";
                walk(i.children, indent + "  ");
            }
        };
        walk(language::outline(script), "");
    }
    return out.empty() ? "nothing\n" : out;
}

string cli(const string&, const Args& a, const QString& dir) {
    QProcess p;
    p.setWorkingDirectory(dir);
    QStringList args;
    for (const auto& s : a) args << QString::fromStdString(s);
    p.start(QStringLiteral(TESSARY_BIN_DIR "/tessary-cli"), args);
    if (!p.waitForFinished(30000)) return "did not end\n";
    const string out = p.readAllStandardOutput().toStdString(), err = p.readAllStandardError().toStdString();
    return (out.empty() ? "" : block(out)) + (err.empty() ? "" : "error output\n" + block(err)) + "status " +
           to_string(p.exitCode()) + "\n";
}

const std::map<string, cases::Rule> kRules{
    {"addsymbol", addSymbol},     {"check", check},       {"cli", cli},
    {"colouring", colouring},     {"explorer", explorer}, {"findreplace", findReplace},
    {"keyedtree", keyedTree},     {"layout", layout},     {"other", other},
    {"recentfiles", recentFiles}, {"reference", cogRef},  {"renamedelete", renameDelete},
    {"services", services},       {"template", templ},    {"typingaids", typingAids},
};

} // namespace

class tst_Cases : public QObject {
    Q_OBJECT
private slots:
    void rules_data() { cases::listCases(kRules); }
    void rules() { cases::runCase(kRules); }

    // The shipped files read without a complaint; the shipped templates generate checked scripts.
    void shippedData() {
        const auto ref = reference::readCogRef(cases::readAll(TESSARY_BIN_DIR "/cogref.dat").toStdString());
        for (const auto& w : ref.warnings) qWarning("cogref.dat line %zu: %s", w.line, w.reason.c_str());
        QVERIFY(ref.warnings.empty() && ref.tree.count() > 100);
        QSet<QString> names; // no entry hides another from the help line
        for (const auto& n : ref.tree.nodes()) {
            const QString name = QString::fromStdString(n.text).toLower();
            QVERIFY2(!n.hasParent || !names.contains(name), n.text.c_str());
            if (n.hasParent) names.insert(name);
        }
        const QByteArray messages = cases::readAll(TESSARY_BIN_DIR "/messages.dat");
        const auto list = editor::readMessages(messages.toStdString());
        QCOMPARE(qsizetype(list.size()), messages.count("\r\n") - 1);
        QVERIFY(editor::loadMessages(TESSARY_BIN_DIR).empty()); // a directory or no file: no list
        QVERIFY(editor::loadMessages(TESSARY_BIN_DIR "/no-such.dat").empty());
        const QDir dir(QStringLiteral(TESSARY_SOURCE_DIR "/data/templates"));
        for (const QString& name : dir.entryList({"*.cgt"})) {
            const string bytes = cases::readAll(dir.filePath(name)).toStdString();
            const auto t = templates::readTemplate(bytes);
            QVERIFY2(t.ok(), qPrintable(name));
            const string cog = templates::generate(bytes, t.tmpl.ilen, templates::defaultAssignments(t.tmpl));
            QVERIFY2(cog.find("<%") == string::npos && cog::checkCog(cog, 0).empty(), qPrintable(name));
        }
    }
};

QTEST_GUILESS_MAIN(tst_Cases)
#include "tst_cases.moc"
