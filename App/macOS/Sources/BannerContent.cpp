#include "BannerContent.h"

#include "BannerButtons.h"

#include "TinkraSystem/Desktop/QuickPanelContent.h"
#include "ViewSupport/ShownTitle.h"
#include "ViewSupport/TimeText.h"

#include <QDebug>
#include <QQmlComponent>
#include <QQmlEngine>

#include <cstdlib>

namespace Tinkra {

namespace {

QString qtText(const std::string& utf8)
{
    return QString::fromStdString(utf8);
}

std::string environment(const char* name)
{
    const char* value = std::getenv(name);
    return value != nullptr ? value : "";
}

/// Read for each alarm: the machine may have travelled.
TimeStyle usersTimeStyle()
{
    return {.locale = timeLocale(environment("LC_ALL"), environment("LC_TIME"), environment("LANG")),
        .timeZone = ""};
}

class BannerContent final : public System::QuickPanelContent {
public:
    BannerContent(std::unique_ptr<QQuickItem> view, AlarmBanner banner)
        : QuickPanelContent(std::move(view))
        , m_buttons(item())
    {
        QObject::connect(&m_buttons, &BannerButtons::snooze, std::move(banner.onSnooze));
        QObject::connect(&m_buttons, &BannerButtons::dismiss, std::move(banner.onDismiss));
    }

    QRectF card() override { return item().property("card").toRectF(); }
    double cardRadius() override { return item().property("cardRadius").toDouble(); }
    void setIsComposited(bool isComposited) override { item().setProperty("castsShadow", isComposited); }

private:
    BannerButtons m_buttons;
};

std::unique_ptr<System::PanelContent> makeBanner(
    QQmlComponent& component, AlarmBanner banner, System::Rect frame)
{
    auto* made = component.createWithInitialProperties({
        {QStringLiteral("title"), qtText(shownTitle(banner.payload.title.utf8()))},
        {QStringLiteral("meetingStart"),
            qtText(hourAndMinuteText(banner.payload.meetingStart, usersTimeStyle()))},
        {QStringLiteral("width"), frame.size.width},
        {QStringLiteral("height"), frame.size.height},
    });
    auto* item = qobject_cast<QQuickItem*>(made);
    if (item == nullptr)
        qFatal("the banner's view cannot be made: %s", qPrintable(component.errorString()));
    return std::make_unique<BannerContent>(std::unique_ptr<QQuickItem>(item), std::move(banner));
}

}

BannerViewMaker makeBannerViewMaker(QQmlEngine& engine)
{
    const auto component = std::make_shared<QQmlComponent>(
        &engine, QUrl(QStringLiteral("qrc:/qt/qml/Tinkra/AlarmBannerView.qml")));
    return [component](AlarmBanner banner, System::Rect frame) {
        return makeBanner(*component, std::move(banner), frame);
    };
}

}
