// The frame's status bar: short messages on the left; on the right the diagnostics count (shown
// once something fills it), the caret's line and column, the line-end style and the character
// set of the current editor window.
#pragma once

#include <QList>
#include <QPointer>
#include <QStatusBar>
#include <QTimer>

class QLabel;
class frmTessary;

class FrameStatusBar : public QStatusBar {
    Q_OBJECT
public:
    explicit FrameStatusBar(QWidget* parent = nullptr);

    QLabel* lblDiagnostics;
    QLabel* lblPosition;
    QLabel* lblLineEnds;
    QLabel* lblCharset;

    // Shows the state of the window and follows it from now on; nullptr shows none.
    void follow(frmTessary* w);
    // The diagnostics count of the current window, e.g. "2 errors, 1 warning"; empty hides it.
    void setDiagnostics(const QString& summary);

private:
    void showPosition();
    void showLineEnds();

    QPointer<frmTessary> window_;
    QTimer positionTimer_;
    QList<QMetaObject::Connection> connections_;
};
