#include "SystemFont.h"

#include "ViewSupport/TextScale.h"

#include <QEvent>
#include <QFontInfo>
#include <QGuiApplication>

namespace Tinkra {

SystemFont::SystemFont(QObject* parent)
    : QObject(parent)
{
    qGuiApp->installEventFilter(this);
}

double SystemFont::textScale()
{
    return Tinkra::textScale(QFontInfo(QGuiApplication::font()).pixelSize());
}

bool SystemFont::eventFilter(QObject* watched, QEvent* event)
{
    if (event->type() == QEvent::ApplicationFontChange)
        Q_EMIT changed();
    return QObject::eventFilter(watched, event);
}

}
