#include "common/ui/QtDesktop.h"

#include <QApplication>
#include <QDesktopServices>
#include <QFileDialog>
#include <QFileInfo>
#include <QInputDialog>
#include <QLabel>
#include <QMessageBox>
#include <QPointer>
#include <QPrintDialog>
#include <QScreen>
#include <QUrl>

namespace {
// A leading tab of a line of the prompt indents it by this much; wrapped lines keep it.
constexpr int kTabIndent = 20;
// A box with several lines is at least this wide, so that short lines don't wrap.
constexpr int kMinTextWidth = 360;
constexpr int kMaxTextWidth = 600;

QMessageBox::StandardButton ButtonFor(int answer) {
    switch (answer) {
    case vb::vbCancel:
        return QMessageBox::Cancel;
    case vb::vbAbort:
        return QMessageBox::Abort;
    case vb::vbRetry:
        return QMessageBox::Retry;
    case vb::vbIgnore:
        return QMessageBox::Ignore;
    case vb::vbYes:
        return QMessageBox::Yes;
    case vb::vbNo:
        return QMessageBox::No;
    default:
        return QMessageBox::Ok;
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

struct PromptLine {
    int tabs; // leading tabs
    QString text;
};

// The prompt's lines (CR LF, CR or LF end a line), each with its leading tabs counted and
// any further tab shown as a few blanks.
QList<PromptLine> LinesOf(QString prompt) {
    prompt.replace(QLatin1String("\r\n"), QLatin1String("\n"));
    prompt.replace(QLatin1Char('\r'), QLatin1Char('\n'));
    QList<PromptLine> lines;
    for (const QString& line : prompt.split(QLatin1Char('\n'))) {
        int tabs = 0;
        while (tabs < line.size() && line.at(tabs) == QLatin1Char('\t'))
            ++tabs;
        QString text = line.mid(tabs);
        text.replace(QLatin1Char('\t'), QLatin1String("    "));
        lines.append({tabs, text});
    }
    return lines;
}

// Each line a block of its own, its blanks kept, a leading tab a modest indent.
QString PromptHtml(const QList<PromptLine>& lines) {
    QString html;
    for (const PromptLine& line : lines) {
        const QString text =
            line.text.isEmpty() ? QStringLiteral("&nbsp;") : line.text.toHtmlEscaped();
        html += QStringLiteral("<div style=\"margin-left:%1px; white-space:pre-wrap\">%2</div>")
                    .arg(QString::number(line.tabs * kTabIndent), text);
    }
    return html;
}

// As wide as the longest line wants, within limits: several lines get room enough that only
// really long ones wrap.
int TextWidth(const QList<PromptLine>& lines, const QFontMetrics& metrics, const QWidget* near) {
    int widest = 0;
    for (const PromptLine& line : lines)
        widest = std::max(widest, line.tabs * kTabIndent + metrics.horizontalAdvance(line.text));
    int most = kMaxTextWidth;
    if (const QScreen* screen = near ? near->screen() : QGuiApplication::primaryScreen())
        most = std::min(most, screen->availableGeometry().width() / 2);
    const int least = lines.size() > 1 ? kMinTextWidth : 0;
    return std::clamp(widest + 4, std::min(least, most), most);
}
} // namespace

std::unique_ptr<QMessageBox> QtDesktop::MakeBox(const QString& prompt, int style,
                                                const QString& title, QWidget* parent) {
    auto box = std::make_unique<QMessageBox>(
        IconFor(style), title.isEmpty() ? QApplication::applicationDisplayName() : title, QString(),
        QMessageBox::NoButton, parent);
    const QList<PromptLine> lines = LinesOf(prompt);
    box->setTextFormat(Qt::RichText);
    box->setText(PromptHtml(lines));
    if (auto* label = box->findChild<QLabel*>(QStringLiteral("qt_msgbox_label")))
        label->setMinimumWidth(TextWidth(lines, label->fontMetrics(), box.get()));
    for (int answer : vb::ButtonAnswers(style))
        box->addButton(ButtonFor(answer));
    box->setDefaultButton(ButtonFor(vb::DefaultAnswer(style)));
    return box;
}

int QtDesktop::MsgBox(const QString& prompt, int style, const QString& title) {
    const std::unique_ptr<QMessageBox> box =
        MakeBox(prompt, style, title, QApplication::activeWindow());
    box->exec();
    const QList<int> answers = vb::ButtonAnswers(style);
    const QMessageBox::StandardButton clicked = box->standardButton(box->clickedButton());
    for (int answer : answers) {
        if (ButtonFor(answer) == clicked)
            return answer;
    }
    // Closed without a button: the answer of the last one (No, Cancel or OK).
    return answers.back();
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
    const QPointer<QWidget> focus = QApplication::focusWidget();
    QPrintDialog dialog(&printer, parent);
    // The reports print whole: no selection or page range to choose.
    dialog.setOptions(QAbstractPrintDialog::PrintToFile | QAbstractPrintDialog::PrintShowPageSize |
                      QAbstractPrintDialog::PrintCollateCopies);
    const bool accepted = dialog.exec() == QDialog::Accepted;
    // The keyboard goes back to where it was, whether or not a window manager hands the
    // activation back to the owner.
    if (focus) {
        focus->activateWindow();
        focus->setFocus(Qt::ActiveWindowFocusReason);
    }
    return accepted;
}

void QtDesktop::Beep() {
    QApplication::beep();
}

int QtDesktop::Dial(const QString& number, const QString&, const QString&, const QString&) {
    const QUrl url(QStringLiteral("tel:") + number);
    if (!url.isValid())
        return DialInvalidDestination;
    return QDesktopServices::openUrl(url) ? 0 : DialNoRequestRecipient;
}

bool QtDesktop::SendMail(const QString& address, const QString& subject, const QString& body) {
    // Line ends as CR LF, which mail programs read as line breaks in the body.
    QString text = body;
    text.replace(QStringLiteral("\r\n"), QStringLiteral("\n"));
    text.replace(QLatin1Char('\n'), QStringLiteral("\r\n"));
    QUrl url;
    url.setScheme(QStringLiteral("mailto"));
    url.setPath(address);
    url.setQuery(QStringLiteral("subject=") +
                     QString::fromLatin1(QUrl::toPercentEncoding(subject)) +
                     QStringLiteral("&body=") + QString::fromLatin1(QUrl::toPercentEncoding(text)),
                 QUrl::StrictMode);
    return QDesktopServices::openUrl(url);
}

QString QtDesktop::SaveFileName(const QString& title, const QString& suggested,
                                const QString& filter) {
    return QFileDialog::getSaveFileName(QApplication::activeWindow(), title, suggested, filter);
}

QString QtDesktop::OpenFileName(const QString& title, const QString& suggested,
                                const QString& filter) {
    return QFileDialog::getOpenFileName(QApplication::activeWindow(), title, suggested, filter);
}

QStringList QtDesktop::OpenFileNames(const QString& title, QWidget* parent) {
    return QFileDialog::getOpenFileNames(parent, title);
}
