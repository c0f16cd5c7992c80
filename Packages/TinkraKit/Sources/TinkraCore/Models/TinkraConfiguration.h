#pragma once

#include "TinkraCore/Models/AlarmSettings.h"
#include "TinkraCore/Models/MonitoringConfig.h"

namespace Tinkra {

/// The whole persisted configuration. A fresh value holds the defaults: on, and nothing monitored.
struct TinkraConfiguration {
    bool masterEnabled = true; ///< false: a pass cancels every pending alarm and arms none
    AlarmSettings settings;
    MonitoringConfig monitoring;

    friend bool operator==(const TinkraConfiguration&, const TinkraConfiguration&) = default;
};

}
