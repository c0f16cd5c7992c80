#pragma once

#include <unicode/locid.h>

#include <string>

namespace Tinkra {

/// The locale of a name in ICU's or POSIX's form; the root locale for a name that is none.
icu::Locale icuLocale(const std::string& name);

}
