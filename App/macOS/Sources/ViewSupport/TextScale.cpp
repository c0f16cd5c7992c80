#include "TextScale.h"

#include <algorithm>

namespace Tinkra {

double textScale(double systemFontPixels)
{
    constexpr double smallestUsual = 12;
    constexpr double largestUsual = 15;
    const double usual = std::clamp(systemFontPixels, smallestUsual, largestUsual);
    return std::clamp(systemFontPixels / usual, 0.85, 1.5);
}

}
