// The template window: a template's parameter table, whose values the user edits in place, and
// generation of a new COG window from it.
#pragma once

#include <QByteArray>
#include <QDialog>
#include <QString>

class QPushButton;
class QTreeWidget;

class frmCGT : public QDialog {
    Q_OBJECT
public:
    explicit frmCGT(QWidget* parent = nullptr);

    QTreeWidget* lvwCog;    // the parameter table; column i has the key "col" + i
    QPushButton* cmdGenCog; // "Generate Cog"

    QString sF;    // the template file's path
    long ilen = 0; // the header's length in bytes

    // Reads the template file into sF, ilen and lvwCog. False when the file cannot be read or is
    // malformed; problem() then says why, naming the file.
    bool OpenCogTemplate(const QString& sFileName);
    QString problem() const { return problem_; }

    // Generates the new COG window and closes the template window. When the file has changed or
    // vanished since it was opened, tells the user and creates nothing.
    void cmdGenCog_Click();

    // The column keyed "col" + i, or -1.
    int columnOfKey(const QString& key) const;
    // The parameter name (the row's key) of a row.
    static QString rowKey(int row, const QTreeWidget* list);

    // Opens a template given on the command line, by another program or by a drop: a template
    // that cannot be used is reported in one message.
    static void openFromCommand(const QString& path);

protected:
    void resizeEvent(QResizeEvent* event) override;

private:
    void placeControls();

    QByteArray bytes_; // the file as it was read
    QString problem_;
};
