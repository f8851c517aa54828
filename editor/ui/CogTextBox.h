// The text box of an editor window: a Scintilla editor holding the file's bytes unchanged
// (8-bit mode, CR LF line ends, no conversion), addressed by byte offsets. Typed, pasted and
// copied text passes through the Windows-1252 code page.
#pragma once

#include "editor/firstoccurrence.h"

#include <Qsci/qsciscintilla.h>

#include <QStringList>

#include <functional>
#include <optional>
#include <string_view>

class CogTextBox : public QsciScintilla {
    Q_OBJECT
public:
    explicit CogTextBox(QWidget* parent = nullptr);

    // The whole text without a copy; valid until the next edit. Scintilla first moves its gap to
    // the end, copying every byte after the last edit, so a part of the text is better read with range().
    std::string_view bytes() const;
    // The bytes [start, start + length) without a copy; valid until the next edit. Scintilla moves
    // its gap only when the range straddles it, so this stays cheap on a large text.
    std::string_view range(long start, long length) const;
    QByteArray textBytes() const;
    // Replaces the whole text (one change notification per edit; none when the text is equal).
    void setTextBytes(const QByteArray& bytes);
    // Replaces the whole text with what the device reads, as opening a file does: nothing to undo
    // afterwards. The bytes pass to the editor in blocks, so a large file is never held twice, and
    // no undo history is built on the way. False when reading fails (the device's errorString says
    // why, or reports no error when the memory ran out); the text is then empty.
    bool loadFrom(QIODevice& device);
    long textLength() const;

    // Caret index (0-based byte offset); setting it empties the selection.
    long selStart() const;
    void setSelStart(long index);
    long selLength() const;
    void setSelLength(long length); // from the selection start
    QByteArray selText() const;
    // Replaces the selection (or inserts at the caret); the caret ends after the new bytes.
    void setSelText(const QByteArray& bytes);
    // Replaces the bytes [start, start + length) as one undo step, the selection following Scintilla's rules.
    void replaceRange(long start, long length, const QByteArray& bytes);

    // The number of the indicator, or of the margin marker, of that name: given out on the first
    // request, so that the features drawing on the text never share one by accident.
    int indicator(const QString& name);
    int marker(const QString& name);

    // Called before the editor handles a key; returning true swallows the key.
    std::function<bool(QKeyEvent*)> keyHook;

    // Emits textEdited for an edit made but not yet announced. Every edit is announced once the
    // text holds it: when the next edit begins, when the input event that made it has been handled,
    // before the calls of this class return, before the text is coloured, and otherwise from the
    // event loop. Code that edits through SendScintilla and reads the result at once calls this.
    void announceEdit();

    void undo() override;
    void redo() override;

signals:
    // The text changed: at byte offset edit.position, edit.deleted bytes went and edit.inserted came.
    void textEdited(const editor::Edit& edit);
    // The text is about to change so (the previous edit has been announced).
    void aboutToEdit(const editor::Edit& edit);
    // A typed or pasted character that the code page cannot hold was left out.
    void characterRefused(const QString& character);
    // Files were dropped on the text.
    void filesDropped(const QStringList& paths);

protected:
    bool event(QEvent* event) override;
    bool viewportEvent(QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void inputMethodEvent(QInputMethodEvent* event) override;
    // Files dragged from a file manager are not inserted as text: dropping them emits filesDropped.
    bool canInsertFromMimeData(const QMimeData* source) const override;
    QByteArray fromMimeData(const QMimeData* source, bool& rectangular) const override;
    QMimeData* toMimeData(const QByteArray& text, bool rectangular) const override;
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dragMoveEvent(QDragMoveEvent* event) override;
    void dropEvent(QDropEvent* event) override;

private:
    // Encodes typed text; false (after announcing the refused character) when the code page
    // cannot hold it.
    bool encodeTyped(const QString& text, QByteArray& bytes);
    // Inserts typed bytes at the caret as typing does (over the selection, or over the next
    // character in overtype mode).
    void typeBytes(const QByteArray& bytes);
    void onModified(int position, int modificationType, const char* text, int length, int linesAdded,
                    int line, int foldNow, int foldPrev, int token, int annotationLinesAdded);

    std::optional<editor::Edit> pendingEdit_;
    QStringList indicators_, markers_;
    bool announceQueued_ = false;
};
