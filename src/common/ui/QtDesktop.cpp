#include "QtDesktop.h"

#include <QApplication>
#include <QDesktopServices>
#include <QFileInfo>
#include <QInputDialog>
#include <QMessageBox>
#include <QPrintDialog>
#include <QUrl>

namespace {
struct ButtonSet {
    QList<QPair<QMessageBox::StandardButton, int>> buttons; // button and its old answer
};

ButtonSet ButtonsFor(int style) {
    switch (style & 7) {
    case vb::vbOKCancel:
        return {{{QMessageBox::Ok, vb::vbOK}, {QMessageBox::Cancel, vb::vbCancel}}};
    case vb::vbAbortRetryIgnore:
        return {{{QMessageBox::Abort, vb::vbAbort},
                 {QMessageBox::Retry, vb::vbRetry},
                 {QMessageBox::Ignore, vb::vbIgnore}}};
    case vb::vbYesNoCancel:
        return {{{QMessageBox::Yes, vb::vbYes},
                 {QMessageBox::No, vb::vbNo},
                 {QMessageBox::Cancel, vb::vbCancel}}};
    case vb::vbYesNo:
        return {{{QMessageBox::Yes, vb::vbYes}, {QMessageBox::No, vb::vbNo}}};
    case vb::vbRetryCancel:
        return {{{QMessageBox::Retry, vb::vbRetry}, {QMessageBox::Cancel, vb::vbCancel}}};
    default:
        return {{{QMessageBox::Ok, vb::vbOK}}};
    }
}

QMessageBox::Icon IconFor(int style) {
    switch (style & 0x70) {
    case vb::vbCritical:
        return QMessageBox::Critical;
    case vb::vbQuestion:
        return QMessageBox::Question;
    case vb::vbExclamation:
        return QMessageBox::Warning;
    case vb::vbInformation:
        return QMessageBox::Information;
    default:
        return QMessageBox::NoIcon;
    }
}
} // namespace

int QtDesktop::MsgBox(const QString& prompt, int style, const QString& title) {
    QMessageBox box(IconFor(style),
                    title.isEmpty() ? QApplication::applicationDisplayName() : title, prompt,
                    QMessageBox::NoButton, QApplication::activeWindow());
    const ButtonSet set = ButtonsFor(style);
    for (const auto& [button, answer] : set.buttons)
        box.addButton(button);
    const int defaultIndex = (style & vb::vbDefaultButton3) ? 2 : (style & vb::vbDefaultButton2) ? 1 : 0;
    if (defaultIndex < set.buttons.size())
        box.setDefaultButton(set.buttons.at(defaultIndex).first);
    const auto clicked = static_cast<QMessageBox::StandardButton>(box.exec());
    for (const auto& [button, answer] : set.buttons) {
        if (button == clicked)
            return answer;
    }
    // Closed with Escape or the close box: the answer of the cancelling button.
    return (style & 7) == vb::vbYesNo ? vb::vbNo : (style & 7) == vb::vbOKOnly ? vb::vbOK : vb::vbCancel;
}

QString QtDesktop::InputBox(const QString& prompt, const QString& title,
                            const QString& defaultText) {
    bool ok = false;
    const QString text = QInputDialog::getText(QApplication::activeWindow(), title, prompt,
                                               QLineEdit::Normal, defaultText, &ok);
    return ok ? text : QString();
}

bool QtDesktop::OpenDocument(const QString& target) {
    const QUrl url = QFileInfo::exists(target) ? QUrl::fromLocalFile(target) : QUrl(target);
    return QDesktopServices::openUrl(url);
}

bool QtDesktop::PrinterDialog(QPrinter& printer, QWidget* parent) {
    QPrintDialog dialog(&printer, parent);
    return dialog.exec() == QDialog::Accepted;
}

void QtDesktop::Beep() {
    QApplication::beep();
}
