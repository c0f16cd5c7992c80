#include "RelativeTimeFormatter.h"

#include "ViewSupport/TimeText.h"

#include <cstdlib>

namespace Tinkra {

namespace {

std::string environment(const char* name)
{
    const char* value = std::getenv(name);
    return value != nullptr ? value : "";
}

}

RelativeTimeFormatter::RelativeTimeFormatter(QObject* parent)
    : QObject(parent)
    , m_format(timeLocale(environment("LC_ALL"), environment("LC_TIME"), environment("LANG")))
{
}

QString RelativeTimeFormatter::text(double date, double now) const
{
    return QString::fromStdString(m_format.text(Seconds(date - now)));
}

}
