#include "KestoMediaLib/KeyFrames.h"

#include <algorithm>
#include <stdexcept>
#include <utility>

namespace KestoMediaLib {

namespace {

bool isNotBefore(const KeyFrame& left, const KeyFrame& right) {
    return left.time >= right.time;
}

double between(const KeyFrame& from, const KeyFrame& to, const RationalTime& time) {
    const double u = (time - from.time).toDouble() / (to.time - from.time).toDouble();
    const double done = eased(from.easing, std::clamp(u, 0.0, 1.0));
    return from.value * (1 - done) + to.value * done;
}

} // namespace

double eased(Easing easing, double u) {
    switch (easing) {
    case Easing::Linear:
        return u;
    case Easing::EaseIn:
        return u * u;
    case Easing::EaseOut:
        return 1 - (1 - u) * (1 - u);
    case Easing::EaseInOut:
        return u < 0.5 ? 2 * u * u : 1 - 2 * (1 - u) * (1 - u);
    case Easing::Hold:
        return 0;
    }
    return u;
}

KeyFramedParam::KeyFramedParam(double value)
    : frames{{.time = 0, .value = value}} {}

KeyFramedParam::KeyFramedParam(std::vector<KeyFrame> given)
    : frames(std::move(given)) {
    if (frames.empty())
        throw std::invalid_argument("KeyFramedParam: there is no key frame");
    if (std::adjacent_find(frames.begin(), frames.end(), isNotBefore) != frames.end())
        throw std::invalid_argument("KeyFramedParam: the times of key frames must rise");
}

double KeyFramedParam::valueAt(const RationalTime& time) const {
    const auto next = std::upper_bound(frames.begin(), frames.end(), time,
                                       [](const RationalTime& t, const KeyFrame& f) { return t < f.time; });
    if (next == frames.begin())
        return frames.front().value;
    if (next == frames.end())
        return frames.back().value;
    return between(*(next - 1), *next, time);
}

KeyFramedVector::KeyFramedVector(KeyFramedParam horizontal, KeyFramedParam vertical)
    : components{std::move(horizontal), std::move(vertical)} {}

const AnimationParam<double>& KeyFramedVector::at(int component) const {
    return components.at(static_cast<std::size_t>(component));
}

} // namespace KestoMediaLib
