#include "reports/ReportLayout.h"

#include "common/core/Currency.h"
#include "common/core/Regional.h"
#include "common/core/modUtilities.h"
#include "common/ui/ReportHooks.h"
#include "data/Recordset.h"
#include "reports/RtfDocument.h"

#include <QStringList>

namespace {
const QString kFont = QStringLiteral("Arial");
const QString kLineEnd = QStringLiteral("\r\n");
constexpr int kValueTab = 2880; // twips: two inches

enum class Kind { Head, Plain, Folded, Money, Rejected };

struct RecordLine {
    Kind kind;
    const char* text;
    const char* field;
};

constexpr RecordLine kRecordLines[] = {
    {Kind::Head, "Rebate Contact Info", nullptr},
    {Kind::Plain, "Rebate Name: ", "RebateName"},
    {Kind::Plain, "Exp Date: ", "ExpDate"},
    {Kind::Folded, "Address: ", "Address"},
    {Kind::Plain, "Phone Number: ", "PhoneNumber"},
    {Kind::Plain, "E-mail Address: ", "Email"},
    {Kind::Plain, "Web Site: ", "WebSite"},
    {Kind::Folded, "Remarks: ", "Remarks"},
    {Kind::Head, "Product Information", nullptr},
    {Kind::Plain, "Product Name: ", "ProductName"},
    {Kind::Plain, "Date Purchased: ", "DatePurchased"},
    {Kind::Folded, "Place Purchased: ", "LocationPurchased"},
    {Kind::Money, "Purchase Price: ", "PurchasePrice"},
    {Kind::Money, "Coupon Amount: ", "CouponAmount"},
    {Kind::Money, "Rebate Amount: ", "RebateAmount"},
    {Kind::Head, "Submission Info", nullptr},
    {Kind::Plain, "Date Sent: ", "DateSent"},
    {Kind::Money, "Postage Price: ", "PostagePrice"},
    {Kind::Plain, "Date Due: ", "DateDue"},
    {Kind::Plain, "Date Received: ", "DateReceived"},
    {Kind::Money, "Amount Received: ", "AmountReceived"},
    {Kind::Plain, "Followup Date: ", "FollowupDate"},
    {Kind::Money, "Followup Postage: ", "FollowupPostage"},
    {Kind::Rejected, "Rejected: ", "Rejected"},
    {Kind::Plain, "Reason Rejected: ", "ReasonRejected"},
};

// A multi-line field becomes one paragraph: each line end is replaced with ", ".
QString Folded(const QVariant& value) {
    QString text = CStr(NZ(value, QString()));
    text.replace(QLatin1String("\r\n"), QLatin1String(", "));
    text.replace(QLatin1Char('\r'), QLatin1String(", "));
    text.replace(QLatin1Char('\n'), QLatin1String(", "));
    return text;
}

QString ValueText(Kind kind, const QVariant& value) {
    switch (kind) {
    case Kind::Folded:
        return Folded(value);
    case Kind::Money:
        return Format(NZ(value), QStringLiteral("$0.00"));
    case Kind::Rejected:
        return !IsBlank(value) && CBool(value) ? QStringLiteral("Yes") : QString();
    default:
        return CStr(value);
    }
}

void AppendHead(RtfDocument& document, const QString& lineEnds, const QString& text) {
    document.SetBold(true);
    document.SetUnderline(true);
    document.Append(lineEnds + text);
    document.SetBold(false);
    document.SetUnderline(false);
}
} // namespace

const StatisticsRow kStatisticsRows[18] = {
    {StatisticsRow::Source::Header, 0, -1, 0},   {StatisticsRow::Source::Caption, 0, 0, 2},
    {StatisticsRow::Source::Caption, 2, 2, 3},   {StatisticsRow::Source::Caption, 3, 3, 2},
    {StatisticsRow::Source::Header, 3, 12, 3},   {StatisticsRow::Source::Header, 1, -1, 0},
    {StatisticsRow::Source::Caption, 4, 4, 2},   {StatisticsRow::Source::Caption, 11, 11, 2},
    {StatisticsRow::Source::Header, 4, 13, 4},   {StatisticsRow::Source::Caption, 1, 1, 2},
    {StatisticsRow::Source::Caption, 12, 14, 3}, {StatisticsRow::Source::Header, 2, -1, 0},
    {StatisticsRow::Source::Caption, 5, 5, 2},   {StatisticsRow::Source::Caption, 6, 6, 1},
    {StatisticsRow::Source::Caption, 7, 7, 2},   {StatisticsRow::Source::Caption, 8, 8, 2},
    {StatisticsRow::Source::Caption, 9, 9, 3},   {StatisticsRow::Source::Caption, 10, 10, 2},
};

QString StatisticsCaption(const StatisticsSheet& sheet, const StatisticsRow& row) {
    const auto index = static_cast<size_t>(row.caption);
    return row.source == StatisticsRow::Source::Header ? sheet.headers.at(index)
                                                       : sheet.captions.at(index);
}

QString StatisticsRowText(const StatisticsSheet& sheet, const StatisticsRow& row) {
    return StatisticsCaption(sheet, row) + QLatin1Char(' ') + QString(row.tabs, QLatin1Char('\t')) +
           sheet.figures.at(static_cast<size_t>(row.figure));
}

QStringList ClosingLines(const StatisticsSheet& sheet) {
    // What was spent less what came back, both read from the page as money.
    const Currency spent = CCur(sheet.figures[12]) - CCur(sheet.figures[14]);
    return {QStringLiteral("Congratulations!"),
            QStringLiteral("You've purchased ") + sheet.figures[12] + QStringLiteral(" worth of"),
            QStringLiteral("products, and you only had to spend ") +
                FormatCurrency(QVariant::fromValue(spent)),
            QStringLiteral("of your hard earned money!")};
}

QString StatisticsTitle(const QDateTime& now) {
    return QStringLiteral("Vantry! Vantry! Statistics as of ") + CStr(now);
}

void AddRecordToRTF(RtfDocument& document, const Recordset& rs) {
    // The tab stop and hanging indent go on every paragraph of this record, title included.
    const int first = document.ParagraphCount() - 1;

    document.SetFontName(kFont);
    document.SetBold(true);
    document.SetFontSize(12);
    document.SetAlignment(RtfDocument::Alignment::Center);
    document.Append(CStr(rs.Fields(QStringLiteral("RebateName"))));

    document.SetAlignment(RtfDocument::Alignment::Left);
    document.SetFontName(kFont);
    document.SetFontSize(10);
    document.SetBold(false);
    for (const RecordLine& line : kRecordLines) {
        const QString text = QString::fromUtf8(line.text);
        if (line.kind == Kind::Head) {
            AppendHead(document, kLineEnd + kLineEnd, text);
            continue;
        }
        const QVariant value = rs.Fields(QString::fromLatin1(line.field));
        document.Append(kLineEnd + text + QLatin1Char('\t') + ValueText(line.kind, value));
    }
    document.Append(kLineEnd + kLineEnd);
    document.SetTabsAndHangingIndent(first, {kValueTab}, kValueTab);
}

void AddStatisticsToRTF(RtfDocument& document, const StatisticsSheet& sheet, const QDateTime& now) {
    document.SetFontName(kFont);
    document.SetBold(true);
    document.SetFontSize(12);
    document.Append(StatisticsTitle(now) + kLineEnd + kLineEnd);
    document.SetBold(false);

    document.SetFontName(kFont);
    document.SetFontSize(10);
    bool firstHead = true;
    for (const StatisticsRow& row : kStatisticsRows) {
        if (row.figure < 0) {
            AppendHead(document, firstHead ? kLineEnd : kLineEnd + kLineEnd,
                       StatisticsCaption(sheet, row));
            firstHead = false;
        } else {
            document.Append(kLineEnd + StatisticsRowText(sheet, row));
        }
    }

    document.Append(kLineEnd);
    document.SetFontSize(12);
    document.SetBold(true);
    document.SetAlignment(RtfDocument::Alignment::Center);
    QString closing = kLineEnd;
    for (const QString& line : ClosingLines(sheet))
        closing += kLineEnd + line;
    document.Append(closing);
}
