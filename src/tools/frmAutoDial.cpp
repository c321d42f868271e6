#include "tools/frmAutoDial.h"

#include "common/core/Desktop.h"
#include "common/ui/Forms.h"
#include "common/ui/ImageList.h"
#include "tools/ExecModal.h"

#include <QFormLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

frmAutoDial::frmAutoDial(QWidget* parent) : QDialog(parent) {
    setObjectName(QStringLiteral("frmAutoDial"));
    setWindowTitle(QStringLiteral("AutoDial"));

    auto* top = new QHBoxLayout;
    auto* imgPhone = new QLabel(this);
    imgPhone->setObjectName(QStringLiteral("imgPhone"));
    imgPhone->setPixmap(ImageList::Render(ImageList::ResourceFor(QStringLiteral("Dialer")), 48));
    imgPhone->setAlignment(Qt::AlignTop);
    top->addWidget(imgPhone);

    auto* form = new QFormLayout;
    lblName = new QLabel(QStringLiteral("Name:"), this);
    lblName->setObjectName(QStringLiteral("lblName"));
    txtName = new QLabel(this);
    txtName->setObjectName(QStringLiteral("txtName"));
    txtName->setTextInteractionFlags(Qt::TextSelectableByMouse);
    form->addRow(lblName, txtName);
    auto* Label1 = new QLabel(QStringLiteral("&Phone Number:"), this);
    Label1->setObjectName(QStringLiteral("Label1"));
    txtNumber = new QLineEdit(this);
    txtNumber->setObjectName(QStringLiteral("txtNumber"));
    txtNumber->setMinimumWidth(220);
    Label1->setBuddy(txtNumber);
    form->addRow(Label1, txtNumber);
    top->addLayout(form, 1);

    auto* buttons = new QHBoxLayout;
    buttons->addStretch(1);
    cmdDial = new QPushButton(QStringLiteral("&Dial..."), this);
    cmdDial->setObjectName(QStringLiteral("cmdDial"));
    cmdDial->setDefault(true);
    auto* cmdCancel = new QPushButton(QStringLiteral("&Cancel"), this);
    cmdCancel->setObjectName(QStringLiteral("cmdCancel"));
    buttons->addWidget(cmdDial);
    buttons->addWidget(cmdCancel);

    auto* layout = new QVBoxLayout(this);
    layout->addLayout(top);
    layout->addLayout(buttons);
    layout->setSizeConstraint(QLayout::SetFixedSize);

    connect(txtNumber, &QLineEdit::textChanged, this, &frmAutoDial::UpdateDialButton);
    connect(cmdDial, &QPushButton::clicked, this, &frmAutoDial::cmdDial_Click);
    connect(cmdCancel, &QPushButton::clicked, this, &frmAutoDial::cmdCancel_Click);
    UpdateDialButton();
    SetName(QString());
    txtNumber->setFocus();
}

void frmAutoDial::ShowModal(QWidget* owner, const QString& number, const QString& name) {
    frmAutoDial form(owner);
    form.txtNumber->setText(number);
    form.SetName(name);
    ExecModal(form);
}

void frmAutoDial::SetName(const QString& name) {
    txtName->setText(name);
    txtName->setVisible(!name.isEmpty());
    lblName->setVisible(!name.isEmpty());
}

void frmAutoDial::UpdateDialButton() {
    cmdDial->setEnabled(!txtNumber->text().trimmed().isEmpty());
}

QString DialErrorText(int code) {
    switch (code) {
    case DialNoRequestRecipient:
        return QStringLiteral("No Windows Telephony dialing application is running and none "
                              "could be started.");
    case DialRequestQueueFull:
        return QStringLiteral("The queue of pending Windows Telephony dialing requests is full.");
    case DialInvalidDestination:
        return QStringLiteral("The phone number is invalid.");
    default:
        return QStringLiteral("Unknown error.");
    }
}

void frmAutoDial::cmdDial_Click() {
    SetStatusText(QStringLiteral("Dialing number..."));
    const QString number = txtNumber->text().trimmed();
    const QString party = txtName->text().isEmpty() ? txtNumber->text() : txtName->text();
    const int result = TheDesktop().Dial(number, windowTitle(), party, QString());
    if (result != 0) {
        SetStatusText(QStringLiteral("Dialing error..."));
        MsgBox(QStringLiteral("Error dialing number : ") + DialErrorText(result), vb::vbExclamation,
               QStringLiteral("Dialing Error"));
    }
    SetStatusText(QStringLiteral("Ready..."));
    activateWindow();
    if (!focusWidget())
        txtNumber->setFocus();
}
