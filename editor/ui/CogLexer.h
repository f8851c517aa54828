// COG colouring for the editor: styles the ranges Scintilla asks for with the rules of
// editor/coglexer.h, restyling after an edit only until the lines keep their earlier styles.
#pragma once

#include "editor/coglexer.h"
#include "editor/firstoccurrence.h"

#include <Qsci/qscilexercustom.h>

#include <string>
#include <vector>

class CogLexer : public QsciLexerCustom {
    Q_OBJECT
public:
    explicit CogLexer(QObject* parent = nullptr);
    ~CogLexer() override;

    // The verb names coloured as verbs (case-insensitive); restyles the whole text.
    void setVerbs(std::vector<std::string> verbs);
    // The verb names every lexer uses, those made later included: the reference's call names.
    static void setSharedVerbs(std::vector<std::string> verbs);
    static const std::vector<std::string>& sharedVerbs();

    const char* language() const override;
    QString description(int style) const override;
    QColor defaultColor(int style) const override;
    QColor defaultPaper(int style) const override;
    QFont defaultFont(int style) const override;
    // Every style gets the font; the section words, flow words and labels keep it bold.
    void setFont(const QFont& font, int style = -1) override;
    void setEditor(QsciScintilla* editor) override;
    void styleText(int start, int end) override;

private:
    void onEdited(const editor::Edit& edit);
    void restyleAll();

    editor::CogWords words_;
    editor::StyleTracker tracker_;
    std::vector<unsigned char> styles_;
    QMetaObject::Connection modified_;
};
