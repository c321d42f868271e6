#include "tools/frmCalculator.h"

#include "common/core/Desktop.h"
#include "common/core/Globals.h"
#include "common/core/Regional.h"
#include "common/core/VbError.h"
#include "common/ui/Help.h"
#include "tools/ExecModal.h"

#include <QApplication>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>
#include <cmath>

namespace {
const QStringList kOperatorCaptions = {QStringLiteral("/"), QStringLiteral("+"),
                                       QStringLiteral("X"), QStringLiteral("-"),
                                       QStringLiteral("=")};

// The value of the display: "12." is 12, a lone "-" or "." is 0.
double ValueOf(const QString& readout) {
    try {
        return Val(readout);
    } catch (const VbError&) {
        return 0;
    }
}

// The text typed into the field on OK: the display as money ("13.5"), or, beyond the money
// range, the plain digits of the number so the field's own check refuses it.
QString ResultText(const QString& readout) {
    try {
        return CStr(QVariant::fromValue(CCur(readout)));
    } catch (const VbError&) {
        const double value = ValueOf(readout);
        if (!std::isfinite(value))
            return {};
        QString text = QString::number(value, 'f', 4);
        while (text.endsWith(QLatin1Char('0')))
            text.chop(1);
        if (text.endsWith(QLatin1Char('.')))
            text.chop(1);
        return text;
    }
}

// Sends one character to a widget as a key press and release, through its event filters.
void TypeCharacter(QWidget* target, QChar ch) {
    const int key = ch.isLetter() ? ch.toUpper().unicode() : ch.unicode();
    QKeyEvent press(QEvent::KeyPress, key, Qt::NoModifier, QString(ch));
    QKeyEvent release(QEvent::KeyRelease, key, Qt::NoModifier, QString(ch));
    QApplication::sendEvent(target, &press);
    QApplication::sendEvent(target, &release);
}
} // namespace

frmCalculator::frmCalculator(QWidget* parent) : QDialog(parent) {
    setObjectName(QStringLiteral("frmCalculator"));
    setWindowTitle(QStringLiteral("Calculator"));
    mTarget = QApplication::focusWidget();

    auto* layout = new QVBoxLayout(this);
    lblReadout = new QLabel(this);
    lblReadout->setObjectName(QStringLiteral("Readout"));
    lblReadout->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    lblReadout->setFrameShape(QFrame::Panel);
    lblReadout->setFrameShadow(QFrame::Sunken);
    lblReadout->setAutoFillBackground(true);
    lblReadout->setBackgroundRole(QPalette::Base);
    lblReadout->setMinimumHeight(32);
    lblReadout->setTextInteractionFlags(Qt::TextSelectableByMouse);
    lblReadout->setAccessibleName(QStringLiteral("Display"));
    QFont big = lblReadout->font();
    big.setPointSizeF(big.pointSizeF() * 1.4);
    lblReadout->setFont(big);
    layout->addWidget(lblReadout);

    auto* grid = new QGridLayout;
    grid->setSpacing(4);
    auto button = [this, grid](const QString& name, const QString& caption, int row, int column,
                               auto click) {
        auto* b = new QPushButton(caption, this);
        b->setObjectName(name);
        b->setAutoDefault(false);
        b->setMinimumSize(40, 32);
        connect(b, &QPushButton::clicked, this, click);
        grid->addWidget(b, row, column);
        return b;
    };
    for (int digit = 0; digit <= 9; ++digit) {
        const int row = digit == 0 ? 3 : 2 - (digit - 1) / 3;
        const int column = digit == 0 ? 0 : (digit - 1) % 3;
        button(QStringLiteral("Number_%1").arg(digit), QString::number(digit), row, column,
               [this, digit] { Number_Click(digit); });
    }
    const int operatorRows[] = {0, 3, 1, 2, 3};
    const int operatorColumns[] = {3, 3, 3, 3, 2};
    for (int index = 0; index < kOperatorCaptions.size(); ++index)
        Operator.append(button(QStringLiteral("Operator_%1").arg(index), kOperatorCaptions[index],
                               operatorRows[index], operatorColumns[index],
                               [this, index] { Operator_Click(index); }));
    button(QStringLiteral("Decimal"), QStringLiteral("."), 3, 1, [this] { Decimal_Click(); });
    button(QStringLiteral("Cancel"), QStringLiteral("C"), 0, 4, [this] { Cancel_Click(); });
    button(QStringLiteral("CancelEntry"), QStringLiteral("CE"), 1, 4,
           [this] { CancelEntry_Click(); });
    button(QStringLiteral("Percent"), QStringLiteral("%"), 2, 4, [this] { Percent_Click(); });
    layout->addLayout(grid);

    auto* dialogButtons = new QHBoxLayout;
    dialogButtons->addStretch(1);
    auto* cmdOK = new QPushButton(QStringLiteral("&OK"), this);
    cmdOK->setObjectName(QStringLiteral("cmdOK"));
    auto* cmdCancel = new QPushButton(QStringLiteral("Close"), this);
    cmdCancel->setObjectName(QStringLiteral("cmdCancel"));
    for (QPushButton* b : {cmdOK, cmdCancel}) {
        b->setAutoDefault(false);
        dialogButtons->addWidget(b);
    }
    connect(cmdOK, &QPushButton::clicked, this, &frmCalculator::cmdOK_Click);
    connect(cmdCancel, &QPushButton::clicked, this, &frmCalculator::cmdCancel_Click);
    layout->addLayout(dialogButtons);
    layout->setSizeConstraint(QLayout::SetFixedSize);

    // The form sees the keys before its buttons.
    installEventFilter(this);
    for (QWidget* child : findChildren<QWidget*>())
        child->installEventFilter(this);

    Form_Load();
}

void frmCalculator::ShowModal(QWidget* owner) {
    frmCalculator form(owner);
    ExecModal(form);
}

QString frmCalculator::Readout() const {
    return lblReadout->text();
}

void frmCalculator::Form_Load() {
    DecimalFlag = false;
    NumOps = 0;
    LastInput = QStringLiteral("NONE");
    OpFlag = QStringLiteral(" ");
    if (gcCalculatorValue != Currency())
        TypeNumber(gcCalculatorValue.ToDouble());
    else
        lblReadout->setText(QStringLiteral("0."));
}

void frmCalculator::TypeNumber(double value) {
    for (const QChar ch : CStr(value)) {
        if (ch.isDigit())
            Number_Click(ch.digitValue());
        else if (ch == QLatin1Char('-'))
            Operator_Click(3);
        else if (ch == QLatin1Char('.'))
            Decimal_Click();
    }
}

void frmCalculator::ShowNumber(double value) {
    lblReadout->setText(CStr(value));
}

void frmCalculator::Number_Click(int index) {
    QString readout = Readout();
    if (LastInput != QStringLiteral("NUMS")) {
        readout = QStringLiteral(".");
        DecimalFlag = false;
    }
    if (DecimalFlag)
        readout += QString::number(index);
    else
        readout = readout.left(readout.indexOf(QLatin1Char('.'))) + QString::number(index) +
                  QLatin1Char('.');
    if (LastInput == QStringLiteral("NEG"))
        readout.prepend(QLatin1Char('-'));
    lblReadout->setText(readout);
    LastInput = QStringLiteral("NUMS");
}

void frmCalculator::Decimal_Click() {
    if (LastInput == QStringLiteral("NEG"))
        lblReadout->setText(QStringLiteral("-0."));
    else if (LastInput != QStringLiteral("NUMS"))
        lblReadout->setText(QStringLiteral("0."));
    DecimalFlag = true;
    LastInput = QStringLiteral("NUMS");
}

void frmCalculator::Operator_Click(int index) {
    const QString caption = kOperatorCaptions.value(index);
    const QString tempReadout = Readout();
    if (LastInput == QStringLiteral("NUMS"))
        ++NumOps;
    switch (NumOps) {
    case 0:
        if (caption == QStringLiteral("-") && LastInput != QStringLiteral("NEG")) {
            lblReadout->setText(QLatin1Char('-') + Readout());
            LastInput = QStringLiteral("NEG");
        }
        break;
    case 1:
        Op1 = ValueOf(Readout());
        if (caption == QStringLiteral("-") && LastInput != QStringLiteral("NUMS") &&
            OpFlag != QStringLiteral("=")) {
            lblReadout->setText(QStringLiteral("-"));
            LastInput = QStringLiteral("NEG");
        }
        break;
    case 2: {
        Op2 = ValueOf(tempReadout);
        double result = Op1;
        if (OpFlag == QStringLiteral("+")) {
            result = Op1 + Op2;
        } else if (OpFlag == QStringLiteral("-")) {
            result = Op1 - Op2;
        } else if (OpFlag == QStringLiteral("X") || OpFlag == QStringLiteral("%")) {
            result = Op1 * Op2;
        } else if (OpFlag == QStringLiteral("/")) {
            if (Op2 == 0)
                MsgBox(QStringLiteral("Can't divide by zero"), vb::vbExclamation,
                       QStringLiteral("Calculator"));
            else
                result = Op1 / Op2;
        } else if (OpFlag == QStringLiteral("=")) {
            result = Op2;
        }
        if (std::isfinite(result))
            Op1 = result;
        else
            MsgBox(QStringLiteral("The result is too large for the calculator."), vb::vbExclamation,
                   QStringLiteral("Calculator"));
        ShowNumber(Op1);
        NumOps = 1;
        break;
    }
    default:
        break;
    }
    if (LastInput != QStringLiteral("NEG")) {
        LastInput = QStringLiteral("OPS");
        OpFlag = caption;
    }
}

void frmCalculator::Percent_Click() {
    ShowNumber(ValueOf(Readout()) / 100);
    LastInput = QStringLiteral("Ops");
    OpFlag = QStringLiteral("%");
    ++NumOps;
    DecimalFlag = true;
}

void frmCalculator::CancelEntry_Click() {
    lblReadout->setText(QStringLiteral("0."));
    DecimalFlag = false;
    LastInput = QStringLiteral("CE");
}

void frmCalculator::Cancel_Click() {
    lblReadout->setText(QStringLiteral("0."));
    Op2 = 0;
    Form_Load();
}

void frmCalculator::Backspace_Click() {
    // Only a number being typed loses its last digit; a result stays as it is.
    if (LastInput != QStringLiteral("NUMS"))
        return;
    QString readout = Readout();
    const int point = readout.indexOf(QLatin1Char('.'));
    if (DecimalFlag && point >= 0 && point < readout.size() - 1) {
        readout.chop(1);
    } else if (DecimalFlag) {
        DecimalFlag = false;
    } else if (point > 0) {
        readout.remove(point - 1, 1);
    }
    if (readout == QStringLiteral(".") || readout == QStringLiteral("-."))
        readout = QStringLiteral("0.");
    lblReadout->setText(readout);
}

void frmCalculator::cmdOK_Click() {
    hide();
    const QString text = ResultText(Readout());
    if (auto* field = qobject_cast<QLineEdit*>(mTarget.data())) {
        field->setText(QString());
        for (const QChar ch : text)
            TypeCharacter(field, ch);
    }
    gcCalculatorValue = Currency();
    accept();
}

void frmCalculator::cmdCancel_Click() {
    reject();
}

void frmCalculator::reject() {
    gcCalculatorValue = Currency();
    QDialog::reject();
}

bool frmCalculator::Form_KeyPress(int keyAscii) {
    if (keyAscii >= '0' && keyAscii <= '9') {
        Number_Click(keyAscii - '0');
    } else if (keyAscii == '/' || keyAscii == 111) {
        Operator_Click(0);
    } else if (keyAscii == '+' || keyAscii == 107) {
        Operator_Click(1);
    } else if (keyAscii == '*' || keyAscii == 106) {
        Operator_Click(2);
    } else if (keyAscii == '-' || keyAscii == 109) {
        Operator_Click(3);
    } else if (keyAscii == 13 || keyAscii == '=') {
        Operator_Click(4);
    } else if (keyAscii == '%') {
        Percent_Click();
    } else if (keyAscii == '.' || keyAscii == 110) {
        Decimal_Click();
    } else if (keyAscii == 'C' || keyAscii == 'c' || keyAscii == 12) {
        Cancel_Click();
    } else if (keyAscii == 112) {
        Help::ShowTopic(Help::ContextOf(QApplication::focusWidget()));
    } else {
        return false;
    }
    return true;
}

bool frmCalculator::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() != QEvent::KeyPress)
        return QDialog::eventFilter(watched, event);
    auto* key = static_cast<QKeyEvent*>(event);
    switch (key->key()) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
        return Form_KeyPress(13); // "=", not the button that has the focus
    case Qt::Key_Escape:
        cmdCancel_Click();
        return true;
    case Qt::Key_Backspace:
        Backspace_Click();
        return true;
    case Qt::Key_Delete:
        CancelEntry_Click();
        return true;
    case Qt::Key_L:
        if (key->modifiers() & Qt::ControlModifier)
            return Form_KeyPress(12);
        break;
    default:
        break;
    }
    if (key->modifiers() & (Qt::ControlModifier | Qt::AltModifier))
        return false; // access keys and shortcuts
    const QString text = key->text();
    return text.size() == 1 && Form_KeyPress(text.at(0).unicode());
}
