#pragma once

#include "TinkraConcurrency/Task.h"

namespace Tinkra {

/// Runs steps on the thread of Qt's main loop, in their order, never within the call that asks for one. The
/// application object must exist; steps that are left when it goes are dropped.
Executor mainThreadExecutor();

}
