#pragma once

#include "Desktop.h"

// The desktop seam on Qt: message boxes, input boxes, the printer dialog, the system's
// handler for files, URLs and mail.
class QtDesktop final : public Desktop {
public:
    int MsgBox(const QString& prompt, int style, const QString& title) override;
    QString InputBox(const QString& prompt, const QString& title,
                     const QString& defaultText) override;
    bool OpenDocument(const QString& target) override;
    bool PrinterDialog(QPrinter& printer, QWidget* parent) override;
    void Beep() override;
};
