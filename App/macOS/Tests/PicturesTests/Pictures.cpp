#include "Pictures.h"

#include <QGuiApplication>
#include <QQmlComponent>
#include <QQmlEngine>
#include <QQuickItem>
#include <QQuickWindow>

#include <algorithm>
#include <cstdlib>
#include <memory>
#include <stdexcept>

namespace Tinkra {

QString pictureName(const QString& scene, int scale)
{
    return scale == 1 ? scene + QStringLiteral(".png") : QStringLiteral("%1@%2x.png").arg(scene).arg(scale);
}

QImage picture(QQmlEngine& engine, const QUrl& url, const QVariantMap& properties)
{
    QQmlComponent component(&engine, url);
    if (!component.isReady())
        throw std::runtime_error(component.errorString().toStdString());
    const std::unique_ptr<QObject> object(component.createWithInitialProperties(properties));
    auto* item = qobject_cast<QQuickItem*>(object.get());
    if (!item)
        throw std::runtime_error("not a view: " + url.toString().toStdString());

    QQuickWindow window;
    window.setColor(Qt::transparent);
    window.resize(static_cast<int>(item->width()), static_cast<int>(item->height()));
    item->setParentItem(window.contentItem());
    window.show();
    window.requestActivate();
    QCoreApplication::processEvents();
    // Columns know their height once they have been polished.
    window.resize(static_cast<int>(item->width()), static_cast<int>(item->height()));
    QCoreApplication::processEvents();
    return window.grabWindow().convertToFormat(QImage::Format_ARGB32_Premultiplied);
}

Difference compare(const QImage& left, const QImage& right)
{
    if (left.size() != right.size())
        return {.sameSize = false};
    const auto a = left.convertToFormat(QImage::Format_ARGB32_Premultiplied);
    const auto b = right.convertToFormat(QImage::Format_ARGB32_Premultiplied);
    Difference difference;
    for (int y = 0; y < a.height(); ++y) {
        const auto* rowA = a.constScanLine(y);
        const auto* rowB = b.constScanLine(y);
        for (int x = 0; x < a.width(); ++x) {
            int worst = 0;
            for (int component = 0; component < 4; ++component)
                worst = std::max(worst, std::abs(rowA[4 * x + component] - rowB[4 * x + component]));
            difference.worst = std::max(difference.worst, worst);
            difference.pixels += worst > pictureTolerance ? 1 : 0;
        }
    }
    return difference;
}

}
