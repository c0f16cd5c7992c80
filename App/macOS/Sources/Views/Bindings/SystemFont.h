#pragma once

#include <QObject>
#include <QtQml/qqmlregistration.h>

namespace Tinkra {

/// The size that the user gave the desktop's font.
class SystemFont final : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON
    Q_PROPERTY(double textScale READ textScale NOTIFY changed FINAL)

public:
    explicit SystemFont(QObject* parent = nullptr);

    static double textScale(); ///< by which texts are larger than drawn

    bool eventFilter(QObject* watched, QEvent* event) override;

Q_SIGNALS:
    void changed();
};

}
