#pragma once

#include "ViewSupport/Spring.h"

#include <QAbstractAnimation>
#include <QQmlParserStatus>
#include <QtQml/qqmlregistration.h>

namespace Tinkra {

/// A number that follows `to` on a spring, keeping its speed when it is sent elsewhere on the way. The first
/// `to` is taken as it stands.
class SpringMotion : public QAbstractAnimation, public QQmlParserStatus {
    Q_OBJECT
    Q_INTERFACES(QQmlParserStatus)
    QML_ELEMENT
    Q_PROPERTY(qreal to READ to WRITE setTo NOTIFY toChanged FINAL)
    Q_PROPERTY(qreal response MEMBER m_response NOTIFY springChanged FINAL)
    Q_PROPERTY(qreal dampingFraction MEMBER m_dampingFraction NOTIFY springChanged FINAL)
    Q_PROPERTY(int duration READ duration NOTIFY toChanged FINAL)
    Q_PROPERTY(qreal value READ value NOTIFY valueChanged FINAL)

public:
    explicit SpringMotion(QObject* parent = nullptr);

    qreal to() const { return m_to; }
    void setTo(qreal to);
    qreal value() const { return m_to + m_state.displacement; }

    int duration() const override { return m_duration; }
    void classBegin() override { }
    void componentComplete() override { m_isComplete = true; }

Q_SIGNALS:
    void toChanged();
    void springChanged();
    void valueChanged();

protected:
    void updateCurrentTime(int milliseconds) override;

private:
    qreal m_to = 0;
    qreal m_response = 0.55; ///< seconds, above 0
    qreal m_dampingFraction = 1; ///< above 0
    Spring::State m_start; ///< when the motion began
    Spring::State m_state; ///< now
    int m_duration = 0; ///< milliseconds
    bool m_isComplete = false;
};

}
