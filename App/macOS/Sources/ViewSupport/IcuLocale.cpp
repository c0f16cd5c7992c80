#include "IcuLocale.h"

namespace Tinkra {

icu::Locale icuLocale(const std::string& name)
{
    // What POSIX adds without a value ("@euro") says nothing about times, and ICU takes offence at it.
    const auto at = name.find('@');
    const bool hasKeywords = at != std::string::npos && name.find('=', at) != std::string::npos;
    const auto locale = icu::Locale::createCanonical((hasKeywords ? name : name.substr(0, at)).c_str());
    return locale.isBogus() ? icu::Locale::getRoot() : locale;
}

}
