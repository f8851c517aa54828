// The directory chooser of the Options dialog: a volume list, a directory list and the chosen
// path, which goes into the options field that the chooser was opened for.
#pragma once

#include <QDialog>

class QComboBox;
class QLineEdit;
class QListWidget;
class QListWidgetItem;
class QPushButton;
class frmOptions;

class frmDir : public QDialog {
    Q_OBJECT
public:
    explicit frmDir(frmOptions* options);

    QComboBox* Drive1; // the mounted volumes, by their root paths
    QListWidget* Dir1; // ".." and the subdirectories of the shown directory
    QLineEdit* txtDir; // the chosen path
    QPushButton *cmdOk, *cmdCancel;

    // Remembers the field (0 open, 1 save, 2 extraction) and starts from its directory box.
    void SetDir(int i);
    void Drive1_Change();
    void Dir1_Change();
    void cmdOK_Click();
    void cmdCancel_Click();

    QString dir1Path() const { return dir1Path_; }
    // Shows a directory in Dir1; false (nothing changed) when it does not exist.
    bool setDir1Path(const QString& path);

private:
    void fillDrives();
    void selectDriveOf(const QString& path);

    frmOptions* options_;
    int field_ = 0;
    QString dir1Path_;
};
