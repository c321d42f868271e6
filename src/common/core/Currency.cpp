#include "common/core/Currency.h"

#include "common/core/VbError.h"

#include <cmath>
#include <limits>

Currency Currency::FromDouble(double value) {
    const double scaled = value * Scale;
    if (!std::isfinite(scaled) || std::fabs(scaled) >= 9.2233720368547758e18)
        throw VbError(VbError::Overflow);
    return FromRaw(static_cast<std::int64_t>(std::nearbyint(scaled)));
}

QString Currency::ToPlainString() const {
    const bool negative = mRaw < 0;
    const std::uint64_t magnitude =
        negative ? static_cast<std::uint64_t>(-(mRaw + 1)) + 1 : static_cast<std::uint64_t>(mRaw);
    QString text = QString::number(magnitude / Scale);
    std::uint64_t fraction = magnitude % Scale;
    if (fraction != 0) {
        QString digits = QStringLiteral("%1").arg(fraction, 4, 10, QLatin1Char('0'));
        while (digits.endsWith(QLatin1Char('0')))
            digits.chop(1);
        text += QLatin1Char('.') + digits;
    }
    return negative ? QLatin1Char('-') + text : text;
}

Currency Currency::operator+(Currency other) const {
    std::int64_t sum = 0;
    if (__builtin_add_overflow(mRaw, other.mRaw, &sum))
        throw VbError(VbError::Overflow);
    return FromRaw(sum);
}

Currency Currency::operator-(Currency other) const {
    std::int64_t difference = 0;
    if (__builtin_sub_overflow(mRaw, other.mRaw, &difference))
        throw VbError(VbError::Overflow);
    return FromRaw(difference);
}

Currency Currency::operator-() const {
    if (mRaw == std::numeric_limits<std::int64_t>::min())
        throw VbError(VbError::Overflow);
    return FromRaw(-mRaw);
}
