#pragma once

#include "ViewSupport/RelativeTime.h"

#include <QObject>
#include <QtQml/qqmlregistration.h>

namespace Tinkra {

/// Countdowns in the user's language: `RelativeTime.text(fireDate, now)`.
class RelativeTimeFormatter final : public QObject {
    Q_OBJECT
    QML_NAMED_ELEMENT(RelativeTime)
    QML_SINGLETON

public:
    explicit RelativeTimeFormatter(QObject* parent = nullptr);

    /// What is left until `date`; both in seconds since 1970.
    Q_INVOKABLE QString text(double date, double now) const;

private:
    RelativeTimeFormat m_format;
};

}
