#include "editor/ui/CogTextBox.h"

#include <Qsci/qscicommand.h>
#include <Qsci/qscicommandset.h>

#include <QKeyEvent>
#include <QMimeData>
#include <QUrl>

CogTextBox::CogTextBox(QWidget* parent) : QsciScintilla(parent) {
    setUtf8(false);
    setEolMode(EolWindows);
    setEolVisibility(false);
    setAutoIndent(false);
    setWrapMode(WrapNone);
    SendScintilla(SCI_SETPASTECONVERTENDINGS, 0UL, 0L);
    SendScintilla(SCI_SETHSCROLLBAR, 1UL, 0L);
    SendScintilla(SCI_SETVSCROLLBAR, 1UL, 0L);
    SendScintilla(SCI_SETMODEVENTMASK, static_cast<unsigned long>(SC_MOD_INSERTTEXT | SC_MOD_DELETETEXT), 0L);
    // The frame's menus own these keys; Scintilla's own bindings would win while the editor has focus.
    for (const int key :
         {Qt::Key_B, Qt::Key_F, Qt::Key_R, Qt::Key_N, Qt::Key_O, Qt::Key_S, Qt::Key_P, Qt::Key_L}) {
        if (QsciCommand* cmd =
                standardCommands()->boundTo(QKeyCombination(Qt::ControlModifier, Qt::Key(key)).toCombined()))
            cmd->setKey(0);
    }
    connect(this, &QsciScintillaBase::SCN_MODIFIED, this, &CogTextBox::onModified);
}

std::string_view CogTextBox::bytes() const {
    auto* self = const_cast<CogTextBox*>(this);
    const auto* p = reinterpret_cast<const char*>(self->SendScintillaPtrResult(SCI_GETCHARACTERPOINTER));
    return {p, static_cast<std::size_t>(textLength())};
}

std::string_view CogTextBox::range(long start, long length) const {
    if (length <= 0) return {};
    const long p = SendScintilla(SCI_GETRANGEPOINTER, static_cast<unsigned long>(start), length);
    return {reinterpret_cast<const char*>(p), static_cast<std::size_t>(length)};
}

QByteArray CogTextBox::textBytes() const {
    const std::string_view b = bytes();
    return QByteArray(b.data(), static_cast<qsizetype>(b.size()));
}

long CogTextBox::textLength() const {
    return SendScintilla(SCI_GETLENGTH);
}

void CogTextBox::setTextBytes(const QByteArray& bytes) {
    if (bytes == QByteArrayView(this->bytes().data(), static_cast<qsizetype>(this->bytes().size()))) return;
    // SCI_SETTEXT stops at a NUL byte: clear, then append with an explicit length.
    SendScintilla(SCI_CLEARALL);
    SendScintilla(SCI_APPENDTEXT, static_cast<unsigned long>(bytes.size()), bytes.constData());
    SendScintilla(SCI_GOTOPOS, 0UL, 0L);
}

long CogTextBox::selStart() const {
    return SendScintilla(SCI_GETSELECTIONSTART);
}

void CogTextBox::setSelStart(long index) {
    index = std::clamp(index, 0L, textLength());
    SendScintilla(SCI_SETSEL, static_cast<unsigned long>(index), index);
}

long CogTextBox::selLength() const {
    return SendScintilla(SCI_GETSELECTIONEND) - selStart();
}

void CogTextBox::setSelLength(long length) {
    const long start = selStart();
    const long end = std::clamp(start + length, start, textLength());
    SendScintilla(SCI_SETSEL, static_cast<unsigned long>(start), end);
}

QByteArray CogTextBox::selText() const {
    const long start = selStart();
    return QByteArray(bytes().data() + start, static_cast<qsizetype>(selLength()));
}

void CogTextBox::setSelText(const QByteArray& bytes) {
    SendScintilla(SCI_BEGINUNDOACTION);
    SendScintilla(SCI_REPLACESEL, 0UL, "");
    SendScintilla(SCI_ADDTEXT, static_cast<unsigned long>(bytes.size()), bytes.constData());
    SendScintilla(SCI_ENDUNDOACTION);
}

void CogTextBox::replaceRange(long start, long length, const QByteArray& bytes) {
    SendScintilla(SCI_SETTARGETRANGE, static_cast<unsigned long>(start), start + length);
    SendScintilla(SCI_REPLACETARGET, static_cast<unsigned long>(bytes.size()), bytes.constData());
}

void CogTextBox::keyPressEvent(QKeyEvent* event) {
    if (keyHook && keyHook(event)) return;
    QsciScintilla::keyPressEvent(event);
}

bool CogTextBox::canInsertFromMimeData(const QMimeData* source) const {
    if (source->hasUrls())
        for (const QUrl& url : source->urls())
            if (url.isLocalFile()) return false;
    return QsciScintilla::canInsertFromMimeData(source);
}

void CogTextBox::onModified(int position, int modificationType, const char*, int length, int, int, int, int,
                            int, int) {
    if (modificationType & SC_MOD_INSERTTEXT) emit textEdited({position, 0, length});
    if (modificationType & SC_MOD_DELETETEXT) emit textEdited({position, length, 0});
}
