#pragma once

#include <string>

namespace KestoMediaLib {

struct CalloutParam;

}

namespace KestoHost {

/// What a value of that parameter may be, for people.
std::string valuesOf(const KestoMediaLib::CalloutParam& param);

/// The kinds, shapes, styles and parameters that a callout may be made of, for people and as one JSON object.
std::string listOfWords();
std::string jsonOfWords();

} // namespace KestoHost
