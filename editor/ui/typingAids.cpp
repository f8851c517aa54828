// The typing aids of an editor window: the message pop-up, the help line and the parenthesis
// bookkeeping of Backspace. The rules live in editor/typingaids.h; this file reads the controls,
// calls them and applies the result.
#include "editor/typingaids.h"
#include "app/ui/KeyedTreeView.h"
#include "app/ui/diskfile.h"
#include "app/ui/frmMain.h"
#include "app/ui/mdlTessary.h"
#include "editor/messages.h"
#include "editor/ui/CogTextBox.h"
#include "editor/ui/codePage.h"
#include "editor/ui/frmTessary.h"
#include "reference/cogref.h"

#include <QFileInfo>
#include <QFontMetrics>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QTreeWidget>

namespace {

constexpr int kEnter = 13;
constexpr int kTab = 9;
constexpr int kSpace = 32;

QString fromBytes(std::string_view bytes) {
    return codepage::toText(bytes);
}

// The character a key types, as the text box's character event sees it; -1 for keys that type
// none (arrows, function keys, shortcuts).
int keyAscii(const QKeyEvent* e) {
    if (e->key() == Qt::Key_Backspace) return 8;
    if (e->modifiers() & (Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier)) return -1;
    switch (e->key()) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
        return kEnter;
    case Qt::Key_Tab:
        return kTab;
    default:
        break;
    }
    const QString text = e->text();
    if (text.size() != 1) return -1;
    const QChar c = text.at(0);
    if (c.unicode() > 0xFF || !c.isPrint()) return -1;
    return c.unicode();
}

// The text from 1-based position lSpace up to and including the first CR at or after it (the
// end of the text when none): all the pop-up's rules look at.
std::string_view fromSpace(CogTextBox* t, long lSpace) {
    using B = QsciScintillaBase;
    const long size = t->textLength();
    const long start = lSpace - 1;
    if (start < 0 || start >= size) return {};
    long line = t->SendScintilla(B::SCI_LINEFROMPOSITION, static_cast<unsigned long>(start));
    const long lines = t->SendScintilla(B::SCI_GETLINECOUNT);
    long end = size;
    for (; line < lines; ++line) { // a bare line feed ends a line but not the pop-up's part
        const long lineEnd = t->SendScintilla(B::SCI_GETLINEENDPOSITION, static_cast<unsigned long>(line));
        if (lineEnd < size &&
            t->SendScintilla(B::SCI_GETCHARAT, static_cast<unsigned long>(lineEnd)) == '\r') {
            end = lineEnd + 1;
            break;
        }
    }
    return t->range(start, end - start);
}

std::vector<std::string> itemTexts(const QTreeWidget* list) {
    std::vector<std::string> texts;
    texts.reserve(static_cast<std::size_t>(list->topLevelItemCount()));
    for (int i = 0; i < list->topLevelItemCount(); ++i)
        texts.push_back(
            codepage::toBytes(list->topLevelItem(i)->text(0)).value_or(QByteArray()).toStdString());
    return texts;
}

void highlight(QTreeWidget* list, QTreeWidgetItem* item) {
    list->clearSelection();
    list->setCurrentItem(item);
    if (item) {
        item->setSelected(true);
        list->scrollToItem(item);
    }
}

QTreeWidgetItem* highlighted(const QTreeWidget* list) {
    const auto items = list->selectedItems();
    return items.isEmpty() ? nullptr : items.first();
}

} // namespace

void mdlTessary::LoadMessages() {
    frmTessary* w = currentCog();
    if (!w) return;
    const QString path = programDirectory() + QStringLiteral("/messages.dat");
    w->lvwCogParams->clear();
    QList<QTreeWidgetItem*> items;
    // A missing file gives an empty list; one that cannot be read is reported.
    QByteArray bytes;
    if (QString reason; !diskfile::readAll(path, bytes, reason) && QFileInfo::exists(path))
        reportUnreadable(path, reason);
    for (const std::string& name : editor::readMessages(std::string_view(bytes.constData(), bytes.size())))
        items << new QTreeWidgetItem(QStringList{fromBytes(name)});
    w->lvwCogParams->addTopLevelItems(items);
    highlight(w->lvwCogParams, nullptr);
}

void mdlTessary::PlaceAtCaret(QWidget* pic) {
    if (!pic) return;
    // The panel belongs to the window whose text box has the focus, normally the current one.
    frmTessary* w = qobject_cast<frmTessary*>(pic->parentWidget());
    if (!w) w = currentCog();
    if (!w) return;
    CogTextBox* t = w->txtMain;
    // The upper-left corner of the character before the caret, in the editor's viewport.
    const unsigned long pos = static_cast<unsigned long>(std::max(t->selStart() - 1, 0L));
    const long x = t->SendScintilla(QsciScintillaBase::SCI_POINTXFROMPOSITION, 0UL, static_cast<long>(pos));
    const long y = t->SendScintilla(QsciScintillaBase::SCI_POINTYFROMPOSITION, 0UL, static_cast<long>(pos));
    const QPoint corner = t->viewport()->mapTo(w, QPoint(static_cast<int>(x), static_cast<int>(y)));
    const int lineHeight = QFontMetrics(w->font()).height();
    constexpr int kGap = 100 / 15; // 100 twips
    // One pixel left of the character, one line of the window's font plus the gap below its top.
    pic->move(corner.x() - 1, corner.y() + lineHeight + kGap - 1);
    pic->show();
    pic->raise();
}

void frmTessary::SelectWord() {
    const long caret = txtMain->selStart();
    // Only the caret's line and the line break before it can hold the word.
    const long line =
        txtMain->SendScintilla(QsciScintillaBase::SCI_LINEFROMPOSITION, static_cast<unsigned long>(caret));
    const long lineStart =
        txtMain->SendScintilla(QsciScintillaBase::SCI_POSITIONFROMLINE, static_cast<unsigned long>(line));
    const long windowStart = lineStart > 0 ? lineStart - 1 : 0;
    const editor::Range r =
        editor::selectWordRangeIn(txtMain->range(windowStart, caret - windowStart), windowStart, caret);
    txtMain->setSelStart(r.start);
    txtMain->setSelLength(r.length);
}

void frmTessary::FindParam(int keyascii) {
    const std::string prefix = editor::popupPrefix(fromSpace(txtMain, lSpace), static_cast<char>(keyascii));
    const int found = editor::matchPrefix(itemTexts(lvwCogParams), prefix);
    highlight(lvwCogParams, found < 0 ? nullptr : lvwCogParams->topLevelItem(found));
}

void frmTessary::InsertParam(bool bSelect) {
    const std::string_view rest = fromSpace(txtMain, lSpace);
    const std::string prefix = editor::popupPrefix(rest);
    const int found = editor::matchPrefix(itemTexts(lvwCogParams), prefix);
    if (!prefix.empty() && found >= 0) {
        const editor::Range r = editor::insertRange(rest, lSpace);
        if (bSelect || !highlighted(lvwCogParams)) highlight(lvwCogParams, lvwCogParams->topLevelItem(found));
        const QByteArray name = codepage::toBytes(highlighted(lvwCogParams)->text(0)).value_or(QByteArray());
        txtMain->setSelStart(r.start);
        txtMain->setSelLength(r.length);
        txtMain->setSelText(name);
        highlight(lvwCogParams, lvwCogParams->topLevelItem(0));
        highlight(lvwCogParams, nullptr);
    }
    const bool listHadFocus = lvwCogParams->hasFocus();
    picCogParams->hide();
    if (listHadFocus) txtMain->setFocus();
}

bool frmTessary::txtMain_KeyEvent(QKeyEvent* event) {
    const bool popupShown = !picCogParams->isHidden();
    frmMain* frame = mdlTessary::frame();

    // Key-down.
    if (popupShown && (event->key() == Qt::Key_Up || event->key() == Qt::Key_Down)) {
        lvwCogParams->setFocus();
        return true;
    }
    if (event->key() == Qt::Key_Backspace) {
        const long caret = txtMain->selStart();
        const char before =
            caret > 0 ? static_cast<char>(txtMain->SendScintilla(QsciScintillaBase::SCI_GETCHARAT,
                                                                 static_cast<unsigned long>(caret - 1)))
                      : '\0';
        editor::HelpLine h{!picMain->isHidden(), intParens};
        switch (editor::classifyBackspace(popupShown, txtMain->selLength(), caret, before)) {
        case editor::Backspace::ClosePopup:
            picCogParams->hide();
            txtMain->setSelStart(caret); // the character before the selection goes, not the selection
            break;
        case editor::Backspace::DeleteChar:
            if (before == '(') editor::openParenDeleted(h);
            if (before == ')') editor::closeParenDeleted(h);
            intParens = h.parens;
            picMain->setVisible(h.shown); // shown again with its last texts
            break;
        default: // the editor deletes the selection, nothing, or the line break as one
            break;
        }
        return false;
    }

    // Character.
    const int k = keyAscii(event);
    if (k < 0) return false;
    const long p = txtMain->selStart();
    auto restore = [&] { txtMain->setSelStart(p); };
    if (popupShown) {
        if (k == kTab || k == kSpace || k == kEnter)
            InsertParam(true);
        else
            FindParam(k);
        return false; // the editor then types the character
    }
    editor::HelpLine h{!picMain->isHidden(), intParens};
    switch (k) {
    case kSpace:
        if (!editor::insideSymbols(lsym, lsymend, p)) return false;
        SelectWord();
        if (editor::opensMessagePopup(txtMain->selText().toStdString())) {
            restore();
            lSpace = p + 1;
            mdlTessary::PlaceAtCaret(picCogParams);
            return false;
        }
        restore();
        return false;
    case '(':
        if (editor::openParenTyped(h) == editor::OpenParen::Counted) {
            intParens = h.parens;
            return false;
        }
        SelectWord();
        if (frame) {
            const QByteArray word = txtMain->selText();
            const std::size_t found = reference::lookUpEntry(frame->tvwCog->model(),
                                                             std::string_view(word.constData(), word.size()));
            if (found > 0) {
                const auto parts = reference::splitTag(frame->tvwCog->nodeAt(found).tag);
                lblHelp->setText(fromBytes(parts.callText));
                frame->txtCogDesc->setText(fromBytes(parts.description));
                picMain->show();
            }
        }
        restore();
        return false;
    case ')':
        if (intParens == 0) {
            picMain->hide();
            return false;
        }
        editor::closeParenTyped(h);
        intParens = h.parens;
        restore();
        return false;
    default:
        // Typing over a selection inserts before it and leaves it in place.
        restore();
        return false;
    }
}

void frmTessary::lvwCogParams_DblClick() {
    InsertParam(false);
}

bool frmTessary::lvwCogParams_KeyEvent(QKeyEvent* event) {
    if (picCogParams->isHidden()) return false;
    const int k = keyAscii(event);
    if (k < 0 || k == 8) return false; // arrows and the like move the highlight as usual
    if (k == kTab || k == kSpace || k == kEnter)
        InsertParam(true);
    else
        FindParam(k);
    return true; // the character is not typed anywhere
}
