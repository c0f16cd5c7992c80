#include "Commands/Commands.h"

namespace Tinkra::CommandLine {

Task<ExitCode> ringTestAlarm(SessionPtr session)
{
    try {
        co_await session->services.runningApplication->testAlarm();
    } catch (const System::ApplicationUnreachable& error) {
        session->complain(error.what());
        co_return ExitCode::Failure;
    }
    co_return ExitCode::Success;
}

}
