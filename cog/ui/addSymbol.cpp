// Add Symbol: writes the declaration line built from the frame's fields into the current
// window's symbols section, keeps the caret with the user's text, and rebuilds the explorer when
// it shows that window.
#include "cog/addsymbol.h"
#include "app/ui/KeyedTreeView.h"
#include "app/ui/dialogs.h"
#include "app/ui/frmMain.h"
#include "app/ui/mdlTessary.h"
#include "editor/ui/CogTextBox.h"
#include "editor/ui/frmTessary.h"

#include <QCheckBox>
#include <QComboBox>
#include <QLineEdit>

void frmMain::cmdAddVar_Click() {
    // The box is editable: a type typed into it counts only when it is one of the list's items,
    // never the item picked before.
    const int typed = cmbVarType->findText(cmbVarType->currentText(), Qt::MatchFixedString);
    if (typed >= 0 && typed != cmbVarType->currentIndex()) cmbVarType->setCurrentIndex(typed);
    if (typed < 0 || cmbVarType->currentIndex() < 0) {
        ui::MsgBox(QStringLiteral("You must choose a type!"), ui::vbOKOnly, ui::vbCritical);
        return;
    }
    if (txtVarName->text().isEmpty()) {
        ui::MsgBox(QStringLiteral("You must enter the symbol name!"), ui::vbOKOnly, ui::vbCritical);
        return;
    }
    frmTessary* W = mdlTessary::currentCog();
    if (!W) return; // no editor window to write into
    const auto name = codePageBytes(txtVarName->text()), value = codePageBytes(txtDefVal->text()),
               linkId = codePageBytes(txtLinkID->text());
    if (!name || !value || !linkId) return; // the status bar names the character
    cog::NewSymbol symbol;
    symbol.keyword = cmbVarType->itemText(cmbVarType->currentIndex()).toLatin1().toStdString();
    symbol.name = name->toStdString();
    symbol.defaultValue = value->toStdString();
    symbol.local = chkLocal->isChecked();
    symbol.linkId = linkId->toStdString();
    const auto r = cog::addSymbol(W->txtMain->bytes(), W->txtMain->selStart(), symbol);
    if (r.outcome == cog::AddSymbolResult::Outcome::NoEndLine) {
        ui::MsgBox(QStringLiteral("The symbol was not added: ") + W->Caption() +
                       QStringLiteral(" has no line beginning with \"end\" to put it above."),
                   ui::vbOKOnly, ui::vbExclamation);
        return;
    }
    if (r.outcome != cog::AddSymbolResult::Outcome::Inserted) return;
    W->txtMain->replaceRange(r.edit.start, 0, QByteArray::fromStdString(r.edit.inserted));
    W->txtMain->setSelStart(r.caret);

    if (tvwCogE->isHidden()) return;
    const int chosen = cmbCog->currentIndex();
    const QString chosenText = chosen < 0 ? QString() : cmbCog->itemText(chosen);
    if (cog::explorerShowsWindow(W->Caption().toLatin1().toStdString(), chosenText.toLatin1().toStdString()))
        mdlTessary::BuildCogExplorer();
}
