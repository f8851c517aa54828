// A bar above an editor's text that tells the user something about the file and offers what can
// be done about it: a message, buttons, and a button that hides the bar. Several bars can stand
// one above the other.
#pragma once

#include <QFrame>

class QHBoxLayout;
class QLabel;
class QPushButton;
class QToolButton;

class NoticeBar : public QFrame {
    Q_OBJECT
public:
    explicit NoticeBar(QWidget* parent = nullptr);

    void setMessage(const QString& text);
    QString message() const;
    // Adds a button before the hide button; clicking it emits its clicked signal only.
    QPushButton* addButton(const QString& caption);

    QLabel* lblMessage;
    QToolButton* cmdHide;

signals:
    void hidden(); // the user hid the bar

private:
    QHBoxLayout* buttons_;
};
