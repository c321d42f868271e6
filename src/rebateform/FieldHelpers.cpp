#include "rebateform/FieldHelpers.h"

#include "app/AppSettings.h"
#include "common/core/Clock.h"
#include "common/core/Regional.h"
#include "common/core/VbError.h"
#include "common/ui/Forms.h"
#include "rebateform/FieldEdit.h"

#include <QGuiApplication>

FieldClass ClassOf(const QString& dataField) {
    static const QStringList dates = {
        QStringLiteral("DateSent"),     QStringLiteral("DateReceived"),  QStringLiteral("DateDue"),
        QStringLiteral("FollowupDate"), QStringLiteral("DatePurchased"), QStringLiteral("ExpDate")};
    // "AmountDue" names no field of the form; it stays in the list all the same.
    static const QStringList amounts = {
        QStringLiteral("AmountDue"),      QStringLiteral("RebateAmount"),
        QStringLiteral("PurchasePrice"),  QStringLiteral("PostagePrice"),
        QStringLiteral("AmountReceived"), QStringLiteral("FollowupPostage"),
        QStringLiteral("CouponAmount")};
    if (dates.contains(dataField))
        return FieldClass::Date;
    if (amounts.contains(dataField))
        return FieldClass::Currency;
    if (dataField == QLatin1String("PhoneNumber"))
        return FieldClass::Phone;
    return FieldClass::Text;
}

QDate DateShortcut(int keyAscii, const QString& baseDate) {
    const QDate today = Date();
    switch (keyAscii) {
    case 'T':
    case 't':
        return today;
    case 'Y':
    case 'y':
        return today.addDays(-1);
    case '+':
    case '=':
        return baseDate.isEmpty() ? today : CDate(baseDate).addDays(1);
    case '-':
    case '_':
        return baseDate.isEmpty() ? today : CDate(baseDate).addDays(-1);
    default:
        return today;
    }
}

Currency GetDefaultPostage() {
    return ReadMoney(Setting::Postage);
}

bool IsAlpha(QChar letter) {
    const char16_t c = letter.toLower().unicode();
    return (c >= u'a' && c <= u'z') || (c >= u'\u00e0' && c <= u'\u00ff');
}

int LetterToDigit(QChar letter) {
    const char16_t lower = letter.toLower().unicode();
    if (lower < u'a' || lower > u'y')
        throw VbError(VbError::TypeMismatch);
    if (letter == u'q')
        return 0;
    int code = letter.toUpper().unicode();
    if (code > 'Q')
        --code;
    return (code - 'A') / 3 + 2;
}

bool IsCurrency(QString& text) {
    if (text.isEmpty())
        return true;
    try {
        text = CStr(QVariant::fromValue(CCur(text)));
        return true;
    } catch (const VbError&) {
        return false;
    }
}

void SelectOnFocus(FieldEdit* field) {
    const Qt::FocusReason reason = field->LastFocusReason();
    const bool byKey = reason == Qt::TabFocusReason || reason == Qt::BacktabFocusReason ||
                       reason == Qt::ShortcutFocusReason ||
                       (QGuiApplication::keyboardModifiers() & Qt::AltModifier);
    if (!byKey) {
        field->deselect();
        return;
    }
    const int length = static_cast<int>(field->text().length());
    if (field->fontMetrics().horizontalAdvance(field->text()) > field->contentsRect().width()) {
        // Selected from the end back to the start, so the start stays in view.
        CaretToEnd(field);
        field->home(true);
    } else {
        field->setSelection(0, length);
    }
}

void SelectAllText(FieldEdit* field) {
    field->setFocus(Qt::OtherFocusReason);
    DoEvents();
    if (!field->hasSelectedText())
        field->setSelection(0, static_cast<int>(field->text().length()));
}

void CaretToEnd(QLineEdit* field) {
    field->setCursorPosition(static_cast<int>(field->text().length()));
}
