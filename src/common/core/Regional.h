#pragma once

#include "Currency.h"

#include <QDate>
#include <QDateTime>
#include <QString>
#include <QVariant>
#include <optional>

// The program's regional conventions, fixed to the United States in this one place.
//
// Values travel as QVariant: a null QVariant is Null, QDate a date, QDateTime a date with a
// time, Currency money, double/int/qint64 numbers, bool a Boolean, QString text.
namespace Regional {

// --- dates ---------------------------------------------------------------------------
// A text is a date when it reads as m/d/yyyy, m/d/yy, m/d (this year, from the clock),
// yyyy-mm-dd, or with an English month name ("March 5, 2026", "5-Mar-26", "Mar 5 2026"),
// with years 100 to 9999; two-digit years 00-29 are 20xx and 30-99 are 19xx.
std::optional<QDate> ParseDate(const QString& text);
} // namespace Regional

// The old conversion functions.
bool IsDate(const QVariant& value);        // a QDate/QDateTime, or text that ParseDate reads
QDate CDate(const QVariant& value);        // raises 13 (Type mismatch) when not a date
bool IsNumeric(const QVariant& value);     // numbers, or text that CDbl reads
double CDbl(const QVariant& value);        // text may carry "$", commas, a leading minus or
                                           // parentheses; raises 13 otherwise
Currency CCur(const QVariant& value);      // as CDbl, exact to the fourth decimal
bool CBool(const QVariant& value);         // numbers: non-zero; text "True"/"False" or a number
QString CStr(const QVariant& value);       // the default text of a value (see Regional.cpp)
double Val(const QString& text);           // leading number of a text, 0 when none

// Format(value, pattern) for every pattern the program uses:
//   dates:   "mm/dd/yyyy", "yyyy-mm-dd", "yyyymmddhhnnss", "dd-mmm-yy hh:mm:ss", "mmmm",
//            "mmmm d, yyyy", "w" (weekday number, Sunday = 1)
//   numbers: "$0.00", "0.00", "#,##0"
// A text value is converted first (a date for date patterns, a number for number patterns);
// a value that doesn't convert is returned as its text, as the old Format did.
QString Format(const QVariant& value, const QString& pattern);
// The currency format of the regional settings: $#,##0.00, negatives as ($#,##0.00).
QString FormatCurrency(const QVariant& value);

// The pattern operator: "*" any text, "?" one character, "#" one digit, "[abc]", "[a-z]",
// "[!abc]" sets. An unclosed "[" raises error 93 (Invalid pattern string).
bool Like(const QString& text, const QString& pattern);
