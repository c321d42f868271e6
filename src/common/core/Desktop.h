#pragma once

#include <QList>
#include <QString>
#include <QStringList>
#include <memory>

class QPrinter;
class QWidget;

// Message box styles and answers, as the program has always numbered them.
namespace vb {
enum MsgBoxStyle {
    vbOKOnly = 0,
    vbOKCancel = 1,
    vbAbortRetryIgnore = 2,
    vbYesNoCancel = 3,
    vbYesNo = 4,
    vbRetryCancel = 5,
    vbCritical = 16,
    vbQuestion = 32,
    vbExclamation = 48,
    vbInformation = 64,
    vbDefaultButton2 = 256,
    vbDefaultButton3 = 512,
};
enum MsgBoxResult {
    vbOK = 1,
    vbCancel = 2,
    vbAbort = 3,
    vbRetry = 4,
    vbIgnore = 5,
    vbYes = 6,
    vbNo = 7
};
// The buttons of a style as their answers, in the order they stand ({vbYes, vbNo} for vbYesNo).
QList<int> ButtonAnswers(int style);
// The answer of a style's default button (the first, or the one vbDefaultButton2 or 3 names):
// what the box gives when the user just presses Enter.
int DefaultAnswer(int style);
} // namespace vb

// The desktop seam: everything the program asks of the user's desktop. The program installs
// the Qt implementation at start; tests install a scripted one that records each call and
// answers from a queue.
class Desktop {
public:
    virtual ~Desktop() = default;

    // Returns one of vb::MsgBoxResult.
    virtual int MsgBox(const QString& prompt, int style, const QString& title) = 0;
    // Returns the text typed, or "" when the user cancels.
    virtual QString InputBox(const QString& prompt, const QString& title,
                             const QString& defaultText) = 0;
    // Hands a file, URL or mailto: address to the desktop; false when nothing took it.
    virtual bool OpenDocument(const QString& target) = 0;
    // The printer dialog; false when the user cancels.
    virtual bool PrinterDialog(QPrinter& printer, QWidget* parent) = 0;
    virtual void Beep() = 0;
    // Opens a new mail to the address in the user's mail program, with the subject and the
    // body filled in, for the user to edit and send; false when no mail program took it.
    virtual bool SendMail(const QString& address, const QString& subject, const QString& body) = 0;
    // Asks the desktop to place a telephone call. Returns 0 when a dialing program took the
    // request, else one of the DialResult codes.
    virtual int Dial(const QString& number, const QString& appName, const QString& calledParty,
                     const QString& comment) = 0;
    // The file dialogs: the path the user chose, "" when the user cancels. `suggested` is the
    // file name (or folder) the dialog starts on, `filter` the dialog's filter text
    // ("CSV files (*.csv)").
    virtual QString SaveFileName(const QString& title, const QString& suggested,
                                 const QString& filter) = 0;
    virtual QString OpenFileName(const QString& title, const QString& suggested,
                                 const QString& filter) = 0;
    // The file dialog for picking existing files, several at once; empty when the user cancels.
    virtual QStringList OpenFileNames(const QString& title, QWidget* parent) = 0;
};

// The answers of Desktop::Dial other than 0, as telephony has always numbered them.
enum DialResult {
    DialNoRequestRecipient = -2, // no dialing program is running or could be started
    DialRequestQueueFull = -3,
    DialInvalidDestination = -4,
};

Desktop& TheDesktop();
void InstallDesktop(std::unique_ptr<Desktop> desktop);

// The old free functions, forwarding to the installed desktop.
int MsgBox(const QString& prompt, int style = vb::vbOKOnly, const QString& title = QString());
QString InputBox(const QString& prompt, const QString& title = QString(),
                 const QString& defaultText = QString());
void Beep();
