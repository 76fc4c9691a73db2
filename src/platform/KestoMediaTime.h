#pragma once

#include "platform/Export.h"
#include "platform/WinTypes.h"

#include <boost/rational.hpp>

#include <compare>

namespace KestoMediaLib {

/// Model time is a whole number of these to the second. The usual frame rates, 24000/1001 to 120 a second,
/// and the usual sample rates, 8000 to 192000, divide it, so that their moments are exact.
constexpr __int64 modelTimePerSecond = 705'600'000;

/// A fraction in lowest terms with a denominator above 0; as a time, in seconds. Never overflows: what does
/// not fit into two 64-bit numbers becomes a fraction near it, or the greatest of its sign.
class KESTO_EXPORT SafeRational {
public:
    /// Throws std::invalid_argument for a denominator of 0.
    SafeRational(__int64 numerator = 0, __int64 denominator = 1); // NOLINT(google-explicit-constructor)
    explicit SafeRational(const boost::rational<__int64>& value);

    __int64 numerator() const { return num; }
    __int64 denominator() const { return den; }
    double toDouble() const { return static_cast<double>(num) / static_cast<double>(den); }

    /// Division by 0 throws std::invalid_argument.
    KESTO_EXPORT friend SafeRational operator+(const SafeRational& left, const SafeRational& right);
    KESTO_EXPORT friend SafeRational operator-(const SafeRational& left, const SafeRational& right);
    KESTO_EXPORT friend SafeRational operator*(const SafeRational& left, const SafeRational& right);
    KESTO_EXPORT friend SafeRational operator/(const SafeRational& left, const SafeRational& right);

    friend bool operator==(const SafeRational&, const SafeRational&) = default;
    KESTO_EXPORT friend std::strong_ordering operator<=>(const SafeRational& left, const SafeRational& right);

private:
    __int64 num;
    __int64 den;
};

/// The time of an animation, in seconds from its media's start.
using RationalTime = SafeRational;

class KESTO_EXPORT RationalUtil {
public:
    RationalUtil() = delete;

    /// Seconds as model time: the nearest one, halves away from 0; beyond the range the nearest end of it.
    static __int64 toKestoTime(const SafeRational& seconds);
    /// Model time as seconds, exactly.
    static SafeRational toSeconds(__int64 modelTime);
};

} // namespace KestoMediaLib
