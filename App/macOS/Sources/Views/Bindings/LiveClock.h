#pragma once

#include <QList>
#include <QObject>
#include <QTimer>
#include <QtQml/qqmlregistration.h>

namespace Tinkra {

/// The time, for countdowns to `dates`: `now` moves on when the text of one of them changes, and only while
/// the clock is running, which is while somebody sees it. A clock at rest wakes nobody.
class LiveClock : public QObject {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(bool running READ isRunning WRITE setRunning NOTIFY runningChanged FINAL)
    Q_PROPERTY(QList<double> dates READ dates WRITE setDates NOTIFY datesChanged FINAL)
    Q_PROPERTY(double now READ now NOTIFY nowChanged FINAL)
    Q_PROPERTY(bool armed READ isArmed NOTIFY nowChanged FINAL)

public:
    explicit LiveClock(QObject* parent = nullptr);

    bool isRunning() const { return m_isRunning; }
    void setRunning(bool on);
    const QList<double>& dates() const { return m_dates; } ///< seconds since 1970
    void setDates(const QList<double>& dates);
    double now() const { return m_now; } ///< seconds since 1970
    bool isArmed() const { return m_timer.isActive(); } ///< whether it will wake this process

Q_SIGNALS:
    void runningChanged();
    void datesChanged();
    void nowChanged();

private:
    void tick();

    bool m_isRunning = false;
    QList<double> m_dates;
    double m_now;
    QTimer m_timer;
};

}
