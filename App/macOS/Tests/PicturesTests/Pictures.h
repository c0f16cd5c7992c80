#pragma once

#include <QImage>
#include <QString>
#include <QUrl>
#include <QVariantMap>

class QQmlEngine;

namespace Tinkra {

/// The file in docs/pictures of a scene at a scale: "banner@2x.png".
QString pictureName(const QString& scene, int scale);

/// Renders the view that `url` holds, without a screen, in a window as large as the view asks for. The
/// program runs at the scale that the picture shall have. Throws `std::runtime_error` when the view cannot be
/// made.
QImage picture(QQmlEngine& engine, const QUrl& url, const QVariantMap& properties = {});

/// How two pictures differ.
struct Difference {
    bool sameSize = true;
    int worst = 0; ///< the largest difference of any component of any pixel, 0...255
    int pixels = 0; ///< how many pixels differ by more than the tolerance

    bool isVisible() const { return !sameSize || pixels > 0; }
};

/// Differences that another processor's arithmetic may make: two steps of 255 in a component.
constexpr int pictureTolerance = 2;

Difference compare(const QImage& left, const QImage& right);

}
