#pragma once

#include <QColor>
#include <QObject>
#include <QtQml/qqmlregistration.h>

namespace Tinkra {

/// Calendar colours travel as text; `HexColor.parse(hex, fallback)` makes a colour of it.
class HexColorParser final : public QObject {
    Q_OBJECT
    QML_NAMED_ELEMENT(HexColor)
    QML_SINGLETON

public:
    /// The opaque sRGB colour that `hex` names, `fallback` when it names none.
    Q_INVOKABLE static QColor parse(const QString& hex, const QColor& fallback);
};

}
