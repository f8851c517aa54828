// The About box: the version, the credits and two links, closed by a click outside its controls.
#pragma once

#include <QDialog>

class QLabel;

class frmAbout : public QDialog {
    Q_OBJECT
public:
    explicit frmAbout(QWidget* parent = nullptr);

    QLabel* lblVersion;
    QLabel* lblAbout;
    QLabel* lblEmail;
    QLabel* lblWebsite;

    static QString versionText(); // "Tessary version " + major.minor.revision + "b"

    void Form_Load();
    void Form_Click();
    void lblEmail_Click();
    void lblWebsite_Click();

protected:
    void mousePressEvent(QMouseEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;
};
