#include "ScriptedDesktop.h"

namespace {
int DefaultAnswer(int style) {
    const bool second = style & vb::vbDefaultButton2;
    switch (style & 7) {
    case vb::vbOKCancel:
        return second ? vb::vbCancel : vb::vbOK;
    case vb::vbYesNo:
    case vb::vbYesNoCancel:
        return second ? vb::vbNo : vb::vbYes;
    case vb::vbRetryCancel:
        return second ? vb::vbCancel : vb::vbRetry;
    default:
        return vb::vbOK;
    }
}
} // namespace

int ScriptedDesktop::MsgBox(const QString& prompt, int style, const QString& title) {
    const int answer = answers.isEmpty() ? DefaultAnswer(style) : answers.takeFirst();
    boxes.append({prompt, style, title, answer});
    if (!boxActions.isEmpty())
        boxActions.takeFirst()(boxes.last());
    return answer;
}

QString ScriptedDesktop::InputBox(const QString& prompt, const QString&,
                                  const QString& defaultText) {
    inputPrompts.append(prompt);
    return inputs.isEmpty() ? defaultText : inputs.takeFirst();
}

bool ScriptedDesktop::OpenDocument(const QString& target) {
    openedDocuments.append(target);
    return openDocumentResult;
}

bool ScriptedDesktop::PrinterDialog(QPrinter&, QWidget*) {
    ++printerDialogs;
    return printerDialogResult;
}
