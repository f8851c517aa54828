#include "app/ui/frmAbout.h"

#include "app/ui/mdlTessary.h"

#include <QGridLayout>
#include <QLabel>
#include <QMouseEvent>

namespace {

const QString kEmail = QStringLiteral("tessary@example.org");
const QString kWebsite = QStringLiteral("https://tessary.example.org");

QString versionNumber() {
    return QStringLiteral("%1.%2.%3")
        .arg(TESSARY_VERSION_MAJOR)
        .arg(TESSARY_VERSION_MINOR)
        .arg(TESSARY_VERSION_PATCH);
}

QLabel* linkLabel(const QString& text, QWidget* parent) {
    auto* label = new QLabel(text, parent);
    QFont font = label->font();
    font.setUnderline(true);
    label->setFont(font);
    QPalette palette = label->palette();
    palette.setColor(QPalette::WindowText, palette.color(QPalette::Link));
    label->setPalette(palette);
    label->setCursor(Qt::PointingHandCursor);
    // As wide as its text: a click beside the text is a click on the box, which closes it.
    label->setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    return label;
}

} // namespace

frmAbout::frmAbout(QWidget* parent) : QDialog(parent) {
    setWindowTitle(QStringLiteral("About Tessary"));
    lblVersion = new QLabel(this);
    QFont bold = lblVersion->font();
    bold.setBold(true);
    lblVersion->setFont(bold);
    lblAbout = new QLabel(this);
    lblAbout->setWordWrap(true);
    lblAbout->setMinimumWidth(360);
    lblEmail = linkLabel(kEmail, this);
    lblWebsite = linkLabel(kWebsite, this);
    lblEmail->installEventFilter(this);
    lblWebsite->installEventFilter(this);

    auto* grid = new QGridLayout(this);
    grid->addWidget(lblVersion, 0, 0, 1, 2);
    grid->addWidget(lblAbout, 1, 0, 1, 2);
    grid->addWidget(new QLabel(QStringLiteral("E-mail:"), this), 2, 0);
    grid->addWidget(lblEmail, 2, 1, Qt::AlignLeft);
    grid->addWidget(new QLabel(QStringLiteral("Website:"), this), 3, 0);
    grid->addWidget(lblWebsite, 3, 1, Qt::AlignLeft);
    grid->setColumnStretch(1, 1);
    grid->setSpacing(10);
    grid->setContentsMargins(16, 16, 16, 16);
    Form_Load();
}

QString frmAbout::versionText() {
    return QStringLiteral("Tessary version ") + versionNumber() + QStringLiteral("b");
}

void frmAbout::Form_Load() {
    lblVersion->setText(versionText());
    lblAbout->setText(QStringLiteral(
        "Tessary is an editor for COG scripts. It lists the symbols, messages and comments of a script "
        "in the CogExplorer, keeps a reference of COG verbs at hand, helps while you type message names "
        "and verb arguments, and builds new scripts from templates.\n\n"
        "Written by the Tessary developers, with thanks to everyone who sent in scripts, bug reports "
        "and ideas. Click anywhere outside the links to close this box."));
}

void frmAbout::Form_Click() {
    close();
}

void frmAbout::lblEmail_Click() {
    mdlTessary::OpenLink(this, QStringLiteral("mailto:") + lblEmail->text() +
                                   QStringLiteral("?subject=Tessary v") + versionNumber() +
                                   QStringLiteral("b"));
}

void frmAbout::lblWebsite_Click() {
    mdlTessary::OpenLink(this, lblWebsite->text());
}

void frmAbout::mousePressEvent(QMouseEvent* event) {
    // Labels pass their clicks on to the box; only a click on no control closes it.
    if (event->button() == Qt::LeftButton && !childAt(event->position().toPoint())) {
        Form_Click();
        return;
    }
    QDialog::mousePressEvent(event);
}

bool frmAbout::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::MouseButtonRelease &&
        static_cast<QMouseEvent*>(event)->button() == Qt::LeftButton) {
        if (watched == lblEmail) {
            lblEmail_Click();
            return true;
        }
        if (watched == lblWebsite) {
            lblWebsite_Click();
            return true;
        }
    }
    if (event->type() == QEvent::MouseButtonPress && (watched == lblEmail || watched == lblWebsite))
        return true; // the press belongs to the link, not to the box
    return QDialog::eventFilter(watched, event);
}
