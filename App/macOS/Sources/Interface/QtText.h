#pragma once

#include "TinkraCore/Models/Text.h"

#include <QString>

namespace Tinkra {

inline QString toQt(const Text& text)
{
    return QString::fromStdString(text.utf8());
}

inline Text fromQt(const QString& text)
{
    return Text(text.toStdString());
}

}
