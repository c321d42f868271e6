#pragma once

#include "common/core/Desktop.h"

#include <memory>

class QMessageBox;

// The desktop seam on Qt: message boxes, input boxes, the printer dialog, the system's
// handler for files, URLs, mail and telephone numbers.
class QtDesktop final : public Desktop {
public:
    int MsgBox(const QString& prompt, int style, const QString& title) override;
    QString InputBox(const QString& prompt, const QString& title,
                     const QString& defaultText) override;
    bool OpenDocument(const QString& target) override;
    bool PrinterDialog(QPrinter& printer, QWidget* parent) override;
    void Beep() override;
    // Hands "tel:" and the number to the desktop's handler of telephone links; -2 when the
    // desktop has none. The other texts serve a dialing program that could show them.
    int Dial(const QString& number, const QString& appName, const QString& calledParty,
             const QString& comment) override;
    bool SendMail(const QString& address, const QString& subject, const QString& body) override;
    QString SaveFileName(const QString& title, const QString& suggested,
                         const QString& filter) override;
    QString OpenFileName(const QString& title, const QString& suggested,
                         const QString& filter) override;
    QStringList OpenFileNames(const QString& title, QWidget* parent) override;

    // The box MsgBox shows: the style's icon, buttons and default button; each line of the
    // prompt a line of its own (CR LF, CR or LF), a leading tab a modest indent that wrapped
    // lines keep, and room for the longest line up to half the screen.
    static std::unique_ptr<QMessageBox> MakeBox(const QString& prompt, int style,
                                                const QString& title, QWidget* parent = nullptr);
};
