#include "editor/ui/NoticeBar.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QStyle>
#include <QToolButton>

NoticeBar::NoticeBar(QWidget* parent) : QFrame(parent) {
    setFrameShape(QFrame::StyledPanel);
    setAutoFillBackground(true);
    setBackgroundRole(QPalette::ToolTipBase); // stands out on light and dark themes alike
    setForegroundRole(QPalette::ToolTipText);
    lblMessage = new QLabel(this);
    lblMessage->setObjectName(QStringLiteral("lblMessage"));
    lblMessage->setWordWrap(true);
    lblMessage->setTextFormat(Qt::PlainText);
    lblMessage->setForegroundRole(QPalette::ToolTipText);
    cmdHide = new QToolButton(this);
    cmdHide->setObjectName(QStringLiteral("cmdHide"));
    cmdHide->setAutoRaise(true);
    cmdHide->setIcon(style()->standardIcon(QStyle::SP_TitleBarCloseButton));
    cmdHide->setToolTip(QStringLiteral("Hide this bar"));
    buttons_ = new QHBoxLayout;
    buttons_->setSpacing(4);
    auto* layout = new QHBoxLayout(this);
    layout->setContentsMargins(6, 3, 3, 3);
    layout->addWidget(lblMessage, 1);
    layout->addLayout(buttons_);
    layout->addWidget(cmdHide, 0, Qt::AlignTop);
    connect(cmdHide, &QToolButton::clicked, this, [this] {
        hide();
        emit hidden();
    });
}

void NoticeBar::setMessage(const QString& text) {
    lblMessage->setText(text);
}

QString NoticeBar::message() const {
    return lblMessage->text();
}

QPushButton* NoticeBar::addButton(const QString& caption) {
    auto* button = new QPushButton(caption, this);
    buttons_->addWidget(button, 0, Qt::AlignVCenter);
    return button;
}
