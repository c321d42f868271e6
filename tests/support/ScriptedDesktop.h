#pragma once

#include "common/core/Desktop.h"

#include <QList>
#include <QString>
#include <QStringList>
#include <functional>

// The desktop of the tests: records every call and answers from queues set in advance.
// A message box with no queued answer gets its default button, as a user pressing Enter.
class ScriptedDesktop final : public Desktop {
public:
    struct Box {
        QString prompt;
        int style;
        QString title;
        int answer;
    };

    // "title | style | prompt" of each box shown so far, to compare them in one line.
    QStringList Shown() const;

    int MsgBox(const QString& prompt, int style, const QString& title) override;
    QString InputBox(const QString& prompt, const QString& title,
                     const QString& defaultText) override;
    bool OpenDocument(const QString& target) override;
    bool PrinterDialog(QPrinter& printer, QWidget* parent) override;
    void Beep() override { ++beeps; }
    // Records the call as "number|appName|calledParty|comment"; answers the next queued code,
    // else 0.
    int Dial(const QString& number, const QString& appName, const QString& calledParty,
             const QString& comment) override;
    bool SendMail(const QString& address, const QString& subject, const QString& body) override {
        mails.append({address, subject, body});
        return sendMailResult;
    }

    // Records "title|suggested|filter" and answers the next queued path, else "" (cancelled).
    QString SaveFileName(const QString& title, const QString& suggested,
                         const QString& filter) override {
        return FileDialog(title, suggested, filter);
    }
    QString OpenFileName(const QString& title, const QString& suggested,
                         const QString& filter) override {
        return FileDialog(title, suggested, filter);
    }
    // Records the title; answers the next queued choice, else nothing (the user cancels).
    QStringList OpenFileNames(const QString& title, QWidget*) override {
        fileDialogs.append(title);
        return fileChoices.isEmpty() ? QStringList() : fileChoices.takeFirst();
    }

private:
    QString FileDialog(const QString& title, const QString& suggested, const QString& filter) {
        fileDialogs.append(title + u'|' + suggested + u'|' + filter);
        return filePaths.isEmpty() ? QString() : filePaths.takeFirst();
    }
    void RunModalWindow(const Box& box, const std::function<void(const Box&)>& action);

public:
    // The answer of the next message box (vb::vbYes, vb::vbNo, ...).
    void SetNextAnswer(int answer) { answers.append(answer); }
    // Runs while the next message box is "showing" (to look at the program in that moment).
    void OnNextBox(std::function<void(const Box&)> action) { boxActions.append(std::move(action)); }
    void SetNextInput(const QString& text) { inputs.append(text); }
    void SetNextDialResult(int code) { dialResults.append(code); }

    struct Mail {
        QString address;
        QString subject;
        QString body;
    };

    // Each message box shows as a real modal window while it "shows": the focus leaves the
    // program's window, and comes back as a window activation once the event loop turns after
    // the box is gone, as a window manager gives it back.
    bool modalBoxes = false;

    QList<Box> boxes;
    QList<Mail> mails;
    bool sendMailResult = true;
    QList<int> answers;
    QList<std::function<void(const Box&)>> boxActions;
    QStringList inputs;
    QStringList filePaths;          // the answers of the one-file dialogs, in turn
    QList<QStringList> fileChoices; // the answers of the several-files dialogs, in turn
    // "title|suggested|filter" of each one-file dialog shown, the title of each other one
    QStringList fileDialogs;
    QStringList inputPrompts;
    QStringList openedDocuments;
    QStringList dialed;
    QList<int> dialResults;
    bool openDocumentResult = true;
    // The printer dialog's answer; when accepted, the printer writes a PDF file to
    // printerOutputFile (when one is given) with printerCopies copies.
    bool printerDialogResult = true;
    QString printerOutputFile;
    int printerCopies = 1;
    int printerDialogs = 0;
    int beeps = 0;
};
