// The template window: a template's parameter table, and generation of a new COG from it.
#pragma once

#include <QDialog>

class frmCGT : public QDialog {
    Q_OBJECT
public:
    explicit frmCGT(QWidget* parent = nullptr);
    // Opens a template given on the command line, by another program or by a drop.
    static void openFromCommand(const QString& path);
};
