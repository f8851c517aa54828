// The Options dialog: the default open and save directories on the page "Open/Save", each with a
// "..." button that opens the directory chooser.
#pragma once

#include <QDialog>

#include <array>

class QLineEdit;
class QPushButton;
class QTabBar;

class frmOptions : public QDialog {
    Q_OBJECT
public:
    explicit frmOptions(QWidget* parent = nullptr);

    QTabBar* tbsOptions;
    std::array<QWidget*, 4> picOptions{}; // the pages; 1 ("Open/Save") shows first
    QLineEdit *txtDefOpenDir, *txtDefSaveDir, *txtDefExtDir;
    QLineEdit *txtAuthName, *txtAuthEmail, *txtAuthWebsite;
    std::array<QPushButton*, 3> cmdShowDir{};
    QPushButton *cmdOK, *cmdCancel, *cmdApply;

    void Form_Load();
    void cmdApply_Click();
    void cmdOK_Click();
    void cmdCancel_Click();
    void cmdShowDir_Click(int index);
    void tbsOptions_Click();
    // Key-down as the dialog sees it before its controls (VB key code and Shift/Ctrl/Alt bits 1, 2,
    // 4); true when the key was handled.
    bool Form_KeyDown(int keyCode, int shift);

    // The directory box of an options field: 0 open, 1 save, 2 extraction.
    QLineEdit* directoryBox(int field) const;

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
};
