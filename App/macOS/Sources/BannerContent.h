#pragma once

#include "AlarmInfrastructure/AlarmPresenter.h"

#include <memory>

class QQmlEngine;

namespace Tinkra {

/// Makes banners of the view AlarmBannerView.qml, which is loaded at once so that the first alarm is not
/// late. The engine must outlive the panels.
BannerViewMaker makeBannerViewMaker(QQmlEngine& engine);

}
