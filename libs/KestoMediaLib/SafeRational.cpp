#include "KestoMediaLib/Rounding.h"
#include "platform/KestoMediaTime.h"

#include <limits>
#include <numeric>
#include <stdexcept>

namespace KestoMediaLib {

namespace {

constexpr Wide greatest = std::numeric_limits<__int64>::max();

struct Fraction {
    Wide numerator;
    Wide denominator;
};

bool fits(Wide quotient, Wide last, Wide beforeLast) {
    return last == 0 || quotient <= (greatest - beforeLast) / last;
}

/// The last convergent of the continued fraction that fits: the fraction itself, in lowest terms, where it
/// fits. Both are positive, the numerator may be 0.
Fraction nearestThatFits(Fraction value) {
    Fraction beforeLast = {0, 1};
    Fraction last = {1, 0};
    while (value.denominator != 0) {
        const Wide quotient = value.numerator / value.denominator;
        if (!fits(quotient, last.numerator, beforeLast.numerator) ||
            !fits(quotient, last.denominator, beforeLast.denominator))
            break;
        const Fraction next = {quotient * last.numerator + beforeLast.numerator,
                               quotient * last.denominator + beforeLast.denominator};
        beforeLast = last;
        last = next;
        value = {value.denominator, value.numerator - quotient * value.denominator};
    }
    return last.denominator == 0 ? Fraction{greatest, 1} : last;
}

SafeRational reduced(Wide numerator, Wide denominator) {
    if (denominator == 0)
        throw std::invalid_argument("SafeRational: the denominator is 0");
    const bool negative = (numerator < 0) != (denominator < 0);
    const Fraction near = nearestThatFits(
        {numerator < 0 ? -numerator : numerator, denominator < 0 ? -denominator : denominator});
    return {static_cast<__int64>(negative ? -near.numerator : near.numerator),
            static_cast<__int64>(near.denominator)};
}

bool needsReduction(__int64 numerator, __int64 denominator) {
    return denominator < 1 || numerator == std::numeric_limits<__int64>::min() ||
           std::gcd(numerator, denominator) != 1;
}

} // namespace

SafeRational::SafeRational(__int64 numerator, __int64 denominator)
    : num(numerator)
    , den(denominator) {
    if (needsReduction(numerator, denominator))
        *this = reduced(numerator, denominator);
}

SafeRational::SafeRational(const boost::rational<__int64>& value)
    : SafeRational(value.numerator(), value.denominator()) {}

SafeRational operator+(const SafeRational& left, const SafeRational& right) {
    return reduced(Wide{left.num} * right.den + Wide{right.num} * left.den, Wide{left.den} * right.den);
}

SafeRational operator-(const SafeRational& left, const SafeRational& right) {
    return reduced(Wide{left.num} * right.den - Wide{right.num} * left.den, Wide{left.den} * right.den);
}

SafeRational operator*(const SafeRational& left, const SafeRational& right) {
    return reduced(Wide{left.num} * right.num, Wide{left.den} * right.den);
}

SafeRational operator/(const SafeRational& left, const SafeRational& right) {
    return reduced(Wide{left.num} * right.den, Wide{left.den} * right.num);
}

std::strong_ordering operator<=>(const SafeRational& left, const SafeRational& right) {
    const Wide leftScaled = Wide{left.num} * right.den;
    const Wide rightScaled = Wide{right.num} * left.den;
    if (leftScaled == rightScaled)
        return std::strong_ordering::equal;
    return leftScaled < rightScaled ? std::strong_ordering::less : std::strong_ordering::greater;
}

__int64 RationalUtil::toKestoTime(const SafeRational& seconds) {
    return nearestInteger(Wide{seconds.numerator()} * modelTimePerSecond, seconds.denominator());
}

SafeRational RationalUtil::toSeconds(__int64 modelTime) {
    return {modelTime, modelTimePerSecond};
}

} // namespace KestoMediaLib
