#pragma once

#include "AlarmInfrastructure/AlarmPayload.h"

#include "TinkraConcurrency/TaskHandle.h"

namespace Tinkra {

/// One alarm that the application itself rings at its time. It stays in the list after it has had its turn,
/// until the list is made anew.
struct AlarmTask {
    enum class Kind { Scheduled, Snoozed };

    Kind kind;
    AlarmPayload payload;
    Instant ringDate;
    TaskHandle timer;
    bool isOver = false; ///< it has had its turn
    bool hasRungLate = false; ///< its timer was held up, as by a machine that slept
};

}
