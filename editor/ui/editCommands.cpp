// The Edit menu: brace matching, Find Word / Find Next and Replace / Replace All on the current
// editor window. The searching and replacing is done by the text functions; here the results are
// applied to the text box, each change as one undo step.
#include "app/ui/dialogs.h"
#include "app/ui/frmMain.h"
#include "app/ui/mdlTessary.h"
#include "editor/findreplace.h"
#include "editor/ui/CogTextBox.h"
#include "editor/ui/codePage.h"
#include "editor/ui/frmTessary.h"

#include <QAction>

namespace {

std::string_view view(const QByteArray& b) {
    return {b.constData(), static_cast<std::size_t>(b.size())};
}

void select(CogTextBox* box, const editor::Selection& s) {
    box->setSelStart(s.start);
    box->setSelLength(s.length);
}

void applyToBox(CogTextBox* box, const editor::TextEdit& e) {
    if (e.isEmpty()) return;
    // The inserted bytes are only read during the call, so they need not be copied again.
    box->replaceRange(e.start, e.removed,
                      QByteArray::fromRawData(e.inserted.data(), static_cast<qsizetype>(e.inserted.size())));
}

} // namespace

void frmMain::mnuEdit_Click(int index) {
    frmTessary* W = mdlTessary::currentCog();
    if (!W) return; // no editor window open
    switch (index) {
    case 0:
        W->MatchBrace();
        break;
    case 1:
        W->sW = codePageBytes(ui::InputBox(QStringLiteral("Enter word to Find"), QStringLiteral("Find Word"),
                                           QString()))
                    .value_or(QByteArray());
        if (!W->sW.isEmpty()) {
            W->ipos = 1;
            mnuEdit[2]->setEnabled(true);
            W->FindWord();
        }
        break;
    case 2:
        // Nothing to look for yet: ask for the word, as Find Word does.
        if (W->sW.isEmpty()) {
            mnuEdit_Click(1);
            return;
        }
        // The last search in this window found nothing: start again from the top.
        if (W->ipos < 1) W->ipos = 1;
        W->FindWord();
        break;
    case 3:
    case 4: {
        // A text holding a character the file cannot hold replaces nothing.
        const auto word = codePageBytes(
            ui::InputBox(QStringLiteral("Enter word to Replace"), QStringLiteral("Replace Word"), QString()));
        const auto with = codePageBytes(ui::InputBox(QStringLiteral("Enter word to Replace with"),
                                                     QStringLiteral("Replace Word"), QString()));
        W->sW = word.value_or(QByteArray());
        W->sR = with.value_or(QByteArray());
        if (word && with && !W->sW.isEmpty() && !W->sR.isEmpty()) {
            W->ipos = 1;
            W->Replace(index == 4, false);
        }
        break;
    }
    default:
        break;
    }
}

void frmTessary::MatchBrace() {
    select(txtMain, editor::matchBrace(txtMain->bytes(), txtMain->selStart()));
}

void frmTessary::FindWord() {
    const auto r = editor::findWord(txtMain->bytes(), ipos, view(sW));
    ipos = r.ipos;
    if (r.found) {
        select(txtMain, r.selection);
        return;
    }
    ui::MsgBox(QStringLiteral("\"") + codepage::toText(sW) + QStringLiteral("\" not found."), ui::vbOKOnly,
               0);
    if (frmMain* f = mdlTessary::frame()) f->mnuEdit[2]->setEnabled(false);
}

void frmTessary::Replace(bool bAll, bool bCheckEdges) {
    const auto r = editor::replaceSeries(txtMain->bytes(), ipos, view(sW), view(sR), bAll, bCheckEdges);
    applyToBox(txtMain, r.edit);
    ipos = r.ipos;
    if (r.selection) select(txtMain, *r.selection);
}
