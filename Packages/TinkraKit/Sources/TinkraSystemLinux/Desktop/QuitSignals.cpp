#include "TinkraSystemLinux/Desktop/QuitSignals.h"

#include <QCoreApplication>
#include <QSocketNotifier>

#include <csignal>
#include <sys/signalfd.h>

namespace Tinkra::System {

namespace {

sigset_t quitSignals()
{
    sigset_t signals;
    sigemptyset(&signals);
    for (const int signal : {SIGTERM, SIGINT, SIGHUP})
        sigaddset(&signals, signal);
    return signals;
}

}

void holdQuitSignals()
{
    const auto signals = quitSignals();
    pthread_sigmask(SIG_BLOCK, &signals, nullptr);
}

void quitOnSignals()
{
    const auto signals = quitSignals();
    const int descriptor = signalfd(-1, &signals, SFD_CLOEXEC | SFD_NONBLOCK);
    auto* notifier =
        new QSocketNotifier(descriptor, QSocketNotifier::Read, QCoreApplication::instance()); // its child
    QObject::connect(notifier, &QSocketNotifier::activated, notifier, [notifier] {
        notifier->setEnabled(false);
        QCoreApplication::quit();
    });
}

}
