#pragma once

#include "common/core/Currency.h"

#include <QDate>
#include <QDateTime>
#include <QString>
#include <QVariant>
#include <optional>
#include <utility>
#include <vector>

// The program's regional conventions, fixed to the United States in this one place.
//
// Values travel as QVariant: a null QVariant is Null, QDate a date, QDateTime a date with a
// time, Currency money, double/int/qint64 numbers, bool a Boolean, QString text.
namespace Regional {

// --- dates ---------------------------------------------------------------------------
// A text is a date when it reads as m/d/yyyy, m/d/yy, m/d (this year, from the clock),
// yyyy-mm-dd, or with an English month name ("March 5, 2026", "5-Mar-26", "Mar 5 2026",
// "March 2026"), with years 100 to 9999; two-digit years 00-29 are 20xx and 30-99 are 19xx.
// "-" and "." may stand for "/". Blanks around the text are allowed, and so is a time of day
// after the date ("3/5/2026 2:07 PM", "2026-03-05 14:07:09").
std::optional<QDate> ParseDate(const QString& text);

// --- money ---------------------------------------------------------------------------
// Money text: blanks around it, an optional "$", thousands commas in the whole part, a
// leading "-" or surrounding parentheses for a negative ("$1,234.5", "(2.00)", "-$3").
// Exact: the text is read as a decimal and rounded half to even at the fourth decimal.
// Nothing when the text isn't such a number; raises 6 (Overflow) beyond the currency range.
std::optional<Currency> ParseCurrency(const QString& text);

// --- the pattern operator --------------------------------------------------------------
// A compiled pattern for matching many texts against one pattern (a search over every row
// of a list). Time is linear in the text for each "*" of the pattern; nothing backtracks
// further than the last "*".
class LikePattern {
public:
    // Raises 93 (Invalid pattern string) for an unclosed "[" or a descending range.
    explicit LikePattern(const QString& pattern);
    bool Matches(const QString& text) const;

private:
    struct Token {
        enum Kind : quint8 { Literal, AnyChar, Digit, Set, Star } kind;
        bool negated = false;                   // Set: matches a character outside the ranges
        char16_t ch = 0;                        // Literal
        quint32 firstRange = 0, rangeCount = 0; // Set: slice of mRanges
    };
    bool MatchesOne(const Token& token, char16_t c) const;

    std::vector<Token> mTokens;
    std::vector<std::pair<char16_t, char16_t>> mRanges; // inclusive bounds
};

} // namespace Regional

// The old conversion functions. Null in, where a value is needed, raises 94 (Invalid use of
// Null); a value of the wrong kind raises 13 (Type mismatch).
bool IsDate(const QVariant& value);    // a QDate/QDateTime, or text that ParseDate reads
QDate CDate(const QVariant& value);    // dates, date text, numbers as day serials (0 = 12/30/1899)
bool IsNumeric(const QVariant& value); // numbers, Booleans, or text that CDbl reads
bool IsNumberType(int typeId);
// value & "" = "": Null and an empty text alike, whatever the value's type, without building
// the value's text.
bool IsBlank(const QVariant& value);  // a QVariant type of plain numbers: integers, double, float
double CDbl(const QVariant& value);   // text as ParseCurrency reads it, without the rounding
Currency CCur(const QVariant& value); // as CDbl, exact to the fourth decimal
bool CBool(const QVariant& value);    // numbers: non-zero; text "True"/"False" or a number
// The default text of a value: dates "3/5/2026", date-times "3/5/2026 2:07:09 PM" (a midnight
// time shows the date alone), Booleans "True"/"False", numbers with up to 15 significant
// digits ("12.5", "0.32", "-3", "1E+20"), Currency its plain decimal, Null "".
QString CStr(const QVariant& value);
// The number at the start of a text, 0 when none: blanks, tabs and line feeds anywhere are
// skipped, then a sign, digits, one ".", an exponent; "$" or a letter ends it. Raises 6 when
// the number is out of the double range.
double Val(const QString& text);

// Format(value, pattern).
//   Date patterns, made of d dd ddd dddd w m mm mmm mmmm q y yy yyyy h hh n nn s ss and
//   AM/PM, am/pm, A/P, a/p ("m" after an hour is the minute; with AM/PM the hour counts
//   1-12): "mm/dd/yyyy", "yyyy-mm-dd", "yyyymmddhhnnss", "dd-mmm-yy hh:mm:ss", "mmmm",
//   "mmmm d, yyyy", "w" (weekday, Sunday = 1), "yyyy", "mm".
//   Number patterns, made of literal text, "0" and "#" digits, "," for thousands groups and
//   "." for the decimals, up to three sections "positive;negative;zero": "$0.00", "0.00",
//   "#,##0", "0.". Rounding is half away from zero on the decimal value. A negative without
//   its own section gets a leading "-" ("-$12.50"); one that rounds to zero shows none.
// A text value is converted first (a date for date patterns, a number for number patterns);
// a value that doesn't convert is returned as its text, as the old Format did. Null gives ""
// and an empty pattern gives CStr(value).
QString Format(const QVariant& value, const QString& pattern);
// The currency format of the regional settings: $#,##0.00, negatives as ($#,##0.00).
QString FormatCurrency(const QVariant& value);

// The pattern operator, case-sensitive: "*" any text, "?" one character, "#" one digit,
// "[abc]", "[a-z]", "[!a-z]" sets ("-" first or last in a set, and "[" in it, are literal;
// "[]" matches the empty string). An unclosed "[" or a descending range raises 93.
bool Like(const QString& text, const QString& pattern);
