#include "common/core/Regional.h"

#include "common/core/Clock.h"
#include "common/core/VbError.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <string>

namespace {

const char* const kMonthNames[12] = {"January",   "February", "March",    "April",
                                     "May",       "June",     "July",     "August",
                                     "September", "October",  "November", "December"};
const char* const kDayNames[7] = {"Sunday",   "Monday", "Tuesday", "Wednesday",
                                  "Thursday", "Friday", "Saturday"};

bool IsAsciiDigit(QChar c) {
    return c >= QLatin1Char('0') && c <= QLatin1Char('9');
}

// --- values ------------------------------------------------------------------------------

bool IsCurrencyValue(const QVariant& value) {
    return value.metaType() == QMetaType::fromType<Currency>();
}

// Null is a null QVariant; an invalid date stands for Null too, so that a Null date column
// read into a QDate behaves as the empty value it is.
bool IsNullValue(const QVariant& value) {
    if (value.isNull())
        return true;
    if (value.typeId() == QMetaType::QDate)
        return !value.toDate().isValid();
    if (value.typeId() == QMetaType::QDateTime)
        return !value.toDateTime().isValid();
    return false;
}

bool IsNumberValue(const QVariant& value) {
    return IsNumberType(value.typeId());
}

bool IsIntegerValue(const QVariant& value) {
    return IsNumberValue(value) && value.typeId() != QMetaType::Double &&
           value.typeId() != QMetaType::Float;
}

bool IsDateValue(const QVariant& value) {
    return value.typeId() == QMetaType::QDate || value.typeId() == QMetaType::QDateTime;
}

bool IsTextValue(const QVariant& value) {
    return value.typeId() == QMetaType::QString;
}

// A date and a time of day, as the old Date type held them: no time zone, so no local
// QDateTime (whose every construction consults the zone) stands between a date and its text.
struct Moment {
    QDate date;
    QTime time{0, 0};
};

// The moment of a QDate or QDateTime value.
Moment MomentOf(const QVariant& value) {
    if (value.typeId() == QMetaType::QDate)
        return {value.toDate()};
    const QDateTime dateTime = value.toDateTime();
    return {dateTime.date(), dateTime.time()};
}

// --- day serials: days since 12/30/1899, the time of day as the fraction -------------------

const QDate& SerialBase() {
    static const QDate base(1899, 12, 30);
    return base;
}

double ToSerial(const Moment& moment) {
    const double days = static_cast<double>(SerialBase().daysTo(moment.date));
    const double time = moment.time.msecsSinceStartOfDay() / 86400000.0;
    // A day before the base counts down while its time still runs forward: -1.25 is
    // 12/29/1899 06:00.
    return days < 0 ? days - time : days + time;
}

std::optional<Moment> FromSerial(double serial) {
    if (!std::isfinite(serial) || std::fabs(serial) > 3000000.0)
        return std::nullopt;
    const double days = std::trunc(serial);
    const double fraction = std::fabs(serial - days);
    const QDate date = SerialBase().addDays(static_cast<qint64>(days));
    if (date.year() < 100 || date.year() > 9999)
        return std::nullopt;
    const auto msecs = static_cast<int>(std::llround(fraction * 86400000.0));
    if (msecs >= 86400000)
        return Moment{date.addDays(1)};
    return Moment{date, QTime::fromMSecsSinceStartOfDay(msecs)};
}

// --- date text ---------------------------------------------------------------------------

struct DateToken {
    bool isNumber;
    QString text;
};

int MonthFromName(const QString& word) {
    const QString lower = word.toLower();
    if (lower == QLatin1String("sept"))
        return 9;
    for (int i = 0; i < 12; ++i) {
        const QString name = QString::fromLatin1(kMonthNames[i]).toLower();
        if (lower == name || (lower.size() == 3 && name.startsWith(lower)))
            return i + 1;
    }
    return 0;
}

// Years of one or two digits fall in 1930-2029; three or four digits are taken as written.
std::optional<int> YearFrom(const QString& digits) {
    if (digits.size() > 4)
        return std::nullopt;
    const int value = digits.toInt();
    if (digits.size() <= 2)
        return value < 30 ? 2000 + value : 1900 + value;
    if (value < 100 || value > 9999)
        return std::nullopt;
    return value;
}

std::optional<QDate> MakeDate(std::optional<int> year, int month, const QString& dayText) {
    if (!year || dayText.size() > 2)
        return std::nullopt;
    const QDate date(*year, month, dayText.toInt());
    if (!date.isValid())
        return std::nullopt;
    return date;
}

std::optional<QDate> MakeDate(std::optional<int> year, const QString& monthText,
                              const QString& dayText) {
    if (monthText.size() > 2)
        return std::nullopt;
    return MakeDate(year, monthText.toInt(), dayText);
}

// The date part: numbers only, joined by one kind of separator, or one month name among
// numbers with any separators.
std::optional<QDate> ParseDatePart(const QString& text) {
    QList<DateToken> tokens;
    QString numberSeparators; // the separators between tokens of an all-number date
    bool blankSeparated = false;
    for (qsizetype i = 0; i < text.size();) {
        const QChar c = text.at(i);
        if (IsAsciiDigit(c) || c.isLetter()) {
            const bool number = IsAsciiDigit(c);
            qsizetype end = i;
            while (end < text.size() &&
                   (number ? IsAsciiDigit(text.at(end)) : text.at(end).isLetter()))
                ++end;
            tokens.append({number, text.mid(i, end - i)});
            i = end;
            continue;
        }
        if (tokens.isEmpty())
            return std::nullopt; // a separator in front of everything
        qsizetype end = i;
        QString run;
        while (end < text.size() && !IsAsciiDigit(text.at(end)) && !text.at(end).isLetter()) {
            const QChar s = text.at(end);
            if (s.isSpace())
                blankSeparated = true;
            else if (s == QLatin1Char('/') || s == QLatin1Char('-') || s == QLatin1Char('.') ||
                     s == QLatin1Char(','))
                run += s;
            else
                return std::nullopt;
            ++end;
        }
        if (end == text.size())
            return std::nullopt; // a separator with nothing behind it
        numberSeparators += run.size() == 1 ? run : QStringLiteral("?");
        i = end;
    }

    QList<int> words;
    for (int i = 0; i < tokens.size(); ++i) {
        if (!tokens.at(i).isNumber)
            words.append(i);
    }

    if (words.isEmpty()) {
        // m/d, m/d/y or y/m/d with one separator kind throughout.
        if (tokens.size() < 2 || tokens.size() > 3 || blankSeparated)
            return std::nullopt;
        for (const QChar s : numberSeparators) {
            if (s != numberSeparators.front() || s == QLatin1Char(',') || s == QLatin1Char('?'))
                return std::nullopt;
        }
        const QString& first = tokens.at(0).text;
        if (tokens.size() == 2)
            return MakeDate(Date().year(), first, tokens.at(1).text);
        if (first.size() >= 3)
            return MakeDate(YearFrom(first), tokens.at(1).text, tokens.at(2).text);
        return MakeDate(YearFrom(tokens.at(2).text), first, tokens.at(1).text);
    }

    if (words.size() != 1 || tokens.size() < 2 || tokens.size() > 3)
        return std::nullopt;
    const int month = MonthFromName(tokens.at(words.front()).text);
    if (month == 0)
        return std::nullopt;
    const auto isYear = [](const QString& digits) {
        return digits.size() >= 3;
    };
    const auto number = [&](int index) {
        return tokens.at(index).text;
    };
    if (tokens.size() == 2) {
        const QString other = number(words.front() == 0 ? 1 : 0);
        if (isYear(other)) // "March 2026": the first of the month
            return MakeDate(YearFrom(other), month, QStringLiteral("1"));
        return MakeDate(Date().year(), month, other);
    }
    switch (words.front()) {
    case 0: // March 5, 2026
        return MakeDate(YearFrom(number(2)), month, number(1));
    case 1: // 5-Mar-26, or 2026-Mar-05
        if (isYear(number(0)))
            return MakeDate(YearFrom(number(0)), month, number(2));
        return MakeDate(YearFrom(number(2)), month, number(0));
    default:
        return std::nullopt;
    }
}

// A time of day: h:mm or h:mm:ss, 0-23 hours, or 1-12 with AM/PM (or A/P) after it.
std::optional<QTime> ParseTimePart(const QString& text) {
    QString rest = text.trimmed();
    int meridiem = 0; // 1 AM, 2 PM
    const QString upper = rest.toUpper();
    for (const auto& [suffix, kind] :
         {std::pair{QStringLiteral("AM"), 1}, std::pair{QStringLiteral("PM"), 2},
          std::pair{QStringLiteral("A"), 1}, std::pair{QStringLiteral("P"), 2}}) {
        if (upper.endsWith(suffix)) {
            meridiem = kind;
            rest = rest.left(rest.size() - suffix.size()).trimmed();
            break;
        }
    }
    const QStringList parts = rest.split(QLatin1Char(':'));
    if (parts.size() < 2 || parts.size() > 3)
        return std::nullopt;
    int fields[3] = {0, 0, 0};
    for (int i = 0; i < parts.size(); ++i) {
        const QString& part = parts.at(i);
        if (part.isEmpty() || part.size() > 2 ||
            !std::all_of(part.begin(), part.end(), IsAsciiDigit))
            return std::nullopt;
        fields[i] = part.toInt();
    }
    int hour = fields[0];
    if (meridiem != 0) {
        if (hour < 1 || hour > 12)
            return std::nullopt;
        hour = hour % 12 + (meridiem == 2 ? 12 : 0);
    }
    const QTime time(hour, fields[1], fields[2]);
    if (!time.isValid())
        return std::nullopt;
    return time;
}

// A date, optionally followed by a time of day, which must be a valid one.
std::optional<Moment> ParseMoment(const QString& text) {
    const QString trimmed = text.trimmed();
    if (trimmed.isEmpty())
        return std::nullopt;
    // The time, when there is one, starts at the number in front of the first ":".
    QString datePart = trimmed;
    QTime time(0, 0);
    const qsizetype colon = trimmed.indexOf(QLatin1Char(':'));
    if (colon >= 0) {
        qsizetype start = colon;
        while (start > 0 && IsAsciiDigit(trimmed.at(start - 1)))
            --start;
        if (start == 0 || start == colon || !trimmed.at(start - 1).isSpace())
            return std::nullopt;
        const auto parsed = ParseTimePart(trimmed.mid(start));
        if (!parsed)
            return std::nullopt;
        time = *parsed;
        datePart = trimmed.left(start).trimmed();
    }
    const auto date = ParseDatePart(datePart);
    if (!date)
        return std::nullopt;
    return Moment{*date, time};
}

// --- decimal numbers ------------------------------------------------------------------------

// A decimal value: the ASCII digits times ten to the power of minus scale.
struct Decimal {
    bool negative = false;
    std::string digits;
    int scale = 0;

    bool IsZero() const { return digits.find_first_not_of('0') == std::string::npos; }

    // At least one digit in front of the decimal point.
    void PadLeft() {
        const size_t needed = static_cast<size_t>(std::max(scale, 0)) + 1;
        if (digits.size() < needed)
            digits.insert(0, needed - digits.size(), '0');
    }

    void ShiftLeft(int places) { // times ten to the power of places
        const int fromScale = std::min(places, scale);
        scale -= fromScale;
        digits.append(static_cast<size_t>(places - fromScale), '0');
    }

    // To the given number of decimals, a half going away from zero.
    void RoundHalfAway(int decimals) {
        PadLeft();
        if (scale <= decimals) {
            digits.append(static_cast<size_t>(decimals - scale), '0');
            scale = decimals;
            return;
        }
        const size_t keep = digits.size() - static_cast<size_t>(scale - decimals);
        const bool up = digits[keep] >= '5';
        digits.erase(keep);
        scale = decimals;
        if (!up)
            return;
        for (size_t i = digits.size(); i-- > 0;) {
            if (digits[i] != '9') {
                ++digits[i];
                return;
            }
            digits[i] = '0';
        }
        digits.insert(digits.begin(), '1');
    }

    QString WholePart() const { // without leading zeros; "" for zero
        const size_t wholeDigits = digits.size() - static_cast<size_t>(scale);
        const size_t first = digits.find_first_not_of('0');
        if (first == std::string::npos || first >= wholeDigits)
            return {};
        return QString::fromLatin1(digits.data() + first,
                                   static_cast<qsizetype>(wholeDigits - first));
    }
    QString Fraction() const {
        return QString::fromLatin1(digits.data() + digits.size() - static_cast<size_t>(scale),
                                   scale);
    }
};

std::optional<Decimal> DecimalFromDouble(double value) {
    if (!std::isfinite(value))
        return std::nullopt;
    Decimal result;
    result.negative = value < 0;
    // Fifteen significant digits, as the old engine converted a double to decimal text.
    const QString text = QString::number(std::fabs(value), 'e', 14); // "d.dddddddddddddde+XX"
    const qsizetype e = text.indexOf(QLatin1Char('e'));
    const int exponent = text.mid(e + 1).toInt();
    result.digits = (text.left(1) + text.mid(2, e - 2)).toStdString();
    result.scale = 14 - exponent;
    if (result.scale < 0) {
        result.digits.append(static_cast<size_t>(-result.scale), '0');
        result.scale = 0;
    }
    while (result.scale > 0 && result.digits.back() == '0') {
        result.digits.pop_back();
        --result.scale;
    }
    return result;
}

Decimal DecimalFromInteger(qint64 value) {
    Decimal result;
    result.negative = value < 0;
    result.digits = std::to_string(value < 0 ? static_cast<std::uint64_t>(-(value + 1)) + 1
                                             : static_cast<std::uint64_t>(value));
    return result;
}

Decimal DecimalFromCurrency(Currency value) {
    Decimal result = DecimalFromInteger(value.Raw());
    result.scale = 4;
    return result;
}

// Money text as the regional settings read it (see ParseCurrency).
std::optional<Decimal> ParseDecimal(const QString& text) {
    QStringView s = QStringView(text).trimmed();
    Decimal result;
    bool parenthesized = false;
    if (s.size() >= 2 && s.front() == QLatin1Char('(') && s.back() == QLatin1Char(')')) {
        parenthesized = true;
        result.negative = true;
        s = s.mid(1, s.size() - 2).trimmed();
    }
    qsizetype i = 0;
    bool signSeen = parenthesized;
    bool dollarSeen = false;
    while (i < s.size()) {
        const QChar c = s.at(i);
        if ((c == QLatin1Char('-') || c == QLatin1Char('+')) && !signSeen) {
            signSeen = true;
            result.negative = c == QLatin1Char('-');
        } else if (c == QLatin1Char('$') && !dollarSeen) {
            dollarSeen = true;
        } else if (!(c.isSpace() && (signSeen || dollarSeen))) {
            break;
        }
        ++i;
    }
    bool point = false;
    bool anyDigit = false;
    QChar previous;
    for (; i < s.size(); ++i) {
        const QChar c = s.at(i);
        if (IsAsciiDigit(c)) {
            result.digits.push_back(static_cast<char>(c.unicode()));
            anyDigit = true;
            if (point)
                ++result.scale;
        } else if (c == QLatin1Char(',') && !point && IsAsciiDigit(previous)) {
            // a thousands separator: only between digits of the whole part
        } else if (c == QLatin1Char('.') && !point) {
            point = true;
        } else {
            return std::nullopt;
        }
        previous = c;
    }
    if (!anyDigit || previous == QLatin1Char(','))
        return std::nullopt;
    return result;
}

// Exact, half to even at the fourth decimal; raises 6 beyond the currency range.
Currency CurrencyFromDecimal(Decimal value) {
    value.PadLeft();
    const size_t whole = value.digits.size() - static_cast<size_t>(std::max(0, value.scale - 4));
    std::uint64_t raw = 0;
    const auto push = [&raw](char digit) {
        if (__builtin_mul_overflow(raw, 10u, &raw) ||
            __builtin_add_overflow(raw, static_cast<unsigned>(digit - '0'), &raw))
            throw VbError(VbError::Overflow);
    };
    for (size_t i = 0; i < whole; ++i)
        push(value.digits[i]);
    for (int i = value.scale; i < 4; ++i)
        push('0');
    if (whole < value.digits.size()) {
        const char first = value.digits[whole];
        const bool restZero = value.digits.find_first_not_of('0', whole + 1) == std::string::npos;
        const bool up = first > '5' || (first == '5' && (!restZero || (raw & 1u)));
        if (up && __builtin_add_overflow(raw, 1u, &raw))
            throw VbError(VbError::Overflow);
    }
    const std::uint64_t limit =
        static_cast<std::uint64_t>(std::numeric_limits<std::int64_t>::max()) +
        (value.negative ? 1 : 0);
    if (raw > limit)
        throw VbError(VbError::Overflow);
    if (value.negative)
        return Currency::FromRaw(raw == limit ? std::numeric_limits<std::int64_t>::min()
                                              : -static_cast<std::int64_t>(raw));
    return Currency::FromRaw(static_cast<std::int64_t>(raw));
}

double DoubleFromDecimal(const Decimal& value) {
    QString text = QString::fromStdString(value.digits);
    if (value.scale > 0)
        text += QStringLiteral("e-%1").arg(value.scale);
    bool ok = false;
    const double result = text.toDouble(&ok);
    if (!ok || !std::isfinite(result))
        throw VbError(VbError::Overflow);
    return value.negative ? -result : result;
}

// A value as a decimal number for the number patterns; nothing when it isn't one.
std::optional<Decimal> ToDecimal(const QVariant& value) {
    if (IsCurrencyValue(value))
        return DecimalFromCurrency(value.value<Currency>());
    if (IsIntegerValue(value)) {
        if (value.typeId() == QMetaType::ULongLong &&
            value.toULongLong() > static_cast<qulonglong>(std::numeric_limits<qint64>::max()))
            return DecimalFromDouble(value.toDouble());
        return DecimalFromInteger(value.toLongLong());
    }
    if (IsNumberValue(value))
        return DecimalFromDouble(value.toDouble());
    if (value.typeId() == QMetaType::Bool)
        return DecimalFromInteger(value.toBool() ? -1 : 0);
    if (IsDateValue(value))
        return DecimalFromDouble(ToSerial(MomentOf(value)));
    if (IsTextValue(value))
        return ParseDecimal(value.toString());
    return std::nullopt;
}

// --- number patterns ------------------------------------------------------------------------

struct NumberSection {
    QString prefix;
    QString suffix;
    int wholeZeros = 0;
    bool grouping = false;
    bool point = false;
    int fractionZeros = 0;
    int fractionHashes = 0;
    bool percent = false;
};

// Splits a pattern at the ";" that stand outside quotes.
QStringList SplitSections(const QString& pattern) {
    QStringList sections;
    QString current;
    bool quoted = false;
    for (qsizetype i = 0; i < pattern.size(); ++i) {
        const QChar c = pattern.at(i);
        if (c == QLatin1Char('"'))
            quoted = !quoted;
        else if (c == QLatin1Char('\\') && !quoted && i + 1 < pattern.size())
            current += pattern.at(i++);
        else if (c == QLatin1Char(';') && !quoted) {
            sections.append(current);
            current.clear();
            continue;
        }
        current += c;
    }
    sections.append(current);
    return sections;
}

NumberSection ParseNumberSection(const QString& pattern) {
    NumberSection section;
    bool digitsStarted = false;
    for (qsizetype i = 0; i < pattern.size(); ++i) {
        const QChar c = pattern.at(i);
        QString literal;
        if (c == QLatin1Char('0') || c == QLatin1Char('#')) {
            digitsStarted = true;
            if (section.point)
                (c == QLatin1Char('0') ? section.fractionZeros : section.fractionHashes) += 1;
            else if (c == QLatin1Char('0'))
                ++section.wholeZeros;
            continue;
        }
        if (c == QLatin1Char('.') && !section.point) {
            digitsStarted = true;
            section.point = true;
            continue;
        }
        if (c == QLatin1Char(',') && digitsStarted && !section.point) {
            section.grouping = true;
            continue;
        }
        if (c == QLatin1Char('"')) {
            const qsizetype end = pattern.indexOf(QLatin1Char('"'), i + 1);
            literal = pattern.mid(i + 1, (end < 0 ? pattern.size() : end) - i - 1);
            i = end < 0 ? pattern.size() : end;
        } else if (c == QLatin1Char('\\') && i + 1 < pattern.size()) {
            literal = pattern.at(++i);
        } else {
            if (c == QLatin1Char('%'))
                section.percent = true;
            literal = c;
        }
        (digitsStarted ? section.suffix : section.prefix) += literal;
    }
    return section;
}

// The magnitude as the section shows it: scaled for a percent sign, rounded to its decimals.
Decimal RoundedFor(Decimal value, const NumberSection& section) {
    value.negative = false;
    if (section.percent)
        value.ShiftLeft(2);
    value.RoundHalfAway(section.fractionZeros + section.fractionHashes);
    return value;
}

QString FormatNumberSection(const Decimal& value, const NumberSection& section) {
    QString whole = value.WholePart();
    if (whole.size() < section.wholeZeros)
        whole.prepend(QString(section.wholeZeros - whole.size(), QLatin1Char('0')));
    if (section.grouping) {
        for (qsizetype at = whole.size() - 3; at > 0; at -= 3)
            whole.insert(at, QLatin1Char(','));
    }
    QString fraction = value.Fraction();
    while (fraction.size() > section.fractionZeros && fraction.endsWith(QLatin1Char('0')))
        fraction.chop(1);
    QString text = section.prefix + whole;
    if (section.point)
        text += QLatin1Char('.') + fraction;
    return text + section.suffix;
}

QString FormatNumber(const Decimal& value, const QString& pattern) {
    const QStringList sections = SplitSections(pattern);
    const auto formatWith = [&value](const QString& sectionPattern) {
        const NumberSection section = ParseNumberSection(sectionPattern);
        return FormatNumberSection(RoundedFor(value, section), section);
    };
    if (value.IsZero() && sections.size() >= 3 && !sections.at(2).isEmpty())
        return formatWith(sections.at(2));
    if (value.negative && sections.size() >= 2 && !sections.at(1).isEmpty())
        return formatWith(sections.at(1));
    const NumberSection section = ParseNumberSection(sections.at(0));
    const Decimal rounded = RoundedFor(value, section);
    const QString text = FormatNumberSection(rounded, section);
    // The sign only when something other than zero is left after the rounding.
    return value.negative && !rounded.IsZero() ? QLatin1Char('-') + text : text;
}

// --- date patterns --------------------------------------------------------------------------

bool StartsWithNoCase(const QString& text, qsizetype at, QLatin1String what) {
    return QStringView(text).mid(at, what.size()).compare(what, Qt::CaseInsensitive) == 0;
}

bool IsDatePattern(const QString& pattern) {
    for (qsizetype i = 0; i < pattern.size(); ++i) {
        const QChar c = pattern.at(i);
        if (c == QLatin1Char('"')) {
            const qsizetype end = pattern.indexOf(QLatin1Char('"'), i + 1);
            i = end < 0 ? pattern.size() : end;
        } else if (c == QLatin1Char('\\')) {
            ++i;
        } else if (QStringLiteral("dwmqyhns").contains(c.toLower()) ||
                   StartsWithNoCase(pattern, i, QLatin1String("a/p"))) {
            return true;
        }
    }
    return false;
}

void AppendNumber(QString& out, int value, qsizetype digits) {
    if (digits == 2 && value >= 0 && value < 100) {
        out += QLatin1Char(static_cast<char>('0' + value / 10));
        out += QLatin1Char(static_cast<char>('0' + value % 10));
    } else if (value >= 0 && value < 10) {
        out += QLatin1Char(static_cast<char>('0' + value));
    } else {
        out += QString::number(value);
    }
}

QString FormatMoment(const Moment& moment, const QString& pattern) {
    int year = 0;
    int month = 0;
    int day = 0;
    moment.date.getDate(&year, &month, &day);
    const QTime& time = moment.time;
    const bool twelveHour = [&] {
        for (qsizetype i = 0; i < pattern.size(); ++i) {
            if (StartsWithNoCase(pattern, i, QLatin1String("am/pm")) ||
                StartsWithNoCase(pattern, i, QLatin1String("a/p")))
                return true;
        }
        return false;
    }();
    QString out;
    out.reserve(pattern.size() + 16);
    bool afterHour = false; // "m" right after an hour (literals between) is the minute
    for (qsizetype i = 0; i < pattern.size();) {
        const QChar c = pattern.at(i);
        if (c == QLatin1Char('"')) {
            const qsizetype end = pattern.indexOf(QLatin1Char('"'), i + 1);
            out += QStringView(pattern).mid(i + 1, (end < 0 ? pattern.size() : end) - i - 1);
            i = end < 0 ? pattern.size() : end + 1;
            continue;
        }
        if (c == QLatin1Char('\\') && i + 1 < pattern.size()) {
            out += pattern.at(i + 1);
            i += 2;
            continue;
        }
        const bool pm = time.hour() >= 12;
        if (StartsWithNoCase(pattern, i, QLatin1String("am/pm"))) {
            const QString marker = pm ? QStringLiteral("PM") : QStringLiteral("AM");
            out += c.isUpper() ? marker : marker.toLower();
            i += 5;
            continue;
        }
        if (StartsWithNoCase(pattern, i, QLatin1String("a/p"))) {
            const QChar marker = pm ? QLatin1Char('P') : QLatin1Char('A');
            out += c.isUpper() ? marker : marker.toLower();
            i += 3;
            continue;
        }
        const QChar letter = c.toLower();
        qsizetype run = 1;
        while (i + run < pattern.size() && pattern.at(i + run).toLower() == letter)
            ++run;
        const auto take = [&](qsizetype most) {
            const qsizetype n = std::min(run, most);
            i += n;
            return n;
        };
        const char token = static_cast<char>(letter.unicode() < 128 ? letter.unicode() : 0);
        switch (token) {
        case 'd': {
            const qsizetype n = take(4);
            if (n <= 2) {
                AppendNumber(out, day, n);
            } else {
                const QLatin1String name(kDayNames[moment.date.dayOfWeek() % 7]);
                out += n == 3 ? name.left(3) : name;
            }
            break;
        }
        case 'w':
            take(1);
            AppendNumber(out, moment.date.dayOfWeek() % 7 + 1, 1);
            break;
        case 'm': {
            const qsizetype n = take(4);
            if (afterHour && n <= 2) {
                AppendNumber(out, time.minute(), n);
            } else if (n <= 2) {
                AppendNumber(out, month, n);
            } else {
                const QLatin1String name(kMonthNames[month - 1]);
                out += n == 3 ? name.left(3) : name;
            }
            break;
        }
        case 'q':
            take(1);
            AppendNumber(out, (month - 1) / 3 + 1, 1);
            break;
        case 'y': {
            const qsizetype n = run >= 4 ? take(4) : take(2);
            if (n == 1)
                AppendNumber(out, moment.date.dayOfYear(), 1);
            else if (n == 2)
                AppendNumber(out, year % 100, 2);
            else
                AppendNumber(out, year, 4);
            break;
        }
        case 'h': {
            const qsizetype n = take(2);
            int hour = time.hour();
            if (twelveHour)
                hour = hour % 12 == 0 ? 12 : hour % 12;
            AppendNumber(out, hour, n);
            afterHour = true;
            continue;
        }
        case 'n':
            AppendNumber(out, time.minute(), take(2));
            break;
        case 's':
            AppendNumber(out, time.second(), take(2));
            break;
        default:
            out += c; // a literal keeps an hour's claim on the next "m"
            ++i;
            continue;
        }
        afterHour = false;
    }
    return out;
}

// A value as a moment for the date patterns; nothing when it isn't one.
std::optional<Moment> ToMoment(const QVariant& value) {
    if (IsDateValue(value))
        return MomentOf(value);
    if (IsTextValue(value)) {
        if (auto moment = ParseMoment(value.toString()))
            return moment;
    }
    if (const auto number = ToDecimal(value))
        return FromSerial(DoubleFromDecimal(*number));
    return std::nullopt;
}

} // namespace

// --- Regional ---------------------------------------------------------------------------------

std::optional<QDate> Regional::ParseDate(const QString& text) {
    const auto moment = ParseMoment(text);
    if (!moment)
        return std::nullopt;
    return moment->date;
}

std::optional<Currency> Regional::ParseCurrency(const QString& text) {
    const auto decimal = ParseDecimal(text);
    if (!decimal)
        return std::nullopt;
    return CurrencyFromDecimal(*decimal);
}

Regional::LikePattern::LikePattern(const QString& pattern) {
    const qsizetype size = pattern.size();
    for (qsizetype i = 0; i < size; ++i) {
        const char16_t c = pattern.at(i).unicode();
        Token token{};
        switch (c) {
        case u'*':
            if (!mTokens.empty() && mTokens.back().kind == Token::Star)
                continue;
            token.kind = Token::Star;
            break;
        case u'?':
            token.kind = Token::AnyChar;
            break;
        case u'#':
            token.kind = Token::Digit;
            break;
        case u'[': {
            const qsizetype close = pattern.indexOf(QLatin1Char(']'), i + 1);
            if (close < 0)
                throw VbError(VbError::InvalidPattern);
            QStringView set = QStringView(pattern).mid(i + 1, close - i - 1);
            i = close;
            if (set.isEmpty())
                continue; // "[]" takes no character
            token.kind = Token::Set;
            if (set.front() == u'!' && set.size() > 1) {
                token.negated = true;
                set = set.mid(1);
            }
            token.firstRange = static_cast<quint32>(mRanges.size());
            for (qsizetype k = 0; k < set.size(); ++k) {
                const char16_t low = set.at(k).unicode();
                if (k + 2 < set.size() && set.at(k + 1) == u'-') {
                    const char16_t high = set.at(k + 2).unicode();
                    if (high < low)
                        throw VbError(VbError::InvalidPattern);
                    mRanges.emplace_back(low, high);
                    k += 2;
                } else {
                    mRanges.emplace_back(low, low);
                }
            }
            token.rangeCount = static_cast<quint32>(mRanges.size()) - token.firstRange;
            break;
        }
        default:
            token.kind = Token::Literal;
            token.ch = c;
        }
        mTokens.push_back(token);
    }
}

bool Regional::LikePattern::MatchesOne(const Token& token, char16_t c) const {
    switch (token.kind) {
    case Token::Literal:
        return c == token.ch;
    case Token::AnyChar:
        return true;
    case Token::Digit:
        return c >= u'0' && c <= u'9';
    case Token::Set: {
        bool inside = false;
        for (quint32 r = token.firstRange; r < token.firstRange + token.rangeCount; ++r) {
            if (c >= mRanges[r].first && c <= mRanges[r].second) {
                inside = true;
                break;
            }
        }
        return inside != token.negated;
    }
    case Token::Star:
        break;
    }
    return false;
}

// Every token but "*" takes exactly one character, so on a mismatch it is enough to let the
// last "*" take one character more: earlier stars never need to be revisited.
bool Regional::LikePattern::Matches(const QString& text) const {
    const size_t n = static_cast<size_t>(text.size());
    const size_t m = mTokens.size();
    const char16_t* chars = reinterpret_cast<const char16_t*>(text.utf16());
    size_t t = 0;
    size_t p = 0;
    size_t starToken = m; // none yet
    size_t starText = 0;
    while (t < n) {
        if (p < m && mTokens[p].kind == Token::Star) {
            starToken = p++;
            starText = t;
        } else if (p < m && MatchesOne(mTokens[p], chars[t])) {
            ++p;
            ++t;
        } else if (starToken != m) {
            p = starToken + 1;
            t = ++starText;
        } else {
            return false;
        }
    }
    while (p < m && mTokens[p].kind == Token::Star)
        ++p;
    return p == m;
}

// --- the conversion functions --------------------------------------------------------------

bool IsDate(const QVariant& value) {
    if (IsNullValue(value))
        return false;
    if (IsDateValue(value))
        return true;
    return IsTextValue(value) && Regional::ParseDate(value.toString()).has_value();
}

QDate CDate(const QVariant& value) {
    if (IsNullValue(value))
        throw VbError(VbError::InvalidUseOfNull);
    if (IsDateValue(value))
        return MomentOf(value).date;
    if (IsTextValue(value)) {
        if (const auto date = Regional::ParseDate(value.toString()))
            return *date;
        throw VbError(VbError::TypeMismatch);
    }
    if (IsNumberValue(value) || IsCurrencyValue(value) || value.typeId() == QMetaType::Bool) {
        if (const auto moment = FromSerial(CDbl(value)))
            return moment->date;
        throw VbError(VbError::Overflow);
    }
    throw VbError(VbError::TypeMismatch);
}

bool IsNumberType(int typeId) {
    switch (typeId) {
    case QMetaType::Int:
    case QMetaType::UInt:
    case QMetaType::LongLong:
    case QMetaType::ULongLong:
    case QMetaType::Short:
    case QMetaType::UShort:
    case QMetaType::Long:
    case QMetaType::ULong:
    case QMetaType::Double:
    case QMetaType::Float:
        return true;
    default:
        return false;
    }
}

bool IsBlank(const QVariant& value) {
    if (IsNullValue(value))
        return true;
    if (IsTextValue(value))
        return static_cast<const QString*>(value.constData())->isEmpty();
    if (IsDateValue(value) || IsNumberValue(value) || IsCurrencyValue(value) ||
        value.typeId() == QMetaType::Bool)
        return false; // their text is never empty
    return CStr(value).isEmpty();
}

bool IsNumeric(const QVariant& value) {
    if (IsNullValue(value) || IsDateValue(value))
        return false;
    if (IsTextValue(value))
        return ParseDecimal(value.toString()).has_value();
    return ToDecimal(value).has_value();
}

double CDbl(const QVariant& value) {
    if (IsNullValue(value))
        throw VbError(VbError::InvalidUseOfNull);
    if (IsCurrencyValue(value))
        return value.value<Currency>().ToDouble();
    if (IsNumberValue(value))
        return value.toDouble();
    if (value.typeId() == QMetaType::Bool)
        return value.toBool() ? -1.0 : 0.0;
    if (IsDateValue(value))
        return ToSerial(MomentOf(value));
    if (IsTextValue(value)) {
        if (const auto decimal = ParseDecimal(value.toString()))
            return DoubleFromDecimal(*decimal);
    }
    throw VbError(VbError::TypeMismatch);
}

Currency CCur(const QVariant& value) {
    if (IsNullValue(value))
        throw VbError(VbError::InvalidUseOfNull);
    if (IsCurrencyValue(value))
        return value.value<Currency>();
    if (IsIntegerValue(value) || value.typeId() == QMetaType::Bool) {
        const auto decimal = ToDecimal(value);
        return CurrencyFromDecimal(*decimal);
    }
    if (IsTextValue(value)) {
        if (const auto decimal = ParseDecimal(value.toString()))
            return CurrencyFromDecimal(*decimal);
        throw VbError(VbError::TypeMismatch);
    }
    return Currency::FromDouble(CDbl(value));
}

bool CBool(const QVariant& value) {
    if (IsNullValue(value))
        throw VbError(VbError::InvalidUseOfNull);
    if (value.typeId() == QMetaType::Bool)
        return value.toBool();
    if (IsCurrencyValue(value))
        return value.value<Currency>().Raw() != 0;
    if (IsTextValue(value)) {
        const QString text = value.toString().trimmed();
        if (text.compare(QLatin1String("True"), Qt::CaseInsensitive) == 0)
            return true;
        if (text.compare(QLatin1String("False"), Qt::CaseInsensitive) == 0)
            return false;
    }
    return CDbl(value) != 0.0;
}

QString CStr(const QVariant& value) {
    if (IsNullValue(value))
        return {};
    if (IsCurrencyValue(value))
        return value.value<Currency>().ToPlainString();
    switch (value.typeId()) {
    case QMetaType::Bool:
        return value.toBool() ? QStringLiteral("True") : QStringLiteral("False");
    case QMetaType::QDate:
        return value.toDate().toString(QStringLiteral("M/d/yyyy"));
    case QMetaType::QDateTime: {
        const Moment moment = MomentOf(value);
        if (moment.time == QTime(0, 0))
            return moment.date.toString(QStringLiteral("M/d/yyyy"));
        return FormatMoment(moment, QStringLiteral("m/d/yyyy h:nn:ss AM/PM"));
    }
    case QMetaType::Double:
    case QMetaType::Float: {
        const double number = value.toDouble();
        if (number == 0.0)
            return QStringLiteral("0");
        const int digits = value.typeId() == QMetaType::Float ? 7 : 15;
        return QString::number(number, 'g', digits).toUpper();
    }
    default:
        return value.toString();
    }
}

double Val(const QString& text) {
    std::string number;
    bool digits = false;
    bool point = false;
    bool exponent = false;
    bool exponentDigits = false;
    for (const QChar c : text) {
        if (c == QLatin1Char(' ') || c == QLatin1Char('\t') || c == QLatin1Char('\n'))
            continue;
        const char a = c.unicode() < 128 ? static_cast<char>(c.unicode()) : '\0';
        const char last = number.empty() ? '\0' : number.back();
        if (a >= '0' && a <= '9') {
            number.push_back(a);
            (exponent ? exponentDigits : digits) = true;
        } else if ((a == '+' || a == '-') && (number.empty() || last == 'e')) {
            number.push_back(a);
        } else if (a == '.' && !point && !exponent) {
            number.push_back(a);
            point = true;
        } else if ((a == 'e' || a == 'E' || a == 'd' || a == 'D') && digits && !exponent) {
            number.push_back('e');
            exponent = true;
        } else {
            break;
        }
    }
    if (!digits)
        return 0.0;
    if (exponent && !exponentDigits) { // "12e" or "12e-": the exponent is left out
        while (number.back() != 'e')
            number.pop_back();
        number.pop_back();
    }
    bool ok = false;
    const double result = QString::fromStdString(number).toDouble(&ok);
    if (!ok || !std::isfinite(result))
        throw VbError(VbError::Overflow);
    return result;
}

QString Format(const QVariant& value, const QString& pattern) {
    if (IsNullValue(value))
        return {};
    if (pattern.isEmpty())
        return CStr(value);
    if (IsDatePattern(pattern)) {
        if (const auto moment = ToMoment(value))
            return FormatMoment(*moment, pattern);
        return CStr(value);
    }
    if (const auto number = ToDecimal(value))
        return FormatNumber(*number, pattern);
    return CStr(value);
}

QString FormatCurrency(const QVariant& value) {
    if (IsNullValue(value))
        return {};
    const auto number = ToDecimal(value);
    if (!number)
        throw VbError(VbError::TypeMismatch);
    return FormatNumber(*number, QStringLiteral("$#,##0.00;($#,##0.00)"));
}

bool Like(const QString& text, const QString& pattern) {
    return Regional::LikePattern(pattern).Matches(text);
}
