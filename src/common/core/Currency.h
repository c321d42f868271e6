#pragma once

#include <QMetaType>
#include <QString>
#include <cstdint>

// The old currency type: a signed 64-bit count of ten-thousandths of a dollar. Sums are
// exact; leaving the range raises error 6 (Overflow).
class Currency {
public:
    static constexpr std::int64_t Scale = 10000;

    constexpr Currency() = default;
    static constexpr Currency FromRaw(std::int64_t tenThousandths) {
        Currency c;
        c.mRaw = tenThousandths;
        return c;
    }
    // Rounds half to even at the fourth decimal, as the old conversion did.
    static Currency FromDouble(double value);

    constexpr std::int64_t Raw() const { return mRaw; }
    double ToDouble() const { return static_cast<double>(mRaw) / Scale; }

    // Plain decimal text without trailing zeros ("12.5", "-3", "0.0001").
    QString ToPlainString() const;

    Currency operator+(Currency other) const;
    Currency operator-(Currency other) const;
    Currency& operator+=(Currency other) { return *this = *this + other; }
    Currency& operator-=(Currency other) { return *this = *this - other; }
    Currency operator-() const;

    constexpr auto operator<=>(const Currency&) const = default;

private:
    std::int64_t mRaw = 0;
};

Q_DECLARE_METATYPE(Currency)
