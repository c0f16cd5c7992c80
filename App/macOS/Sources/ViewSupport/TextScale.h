#pragma once

namespace Tinkra {

/// How much larger than drawn texts are shown, for a desktop whose own font is so many pixels high. Desktops
/// ship with fonts of 12 to 15 pixels (9 to 11 points), for which it is 1; beyond, it grows in proportion.
/// 0.85...1.5.
double textScale(double systemFontPixels);

}
