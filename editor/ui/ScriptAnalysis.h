// The language's view of one editor's text, shared by the features that read it (diagnostics,
// completion, hover, definition, usages, rename): one analysis a pause in typing, reused by all of
// them until the next edit.
#pragma once

#include "editor/firstoccurrence.h"
#include "language/analyse.h"
#include "language/services.h"

#include <QObject>
#include <QTimer>

#include <string>

class CogTextBox;

class ScriptAnalysis : public QObject {
    Q_OBJECT
public:
    explicit ScriptAnalysis(CogTextBox* box);

    // The analysis of the text as it is now: the one made when typing last paused if no edit
    // came since, else a new one (made here, at once).
    const language::Analysis& current();
    // The text that current() analysed; its spans index it.
    const std::string& text() const { return text_; }
    // What the language services read: current() with its text.
    language::Script script();
    // Whether offset lies in the code section as the last analysis (its offsets moved by the edits
    // made since) places it: a cheap first look before the analysis is asked for while typing.
    bool inCodeSection(long offset) const;
    // Whether current() checked the text: one larger than kLargestChecked is not analysed (its
    // analysis is empty) and the features leave it alone.
    bool checked() const { return checked_; }
    static constexpr long kLargestChecked = 2L << 20;
    // True while no edit came since the last analysis.
    bool isCurrent() const { return !stale_; }

    // The engine's verbs (verbs.dat beside the program), read once; empty when the file is missing,
    // and then only lexical and syntax errors are reported.
    static const language::VerbTable& verbs();
    // The verbs' descriptions of the reference (cogref.dat beside the program), read once.
    static const language::VerbDocs& docs();

signals:
    // Typing paused (or a file was read) and current() is the analysis of the text: what is shown
    // of it is brought up to date. An analysis asked for while typing goes on is not announced.
    void analysed();

private:
    void edited(const editor::Edit& edit);

    CogTextBox* box_;
    QTimer pause_;
    std::string text_;
    language::Analysis analysis_;
    bool stale_ = true;
    bool checked_ = true;
    std::vector<editor::Edit> edits_; // since the last analysis
};
