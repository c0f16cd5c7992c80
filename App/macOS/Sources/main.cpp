#include "AlarmRinger.h"
#include "BannerContent.h"
#include "QtExecutor.h"

#include "AlarmInfrastructure/NotificationCoordinator.h"
#include "TinkraPlatformApple/UserDefaultsSettingsStore.h"
#include "TinkraSystem/Desktop/DesktopServices.h"
#include "TinkraSystem/SystemServices.h"

#include <QGuiApplication>
#include <QQmlEngine>
#include <QQmlExtensionPlugin>

#include <cstdlib>

Q_IMPORT_QML_PLUGIN(TinkraPlugin)

namespace {

using namespace Tinkra;

AlarmPresenter::Means presenterMeans(
    const System::SystemServices& system, const System::DesktopServices& desktop, QQmlEngine& engine)
{
    return {
        .screens = desktop.screens,
        .panels = desktop.panels,
        .makeBannerView = makeBannerViewMaker(engine),
        .player = AlarmSoundPlayer(system.soundLibrary),
        .volume = SystemVolume(system.audioDevice),
        .raisedVolume = RaisedVolume(system.defaults),
    };
}

/// What an earlier process has left raised, and what this one would when the toolkit ends it on the spot, as
/// it does when the display has gone.
void restoreVolumeNowAndAtTheEnd(const System::SystemServices& system)
{
    static auto restore = [raised = RaisedVolume(system.defaults),
                              volume = SystemVolume(system.audioDevice)]() mutable {
        restoreVolumeLeftRaised(raised, volume);
    };
    restore();
    std::atexit([] { restore(); });
}

}

int main(int argumentCount, char** arguments)
{
    System::prepareDesktop();
    QGuiApplication application(argumentCount, arguments);
    QGuiApplication::setApplicationName(QStringLiteral("Calendar Murkel"));
    QGuiApplication::setDesktopFileName(QStringLiteral("co.calendarmurkel.Tinkra"));
    QGuiApplication::setQuitOnLastWindowClosed(false);

    const auto system = System::makeSystemServices();
    const auto mainThread = mainThreadExecutor();
    QQmlEngine engine;
    const auto ringer =
        std::make_shared<AlarmRinger>(presenterMeans(system, System::makeDesktopServices(), engine),
            std::make_shared<UserDefaultsSettingsStore>(system.defaults, "tinkra.configuration"),
            system.clock, mainThread);

    const bool isFirst = system.applicationInstance->claim(
        mainThread, {.testAlarm = [ringer] { ringer->testAlarm(); }, .activate = nullptr});
    if (!isFirst)
        return 0;
    restoreVolumeNowAndAtTheEnd(system);

    const auto coordinator = std::make_shared<NotificationCoordinator>(system.clock);
    coordinator->onForegroundAlarm = [ringer](
                                         AlarmPayload payload) { ringer->presentAlarm(std::move(payload)); };
    system.notificationCenter->setDelegate(
        coordinator, mainThread, [] { return QGuiApplication::applicationState() == Qt::ApplicationActive; });

    const int status = QGuiApplication::exec();
    ringer->dismiss(); // the volume must not stay raised
    system.applicationInstance->release();
    return status;
}
