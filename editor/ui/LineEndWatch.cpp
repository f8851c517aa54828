#include "editor/ui/LineEndWatch.h"

#include "editor/ui/CogTextBox.h"

LineEndWatch::LineEndWatch(CogTextBox* box) : QObject(box), box_(box) {
    tracker_.reset(box->bytes());
    const editor::RangeReader read = [box](editor::Pos start, editor::Pos length) {
        return box->range(start, length);
    };
    connect(box, &CogTextBox::aboutToEdit, this,
            [this, read](const editor::Edit& edit) { tracker_.beforeEdit(edit, box_->textLength(), read); });
    connect(box, &CogTextBox::textEdited, this, [this, read](const editor::Edit& edit) {
        tracker_.afterEdit(edit, box_->textLength(), read);
        update();
    });
    update();
}

void LineEndWatch::update() {
    const editor::LineEndStyle now = tracker_.style();
    const auto mode = now == editor::LineEndStyle::Lf   ? QsciScintilla::EolUnix
                      : now == editor::LineEndStyle::Cr ? QsciScintilla::EolMac
                                                        : QsciScintilla::EolWindows;
    if (box_->eolMode() != mode) box_->setEolMode(mode);
    if (now == shown_) return;
    shown_ = now;
    emit styleChanged(now);
}

bool LineEndWatch::convert(const QByteArray& eol) {
    editor::Pos caret = box_->selStart();
    const std::string converted =
        editor::convertLineEnds(box_->bytes(), std::string_view(eol.constData(), eol.size()), caret);
    if (std::string_view(converted) == box_->bytes()) return false;
    const long firstLine = box_->SendScintilla(QsciScintilla::SCI_GETFIRSTVISIBLELINE);
    box_->replaceRange(0, box_->textLength(), QByteArray::fromStdString(converted));
    box_->setSelStart(caret);
    box_->SendScintilla(QsciScintilla::SCI_SETFIRSTVISIBLELINE, static_cast<unsigned long>(firstLine));
    return true;
}
