#include "ScriptedDesktop.h"

#include <QPrinter>

int ScriptedDesktop::MsgBox(const QString& prompt, int style, const QString& title) {
    const int answer = answers.isEmpty() ? vb::DefaultAnswer(style) : answers.takeFirst();
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

bool ScriptedDesktop::PrinterDialog(QPrinter& printer, QWidget*) {
    ++printerDialogs;
    if (!printerDialogResult)
        return false;
    if (!printerOutputFile.isEmpty()) {
        printer.setOutputFormat(QPrinter::PdfFormat);
        printer.setOutputFileName(printerOutputFile);
    }
    printer.setCopyCount(printerCopies);
    return true;
}

QStringList ScriptedDesktop::Shown() const {
    QStringList shown;
    for (const Box& box : boxes)
        shown << box.title + " | " + QString::number(box.style) + " | " + box.prompt;
    return shown;
}

int ScriptedDesktop::Dial(const QString& number, const QString& appName, const QString& calledParty,
                          const QString& comment) {
    dialed.append(QStringList{number, appName, calledParty, comment}.join(QLatin1Char('|')));
    return dialResults.isEmpty() ? 0 : dialResults.takeFirst();
}
