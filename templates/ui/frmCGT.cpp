#include "templates/ui/frmCGT.h"

#include "app/ui/dialogs.h"
#include "app/ui/diskfile.h"
#include "app/ui/frmMain.h"
#include "app/ui/mdlTessary.h"
#include "app/ui/twips.h"
#include "editor/ui/CogTextBox.h"
#include "editor/ui/frmTessary.h"
#include "templates/template.h"

#include <QHeaderView>
#include <QPushButton>
#include <QStyle>
#include <QStyledItemDelegate>
#include <QTreeWidget>

#include <algorithm>

namespace {

constexpr int kMargin = 8;
constexpr int kButtonWidth = 120;
constexpr int kButtonHeight = 28;
constexpr int kKeyRole = Qt::UserRole;

// Only the first column (the value) is edited in place.
class FirstColumnDelegate : public QStyledItemDelegate {
public:
    using QStyledItemDelegate::QStyledItemDelegate;
    QWidget* createEditor(QWidget* parent, const QStyleOptionViewItem& option,
                          const QModelIndex& index) const override {
        return index.column() == 0 ? QStyledItemDelegate::createEditor(parent, option, index) : nullptr;
    }
};

QString fromBytes(const std::string& s) {
    return QString::fromLatin1(s.data(), static_cast<qsizetype>(s.size()));
}

std::string toBytes(const QString& s) {
    return s.toLatin1().toStdString();
}

} // namespace

frmCGT::frmCGT(QWidget* parent) : QDialog(parent) {
    setWindowTitle(QStringLiteral("Cog Template"));
    lvwCog = new QTreeWidget(this);
    lvwCog->setRootIsDecorated(false);
    lvwCog->setUniformRowHeights(true);
    lvwCog->setAllColumnsShowFocus(true);
    lvwCog->setItemDelegate(new FirstColumnDelegate(lvwCog));
    lvwCog->setEditTriggers(QAbstractItemView::DoubleClicked | QAbstractItemView::EditKeyPressed |
                            QAbstractItemView::SelectedClicked);
    lvwCog->header()->setStretchLastSection(false);
    lvwCog->header()->setSectionsMovable(false);
    lvwCog->setColumnCount(0);
    cmdGenCog = new QPushButton(QStringLiteral("Generate Cog"), this);
    cmdGenCog->setDefault(false);
    cmdGenCog->setAutoDefault(false);
    connect(cmdGenCog, &QPushButton::clicked, this, [this] { cmdGenCog_Click(); });
    resize(twips(9600), twips(5400));
    placeControls();
}

void frmCGT::resizeEvent(QResizeEvent* event) {
    QDialog::resizeEvent(event);
    placeControls();
}

void frmCGT::placeControls() {
    const int listHeight = height() - 3 * kMargin - kButtonHeight;
    lvwCog->setGeometry(kMargin, kMargin, width() - 2 * kMargin, std::max(listHeight, 0));
    cmdGenCog->setGeometry(width() - kMargin - kButtonWidth, height() - kMargin - kButtonHeight, kButtonWidth,
                           kButtonHeight);
}

bool frmCGT::OpenCogTemplate(const QString& sFileName) {
    sF = sFileName;
    ilen = 0;
    problem_.clear();
    QString error;
    if (!diskfile::readAll(sFileName, bytes_, error)) {
        problem_ = QStringLiteral("The template file %1 cannot be read: %2.").arg(sFileName, error);
        return false;
    }
    const auto read = templates::readTemplate(std::string_view(bytes_.constData(), bytes_.size()));
    if (!read.ok()) {
        problem_ = QStringLiteral("The template file %1 cannot be used: %2.")
                       .arg(sFileName, QString::fromStdString(read.error.describe()));
        return false;
    }
    const templates::Template& t = read.tmpl;
    ilen = t.ilen;

    lvwCog->clear();
    lvwCog->setColumnCount(t.columns);
    QStringList titles;
    for (const auto& title : t.titles) titles << fromBytes(title);
    lvwCog->setHeaderLabels(titles);
    for (int i = 0; i < t.columns; ++i)
        lvwCog->headerItem()->setData(i, kKeyRole, QStringLiteral("col%1").arg(i));

    // Each column as wide as its title; the last one takes the rest of the list less a margin.
    const QFontMetrics metrics(lvwCog->header()->font());
    const int padding = 2 * style()->pixelMetric(QStyle::PM_HeaderMargin, nullptr, lvwCog->header()) + 4;
    std::vector<double> titleWidths;
    for (const QString& title : titles) titleWidths.push_back(metrics.horizontalAdvance(title) + padding);
    const std::vector<double> widths =
        templates::columnWidths(titleWidths, lvwCog->width() - 2 * lvwCog->frameWidth(), twips(1000));
    for (int i = 0; i < t.columns; ++i) {
        const double w =
            std::max(widths[static_cast<std::size_t>(i)], titleWidths[static_cast<std::size_t>(i)]);
        lvwCog->setColumnWidth(i, static_cast<int>(w));
    }

    for (const auto& row : t.rows) {
        auto* item = new QTreeWidgetItem(lvwCog);
        item->setFlags(item->flags() | Qt::ItemIsEditable);
        item->setData(0, kKeyRole, fromBytes(row.name));
        item->setText(0, fromBytes(row.value));
        for (int i = 1; i < t.columns; ++i) {
            const QString text = fromBytes(row.fields[static_cast<std::size_t>(i)]);
            item->setText(i, text);
            item->setToolTip(i, text); // the narrow columns may cut it short
        }
    }
    return true;
}

int frmCGT::columnOfKey(const QString& key) const {
    for (int i = 0; i < lvwCog->columnCount(); ++i)
        if (lvwCog->headerItem()->data(i, kKeyRole).toString() == key) return i;
    return -1;
}

QString frmCGT::rowKey(int row, const QTreeWidget* list) {
    const QTreeWidgetItem* item = list->topLevelItem(row);
    return item ? item->data(0, kKeyRole).toString() : QString();
}

void frmCGT::cmdGenCog_Click() {
    QByteArray now;
    QString error;
    if (!diskfile::readAll(sF, now, error)) {
        ui::MsgBox(
            QStringLiteral("The template file %1 cannot be read any more: %2.\r\nNo COG was generated.")
                .arg(sF, error),
            ui::vbOKOnly, ui::vbExclamation);
        return;
    }
    if (now != bytes_) {
        ui::MsgBox(QStringLiteral("The template file %1 has changed since it was opened.\r\n"
                                  "No COG was generated; open the template again to use the new version.")
                       .arg(sF),
                   ui::vbOKOnly, ui::vbExclamation);
        return;
    }
    // A value still being typed counts.
    if (QWidget* editor = lvwCog->indexWidget(lvwCog->currentIndex())) {
        emit lvwCog->itemDelegate()->commitData(editor);
        emit lvwCog->itemDelegate()->closeEditor(editor);
    }

    std::vector<templates::Assignment> assignments;
    for (int r = 0; r < lvwCog->topLevelItemCount(); ++r)
        assignments.emplace_back(toBytes(rowKey(r, lvwCog)), toBytes(lvwCog->topLevelItem(r)->text(0)));
    const std::string text =
        templates::generate(std::string_view(bytes_.constData(), bytes_.size()), ilen, assignments);

    mdlTessary::NewCogWindow(QStringLiteral("blank"), QString());
    frmTessary* w = mdlTessary::colCogs.item(mdlTessary::colCogs.count());
    w->txtMain->setTextBytes(QByteArray::fromStdString(text));
    w->txtMain->setSelStart(0);
    accept();
}

void frmCGT::openFromCommand(const QString& path) {
    frmCGT window(mdlTessary::frame());
    if (!window.OpenCogTemplate(path)) {
        ui::MsgBox(window.problem(), ui::vbOKOnly, ui::vbExclamation);
        return;
    }
    window.exec();
}

void frmMain::mnuOpenTemp_Click() {
    const QString path = ui::dialogs().openFileName(
        mdlTessary::DefOpenDir, QStringLiteral("COG Template files (*.cgt)|*.cgt|All files (*.*)|*.*"));
    if (path.isEmpty()) return;
    frmCGT window(this);
    if (!window.OpenCogTemplate(path)) return;
    window.exec();
}
