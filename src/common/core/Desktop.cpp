#include "common/core/Desktop.h"

#include <utility>

namespace {
std::unique_ptr<Desktop> gDesktop;

// Stands in until the program or a test installs a desktop: answers every question with
// its default button and opens nothing, so no code path ever meets a missing seam.
class SilentDesktop final : public Desktop {
public:
    int MsgBox(const QString&, int style, const QString&) override {
        return vb::DefaultAnswer(style);
    }
    QString InputBox(const QString&, const QString&, const QString&) override { return {}; }
    bool OpenDocument(const QString&) override { return false; }
    bool PrinterDialog(QPrinter&, QWidget*) override { return false; }
    void Beep() override {}
    int Dial(const QString&, const QString&, const QString&, const QString&) override {
        return DialNoRequestRecipient;
    }
    bool SendMail(const QString&, const QString&, const QString&) override { return false; }
    QString SaveFileName(const QString&, const QString&, const QString&) override { return {}; }
    QString OpenFileName(const QString&, const QString&, const QString&) override { return {}; }
    QStringList OpenFileNames(const QString&, QWidget*) override { return {}; }
};
} // namespace

QList<int> vb::ButtonAnswers(int style) {
    switch (style & 7) {
    case vbOKCancel:
        return {vbOK, vbCancel};
    case vbAbortRetryIgnore:
        return {vbAbort, vbRetry, vbIgnore};
    case vbYesNoCancel:
        return {vbYes, vbNo, vbCancel};
    case vbYesNo:
        return {vbYes, vbNo};
    case vbRetryCancel:
        return {vbRetry, vbCancel};
    default:
        return {vbOK};
    }
}

int vb::DefaultAnswer(int style) {
    const QList<int> answers = ButtonAnswers(style);
    const qsizetype index = (style & vbDefaultButton3) ? 2 : (style & vbDefaultButton2) ? 1 : 0;
    return answers.value(index, answers.front());
}

Desktop& TheDesktop() {
    if (!gDesktop)
        gDesktop = std::make_unique<SilentDesktop>();
    return *gDesktop;
}

void InstallDesktop(std::unique_ptr<Desktop> desktop) {
    gDesktop = std::move(desktop);
}

int MsgBox(const QString& prompt, int style, const QString& title) {
    return TheDesktop().MsgBox(prompt, style, title);
}

QString InputBox(const QString& prompt, const QString& title, const QString& defaultText) {
    return TheDesktop().InputBox(prompt, title, defaultText);
}

void Beep() {
    TheDesktop().Beep();
}
