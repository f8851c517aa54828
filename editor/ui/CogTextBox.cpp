#include "editor/ui/CogTextBox.h"

#include "editor/ui/codePage.h"

#include <Qsci/qscicommand.h>
#include <Qsci/qscicommandset.h>

#include <QAccessible>
#include <QAccessibleWidget>
#include <QDropEvent>
#include <QInputMethodEvent>
#include <QKeyEvent>
#include <QMimeData>
#include <QPointer>
#include <QUrl>

namespace {

// With no screen reader listening, a text box is a plain accessible widget. The component's own
// accessible text interface, once created, turns the caret's byte offset into a count of the
// characters before it after every caret move, which costs milliseconds per key in a large script.
// Qt asks the newest factory first, so this one, installed after the component's, decides for
// CogTextBox. While a screen reader is active, text boxes get the component's interface.
QAccessibleInterface* plainAccessible(const QString& className, QObject* object) {
    if (className != QLatin1String(CogTextBox::staticMetaObject.className()) || QAccessible::isActive())
        return nullptr;
    return new QAccessibleWidget(static_cast<QWidget*>(object), QAccessible::EditableText);
}

QStringList droppedFiles(const QMimeData* data) {
    QStringList paths;
    if (data && data->hasUrls())
        for (const QUrl& url : data->urls())
            if (url.isLocalFile()) paths << url.toLocalFile();
    return paths;
}

} // namespace

CogTextBox::CogTextBox(QWidget* parent) : QsciScintilla(parent) {
    static const bool accessibleFactoryInstalled = (QAccessible::installFactory(plainAccessible), true);
    (void)accessibleFactoryInstalled;
    setUtf8(false);
    setEolMode(EolWindows);
    setEolVisibility(false);
    setAutoIndent(false);
    setWrapMode(WrapNone);
    SendScintilla(SCI_SETPASTECONVERTENDINGS, 0UL, 0L);
    SendScintilla(SCI_SETHSCROLLBAR, 1UL, 0L);
    SendScintilla(SCI_SETVSCROLLBAR, 1UL, 0L);
    // Scintilla reports an edit before and after making it. Only the first report is asked for: the
    // component answers each second one with an accessibility event that counts the characters
    // from the start of the text to the edit, whether or not anyone listens, so every keystroke
    // would cost time in proportion to the caret's offset. The edit is announced once the text
    // holds it (announceEdit).
    SendScintilla(SCI_SETMODEVENTMASK, static_cast<unsigned long>(SC_MOD_BEFOREINSERT | SC_MOD_BEFOREDELETE),
                  0L);
    // The frame's menus own these keys; Scintilla's own bindings would win while the editor has focus.
    for (const int key : {Qt::Key_B, Qt::Key_F, Qt::Key_R, Qt::Key_N, Qt::Key_O, Qt::Key_S, Qt::Key_P,
                          Qt::Key_L, Qt::Key_G, Qt::Key_Q}) {
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
    const std::string_view current = this->bytes();
    if (bytes == QByteArrayView(current.data(), static_cast<qsizetype>(current.size()))) return;
    // SCI_SETTEXT stops at a NUL byte: clear, then append with an explicit length.
    SendScintilla(SCI_CLEARALL);
    SendScintilla(SCI_APPENDTEXT, static_cast<unsigned long>(bytes.size()), bytes.constData());
    SendScintilla(SCI_GOTOPOS, 0UL, 0L);
    announceEdit();
}

bool CogTextBox::loadFrom(QIODevice& device) {
    SendScintilla(SCI_SETUNDOCOLLECTION, 0UL, 0L);
    SendScintilla(SCI_CLEARALL);
    bool ok = true;
    try {
        if (const qint64 size = device.size(); size > 0 && !device.isSequential())
            SendScintilla(SCI_ALLOCATE, static_cast<unsigned long>(size) + 1, 0L); // no regrowing on the way
        QByteArray block(1 << 20, Qt::Uninitialized);
        for (qint64 n; (n = device.read(block.data(), block.size())) != 0;) {
            if (n < 0) {
                ok = false;
                break;
            }
            SendScintilla(SCI_APPENDTEXT, static_cast<unsigned long>(n), block.constData());
        }
    } catch (const std::bad_alloc&) { // more than the memory can hold: the device reports no error
        ok = false;
    }
    if (!ok) SendScintilla(SCI_CLEARALL);
    SendScintilla(SCI_EMPTYUNDOBUFFER);
    SendScintilla(SCI_SETUNDOCOLLECTION, 1UL, 0L);
    SendScintilla(SCI_GOTOPOS, 0UL, 0L);
    announceEdit();
    return ok;
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
    const std::string_view selected = range(selStart(), selLength());
    return QByteArray(selected.data(), static_cast<qsizetype>(selected.size()));
}

void CogTextBox::setSelText(const QByteArray& bytes) {
    SendScintilla(SCI_BEGINUNDOACTION);
    SendScintilla(SCI_REPLACESEL, 0UL, "");
    SendScintilla(SCI_ADDTEXT, static_cast<unsigned long>(bytes.size()), bytes.constData());
    SendScintilla(SCI_ENDUNDOACTION);
    announceEdit();
}

void CogTextBox::replaceRange(long start, long length, const QByteArray& bytes) {
    SendScintilla(SCI_SETTARGETRANGE, static_cast<unsigned long>(start), start + length);
    SendScintilla(SCI_REPLACETARGET, static_cast<unsigned long>(bytes.size()), bytes.constData());
    announceEdit();
}

int CogTextBox::indicator(const QString& name) {
    if (!indicators_.contains(name)) indicators_ << name;
    return INDIC_CONTAINER + int(indicators_.indexOf(name)); // those below belong to lexers
}

int CogTextBox::marker(const QString& name) {
    if (!markers_.contains(name)) markers_ << name;
    return int(markers_.indexOf(name));
}

void CogTextBox::undo() {
    QsciScintilla::undo();
    announceEdit();
}

void CogTextBox::redo() {
    QsciScintilla::redo();
    announceEdit();
}

void CogTextBox::announceEdit() {
    if (!pendingEdit_) return;
    const editor::Edit edit = *pendingEdit_;
    pendingEdit_.reset();
    emit textEdited(edit);
}

bool CogTextBox::event(QEvent* event) {
    const QPointer<CogTextBox> alive(this); // the event may be the one that deletes the box
    const bool handled = QsciScintilla::event(event);
    if (alive) announceEdit();
    return handled;
}

bool CogTextBox::viewportEvent(QEvent* event) {
    const bool handled = QsciScintilla::viewportEvent(event);
    announceEdit();
    return handled;
}

void CogTextBox::keyPressEvent(QKeyEvent* event) {
    if (keyHook && keyHook(event)) return;
    // The component turns typed text into bytes through Latin-1 ("€" would become "?"); characters
    // whose Windows-1252 byte differs are typed here, those it cannot hold are refused.
    const QString text = event->text();
    if (!text.isEmpty() && text[0].isPrint() &&
        !(event->modifiers() & (Qt::ControlModifier | Qt::MetaModifier))) {
        QByteArray bytes;
        if (!encodeTyped(text, bytes) || bytes != text.toLatin1()) {
            if (!bytes.isEmpty()) typeBytes(bytes);
            event->accept();
            return;
        }
    }
    QsciScintilla::keyPressEvent(event);
}

void CogTextBox::inputMethodEvent(QInputMethodEvent* event) {
    const QString commit = event->commitString();
    QByteArray bytes;
    if (commit.isEmpty() || (encodeTyped(commit, bytes) && bytes == commit.toLatin1())) {
        QsciScintilla::inputMethodEvent(event);
        return;
    }
    if (!bytes.isEmpty()) typeBytes(bytes);
    // The text being composed, if any, is still shown by the component.
    QInputMethodEvent composing(event->preeditString(), event->attributes());
    QsciScintilla::inputMethodEvent(&composing);
    event->accept();
}

bool CogTextBox::encodeTyped(const QString& text, QByteArray& bytes) {
    QString refused;
    const auto encoded = codepage::toBytes(text, &refused);
    bytes = encoded.value_or(QByteArray());
    if (!encoded) emit characterRefused(refused);
    return encoded.has_value();
}

void CogTextBox::typeBytes(const QByteArray& bytes) {
    SendScintilla(SCI_BEGINUNDOACTION);
    const long caret = SendScintilla(SCI_GETCURRENTPOS);
    if (SendScintilla(SCI_GETOVERTYPE) && selLength() == 0 &&
        caret < SendScintilla(SCI_GETLINEENDPOSITION, SendScintilla(SCI_LINEFROMPOSITION, caret)))
        SendScintilla(SCI_SETSEL, static_cast<unsigned long>(caret), caret + 1);
    SendScintilla(SCI_REPLACESEL, 0UL, "");
    SendScintilla(SCI_ADDTEXT, static_cast<unsigned long>(bytes.size()), bytes.constData());
    SendScintilla(SCI_ENDUNDOACTION);
    SendScintilla(SCI_SCROLLCARET);
    announceEdit();
}

bool CogTextBox::canInsertFromMimeData(const QMimeData* source) const {
    return droppedFiles(source).isEmpty() && QsciScintilla::canInsertFromMimeData(source);
}

QByteArray CogTextBox::fromMimeData(const QMimeData* source, bool& rectangular) const {
    const QByteArray latin1 = QsciScintilla::fromMimeData(source, rectangular);
    if (!source->hasText()) return latin1;
    QByteArray bytes;
    // Nothing of a text that holds a character the code page cannot hold is inserted.
    return const_cast<CogTextBox*>(this)->encodeTyped(source->text(), bytes) ? bytes : QByteArray();
}

QMimeData* CogTextBox::toMimeData(const QByteArray& text, bool rectangular) const {
    QMimeData* data = QsciScintilla::toMimeData(text, rectangular);
    data->setText(codepage::toText(text));
    return data;
}

void CogTextBox::dragEnterEvent(QDragEnterEvent* event) {
    if (droppedFiles(event->mimeData()).isEmpty()) return QsciScintilla::dragEnterEvent(event);
    event->acceptProposedAction();
}

void CogTextBox::dragMoveEvent(QDragMoveEvent* event) {
    if (droppedFiles(event->mimeData()).isEmpty()) return QsciScintilla::dragMoveEvent(event);
    event->acceptProposedAction();
}

void CogTextBox::dropEvent(QDropEvent* event) {
    const QStringList paths = droppedFiles(event->mimeData());
    if (paths.isEmpty()) return QsciScintilla::dropEvent(event);
    event->acceptProposedAction();
    emit filesDropped(paths);
}

void CogTextBox::onModified(int position, int modificationType, const char*, int length, int, int, int, int,
                            int, int) {
    const bool inserting = modificationType & SC_MOD_BEFOREINSERT;
    if (!inserting && !(modificationType & SC_MOD_BEFOREDELETE)) return;
    announceEdit(); // the text now holds the previous edit and nothing after it
    pendingEdit_ = inserting ? editor::Edit{position, 0, length} : editor::Edit{position, length, 0};
    emit aboutToEdit(*pendingEdit_);
    if (!announceQueued_) {
        announceQueued_ = true;
        QMetaObject::invokeMethod(
            this,
            [this] {
                announceQueued_ = false;
                announceEdit();
            },
            Qt::QueuedConnection);
    }
}
