#include "tools/frmZoomBox.h"

#include "app/cLogErr.h"
#include "common/core/Desktop.h"
#include "common/core/Regional.h"
#include "common/core/VbError.h"
#include "common/ui/Forms.h"
#include "tools/ExecModal.h"

#include <QComboBox>
#include <QDialogButtonBox>
#include <QEvent>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTextEdit>
#include <QVBoxLayout>
#include <cmath>

namespace {
constexpr int kLastYear = 9999;

// The status line shows what a button does while it has the focus.
class StatusTextFilter : public QObject {
public:
    using QObject::QObject;
    bool eventFilter(QObject* watched, QEvent* event) override {
        if (event->type() == QEvent::FocusIn)
            SetStatusText(watched->property("Tag").toString());
        else if (event->type() == QEvent::FocusOut)
            SetStatusText(QStringLiteral("Ready..."));
        return false;
    }
};
} // namespace

frmZoomBox::frmZoomBox(QWidget* parent) : QDialog(parent) {
    setObjectName(QStringLiteral("frmZoomBox"));
    setWindowTitle(QStringLiteral("Zoom"));
    resize(560, 360);

    auto* layout = new QVBoxLayout(this);
    txtText = new QPlainTextEdit(this);
    txtText->setObjectName(QStringLiteral("txtText"));
    txtText->setAccessibleName(QStringLiteral("Text"));
    txtText->setTabChangesFocus(true);
    layout->addWidget(txtText, 1);
    txtTextDup = new QLineEdit(this);
    txtTextDup->setObjectName(QStringLiteral("txtTextDup"));
    txtTextDup->hide();
    txtExitState = new QLineEdit(QStringLiteral("1 - OK, 2 - Cancel"), this);
    txtExitState->setObjectName(QStringLiteral("txtExitState"));
    txtExitState->hide();

    auto* buttons = new QDialogButtonBox(this);
    auto* btnOK = buttons->addButton(QStringLiteral("&OK"), QDialogButtonBox::AcceptRole);
    btnOK->setObjectName(QStringLiteral("btnOK"));
    btnOK->setProperty("Tag", QStringLiteral("Update and close the Zoom Box..."));
    auto* btnCancel = buttons->addButton(QStringLiteral("&Cancel"), QDialogButtonBox::RejectRole);
    btnCancel->setObjectName(QStringLiteral("btnCancel"));
    btnCancel->setProperty("Tag", QStringLiteral("Cancel and close the Zoom Box..."));
    auto* statusFilter = new StatusTextFilter(this);
    for (QPushButton* b : {btnOK, btnCancel}) {
        b->setAutoDefault(false);
        b->installEventFilter(statusFilter);
    }
    connect(btnOK, &QPushButton::clicked, this, &frmZoomBox::btnOK_Click);
    connect(btnCancel, &QPushButton::clicked, this, &frmZoomBox::btnCancel_Click);
    layout->addWidget(buttons);
}

void frmZoomBox::btnOK_Click() {
    txtExitState->setText(QStringLiteral("1"));
    done(Accepted);
}

void frmZoomBox::btnCancel_Click() {
    txtExitState->setText(QStringLiteral("2"));
    done(Rejected);
}

QString DisplayZoomBox(QWidget* control) {
    auto* line = qobject_cast<QLineEdit*>(control);
    auto* combo = qobject_cast<QComboBox*>(control);
    auto* rich = qobject_cast<QTextEdit*>(control);
    auto* plain = qobject_cast<QPlainTextEdit*>(control);
    if (combo && !combo->isEditable())
        combo = nullptr;
    if (!line && !combo && !rich && !plain)
        return {};
    QString result;
    try {
        const QString text = line    ? line->text()
                             : combo ? combo->currentText()
                             : rich  ? rich->toPlainText()
                                     : plain->toPlainText();
        frmZoomBox form(control->window());
        form.txtText->setPlainText(text);
        form.txtTextDup->setText(text);
        form.txtText->moveCursor(QTextCursor::End);
        form.txtText->setFocus();
        ExecModal(form);
        if (form.txtExitState->text() == QStringLiteral("1")) {
            const QString edited = form.txtText->toPlainText();
            if (edited != form.txtTextDup->text()) {
                if (line)
                    line->setText(edited);
                else if (combo)
                    combo->setEditText(edited);
                else if (rich)
                    rich->setPlainText(edited);
                else
                    plain->setPlainText(edited);
            }
            result = QStringLiteral("OK");
        } else {
            result = QStringLiteral("Canceled");
        }
        if (line)
            line->end(false);
        else if (rich)
            rich->moveCursor(QTextCursor::End);
        else if (plain)
            plain->moveCursor(QTextCursor::End);
    } catch (const VbError& e) {
        LogError(e, QStringLiteral("frmZoomBox"), QStringLiteral("DisplayZoomBox()"));
    }
    return result;
}

QString WeekConverter(const QString& dateSent) {
    const QString answer = InputBox(
        QStringLiteral("Enter the number of weeks from the Date Sent until the rebate is due:"),
        QStringLiteral("Week Converter"), QStringLiteral("8"));
    if (answer.isEmpty())
        return {};
    // Half days round to the even number, and the days must fit a 16-bit count.
    const double days = IsNumeric(answer) ? std::nearbyint(CDbl(answer) * 7) : std::nan("");
    QDate due;
    if (std::isfinite(days) && std::fabs(days) <= 32767)
        due = CDate(dateSent).addDays(static_cast<qint64>(days));
    if (!due.isValid() || due.year() < 100 || due.year() > kLastYear) {
        MsgBox(QStringLiteral("Please enter a number such as 6 or 8."), vb::vbExclamation,
               QStringLiteral("Invalid Entry"));
        return {};
    }
    return CStr(due);
}
