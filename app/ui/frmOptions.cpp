#include "app/ui/frmOptions.h"

#include "app/ui/frmDir.h"
#include "app/ui/mdlTessary.h"
#include "app/ui/twips.h"

#include <QApplication>
#include <QGridLayout>
#include <QGroupBox>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTabBar>

namespace {

constexpr int kPageTop = 480;
constexpr int kPageWidth = 5685;
constexpr int kPageHeight = 2295;
constexpr int kPageShown = 240; // where the first page stands
constexpr int kTabPage = 210;   // where the tab strip puts its page
constexpr int kPageHidden = -20000;

// A page holding one frame with rows of a label, a text box and, maybe, a "..." button.
QWidget* makePage(QWidget* parent, const QString& frameTitle) {
    auto* page = new QWidget(parent);
    page->setAutoFillBackground(true);
    page->setGeometry(twips(kPageHidden), twips(kPageTop), twips(kPageWidth), twips(kPageHeight));
    auto* frame = new QGroupBox(frameTitle, page);
    auto* layout = new QVBoxLayout(page);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(frame);
    new QGridLayout(frame);
    return page;
}

QGridLayout* gridOf(QWidget* page) {
    return static_cast<QGridLayout*>(page->findChild<QGroupBox*>()->layout());
}

QLineEdit* addRow(QWidget* page, int row, const QString& label, const QString& text, QPushButton** button) {
    auto* box = new QLineEdit(text);
    gridOf(page)->addWidget(new QLabel(label), row, 0);
    gridOf(page)->addWidget(box, row, 1);
    if (button) {
        *button = new QPushButton(QStringLiteral("..."));
        (*button)->setFixedWidth(28);
        (*button)->setAutoDefault(false);
        gridOf(page)->addWidget(*button, row, 2);
    }
    return box;
}

} // namespace

frmOptions::frmOptions(QWidget* parent) : QDialog(parent) {
    setWindowTitle(QStringLiteral("Options"));
    setFixedSize(twips(kPageWidth) + 2 * twips(kPageShown), twips(kPageTop) + twips(kPageHeight) + 56);

    tbsOptions = new QTabBar(this);
    tbsOptions->addTab(QStringLiteral("Defaults"));
    tbsOptions->setGeometry(twips(kPageShown), 4, twips(kPageWidth), twips(kPageTop) - 4);
    tbsOptions->setFocusPolicy(Qt::NoFocus);
    connect(tbsOptions, &QTabBar::tabBarClicked, this, [this](int index) {
        if (index >= 0) tbsOptions_Click();
    });

    picOptions[0] = makePage(this, QStringLiteral("Author Info"));
    picOptions[1] = makePage(this, QStringLiteral("Open/Save"));
    picOptions[2] = makePage(this, QString());
    picOptions[3] = makePage(this, QString());
    picOptions[1]->move(twips(kPageShown), twips(kPageTop));

    txtAuthName =
        addRow(picOptions[0], 0, QStringLiteral("Name:"), QStringLiteral("Your Name Here"), nullptr);
    txtAuthEmail = addRow(picOptions[0], 1, QStringLiteral("E-mail Address:"),
                          QStringLiteral("Your E-mail addy Here"), nullptr);
    txtAuthWebsite = addRow(picOptions[0], 2, QStringLiteral("Website:"), QStringLiteral("http://"), nullptr);
    txtDefOpenDir = addRow(picOptions[1], 0, QStringLiteral("Open Directory:"), QString(), &cmdShowDir[0]);
    txtDefSaveDir = addRow(picOptions[1], 1, QStringLiteral("Save Directory:"), QString(), &cmdShowDir[1]);
    txtDefExtDir =
        addRow(picOptions[1], 2, QStringLiteral("Extraction Directory:"), QString(), &cmdShowDir[2]);
    for (int i = 0; i < 3; ++i)
        connect(cmdShowDir[static_cast<std::size_t>(i)], &QPushButton::clicked, this,
                [this, i] { cmdShowDir_Click(i); });

    cmdOK = new QPushButton(QStringLiteral("OK"), this);
    cmdCancel = new QPushButton(QStringLiteral("Cancel"), this);
    cmdApply = new QPushButton(QStringLiteral("Apply"), this);
    const int buttonsTop = twips(kPageTop) + twips(kPageHeight) + 14;
    int left = width() - twips(kPageShown) - 3 * 80 - 2 * 8;
    for (QPushButton* b : {cmdOK, cmdCancel, cmdApply}) {
        b->setGeometry(left, buttonsTop, 80, 28);
        b->setAutoDefault(false);
        left += 88;
    }
    cmdOK->setDefault(true);
    connect(cmdOK, &QPushButton::clicked, this, [this] { cmdOK_Click(); });
    connect(cmdCancel, &QPushButton::clicked, this, [this] { cmdCancel_Click(); });
    connect(cmdApply, &QPushButton::clicked, this, [this] { cmdApply_Click(); });

    // The dialog sees every key before its controls.
    for (QWidget* child : findChildren<QWidget*>()) child->installEventFilter(this);
    installEventFilter(this);
    Form_Load();
}

void frmOptions::Form_Load() {
    txtDefOpenDir->setText(mdlTessary::DefOpenDir);
    txtDefSaveDir->setText(mdlTessary::DefSaveDir);
}

void frmOptions::cmdApply_Click() {
    mdlTessary::DefOpenDir = txtDefOpenDir->text();
    mdlTessary::DefSaveDir = txtDefSaveDir->text();
}

void frmOptions::cmdOK_Click() {
    cmdApply_Click();
    accept();
}

void frmOptions::cmdCancel_Click() {
    reject();
}

void frmOptions::cmdShowDir_Click(int index) {
    frmDir chooser(this);
    chooser.SetDir(index);
    chooser.exec();
}

QLineEdit* frmOptions::directoryBox(int field) const {
    switch (field) {
    case 0:
        return txtDefOpenDir;
    case 1:
        return txtDefSaveDir;
    case 2:
        return txtDefExtDir;
    default:
        return nullptr;
    }
}

void frmOptions::tbsOptions_Click() {
    const int selected = tbsOptions->currentIndex() + 1; // the tab's 1-based index
    for (int k = 0; k < tbsOptions->count(); ++k) {
        QWidget* page = picOptions[static_cast<std::size_t>(k)];
        if (k == selected - 1) {
            page->move(twips(kTabPage), twips(kPageTop));
            page->setEnabled(true);
            page->raise();
        } else {
            page->move(twips(kPageHidden), twips(kPageTop));
            page->setEnabled(false);
        }
    }
}

bool frmOptions::Form_KeyDown(int keyCode, int shift) {
    if (keyCode != 9) return false;
    const int n = tbsOptions->count();
    const int current = tbsOptions->currentIndex();
    switch (shift & 3) {
    case 2: // Ctrl: the next tab, the first after the last
        tbsOptions->setCurrentIndex((current + 1) % n);
        break;
    case 3: // Shift and Ctrl: the previous tab, the last before the first
        tbsOptions->setCurrentIndex((current + n - 1) % n);
        break;
    default:
        return false;
    }
    tbsOptions_Click(); // selecting a tab clicks it, also the one already selected
    return true;
}

bool frmOptions::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::KeyPress || event->type() == QEvent::ShortcutOverride) {
        auto* key = static_cast<QKeyEvent*>(event);
        if (key->key() == Qt::Key_Tab || key->key() == Qt::Key_Backtab) {
            const Qt::KeyboardModifiers m = key->modifiers();
            const int shift = (m & Qt::ShiftModifier ? 1 : 0) | (m & Qt::ControlModifier ? 2 : 0) |
                              (m & Qt::AltModifier ? 4 : 0);
            if ((shift & 2) != 0) {
                if (event->type() == QEvent::ShortcutOverride) {
                    event->accept(); // keep the key from becoming a shortcut
                    return true;
                }
                return Form_KeyDown(9, shift);
            }
        }
    }
    return QDialog::eventFilter(watched, event);
}
