#pragma once

#include <QObject>

namespace Tinkra {

/// The buttons of a banner's view, where C++ can hear them.
class BannerButtons final : public QObject {
    Q_OBJECT

public:
    explicit BannerButtons(QObject& view)
    {
        connect(&view, SIGNAL(snooze()), this, SIGNAL(snooze()));
        connect(&view, SIGNAL(dismiss()), this, SIGNAL(dismiss()));
    }

Q_SIGNALS:
    void snooze();
    void dismiss();
};

}
