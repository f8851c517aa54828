#include "app/ui/frmDir.h"

#include "app/ui/frmOptions.h"

#include <QComboBox>
#include <QDir>
#include <QFileInfo>
#include <QGridLayout>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QSignalBlocker>
#include <QStorageInfo>

frmDir::frmDir(frmOptions* options) : QDialog(options), options_(options) {
    setWindowTitle(QStringLiteral("Choose Directory"));
    txtDir = new QLineEdit(this);
    Dir1 = new QListWidget(this);
    Drive1 = new QComboBox(this);
    cmdOk = new QPushButton(QStringLiteral("Ok"), this);
    cmdCancel = new QPushButton(QStringLiteral("Cancel"), this);
    cmdOk->setDefault(true);

    auto* grid = new QGridLayout(this);
    grid->addWidget(txtDir, 0, 0, 1, 2);
    grid->addWidget(Dir1, 1, 0, 3, 1);
    grid->addWidget(cmdOk, 1, 1);
    grid->addWidget(cmdCancel, 2, 1);
    grid->addWidget(Drive1, 4, 0);
    grid->setRowStretch(3, 1);
    resize(380, 300);

    fillDrives();
    connect(Drive1, &QComboBox::currentIndexChanged, this, [this] { Drive1_Change(); });
    connect(Dir1, &QListWidget::itemActivated, this, [this](QListWidgetItem* item) {
        const QString name = item->data(Qt::UserRole).toString();
        if (setDir1Path(QDir(dir1Path_).absoluteFilePath(name))) Dir1_Change();
    });
    connect(cmdOk, &QPushButton::clicked, this, [this] { cmdOK_Click(); });
    connect(cmdCancel, &QPushButton::clicked, this, [this] { cmdCancel_Click(); });
}

void frmDir::fillDrives() {
    for (const QStorageInfo& volume : QStorageInfo::mountedVolumes()) {
        if (!volume.isValid() || !volume.isReady()) continue;
        Drive1->addItem(volume.rootPath());
    }
    if (Drive1->findText(QDir::rootPath()) < 0) Drive1->insertItem(0, QDir::rootPath());
}

void frmDir::selectDriveOf(const QString& path) {
    // The volume whose root is the longest start of the path.
    int best = -1;
    qsizetype bestLength = -1;
    for (int i = 0; i < Drive1->count(); ++i) {
        QString root = Drive1->itemText(i);
        if (!root.endsWith(QLatin1Char('/'))) root += QLatin1Char('/');
        const QString p = path.endsWith(QLatin1Char('/')) ? path : path + QLatin1Char('/');
        if (p.startsWith(root) && root.size() > bestLength) {
            best = i;
            bestLength = root.size();
        }
    }
    const QSignalBlocker block(Drive1);
    Drive1->setCurrentIndex(best);
}

bool frmDir::setDir1Path(const QString& path) {
    const QFileInfo info(path);
    if (path.isEmpty() || !info.isDir()) return false;
    const QString canonical = info.canonicalFilePath();
    QDir dir(canonical.isEmpty() ? info.absoluteFilePath() : canonical);
    dir1Path_ = dir.absolutePath();
    Dir1->clear();
    if (!dir.isRoot()) {
        auto* up = new QListWidgetItem(QStringLiteral("[..]"), Dir1);
        up->setData(Qt::UserRole, QStringLiteral(".."));
    }
    for (const QString& name :
         dir.entryList(QDir::Dirs | QDir::NoDotAndDotDot, QDir::Name | QDir::IgnoreCase)) {
        auto* item = new QListWidgetItem(QStringLiteral("[%1]").arg(name), Dir1);
        item->setData(Qt::UserRole, name);
    }
    selectDriveOf(dir1Path_);
    return true;
}

void frmDir::SetDir(int i) {
    field_ = i;
    if (QLineEdit* box = options_->directoryBox(i)) txtDir->setText(box->text());
    // A field that names no existing directory keeps its text; the list then starts at the
    // nearest existing directory above it, or at the home directory.
    if (setDir1Path(txtDir->text())) {
        Dir1_Change();
        return;
    }
    QString probe = QFileInfo(txtDir->text()).absoluteFilePath();
    while (!txtDir->text().isEmpty() && !QFileInfo(probe).isDir() && !QDir(probe).isRoot())
        probe = QFileInfo(probe).absolutePath();
    if (txtDir->text().isEmpty() || !setDir1Path(probe)) setDir1Path(QDir::homePath());
}

void frmDir::Drive1_Change() {
    if (Drive1->currentIndex() < 0) return;
    if (setDir1Path(Drive1->currentText())) Dir1_Change();
}

void frmDir::Dir1_Change() {
    txtDir->setText(QDir::toNativeSeparators(dir1Path_));
}

void frmDir::cmdOK_Click() {
    if (QLineEdit* box = options_->directoryBox(field_)) box->setText(txtDir->text());
    accept();
}

void frmDir::cmdCancel_Click() {
    reject();
}
