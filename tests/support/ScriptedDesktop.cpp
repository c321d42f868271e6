#include "ScriptedDesktop.h"

#include <QApplication>
#include <QDialog>
#include <QPointer>
#include <QPrinter>
#include <QTimer>

namespace {
QPointer<QWidget> gOwner; // the window a box gives the activation back to

void GiveBackActivation() {
    if (!gOwner)
        return;
    QTimer::singleShot(0, gOwner, [] {
        if (QApplication::activeModalWidget())
            GiveBackActivation(); // another box is up: the owner waits for it
        else if (gOwner && !QApplication::activeWindow())
            QApplication::setActiveWindow(gOwner);
    });
}
} // namespace

int ScriptedDesktop::MsgBox(const QString& prompt, int style, const QString& title) {
    const int answer = answers.isEmpty() ? vb::DefaultAnswer(style) : answers.takeFirst();
    boxes.append({prompt, style, title, answer});
    std::function<void(const Box&)> action;
    if (!boxActions.isEmpty())
        action = boxActions.takeFirst();
    if (modalBoxes)
        RunModalWindow(boxes.last(), action);
    else if (action)
        action(boxes.last());
    return answer;
}

void ScriptedDesktop::RunModalWindow(const Box& box,
                                     const std::function<void(const Box&)>& action) {
    // A box shown before the activation came back returns it to the same window.
    if (QWidget* active = QApplication::activeWindow())
        gOwner = active;
    QDialog window;
    window.setWindowTitle(box.title);
    window.setModal(true);
    QTimer::singleShot(0, &window, [&] {
        QApplication::setActiveWindow(&window);
        if (action)
            action(box);
        window.accept();
    });
    window.exec();
    window.hide();
    // Nothing is active between the box and the owner's activation.
    QApplication::setActiveWindow(nullptr);
    GiveBackActivation();
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
