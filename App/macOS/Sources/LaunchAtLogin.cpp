#include "LaunchAtLogin.h"

namespace Tinkra::LaunchAtLogin {

bool isEnabled(System::LoginItem& item)
{
    return item.status() == System::ServiceStatus::Enabled;
}

void set(System::LoginItem& item, bool enabled)
{
    if (isEnabled(item) == enabled)
        return;
    try {
        if (enabled)
            item.registerItem();
        else
            item.unregisterItem();
    } catch (...) {
        return; // the status tells
    }
}

}
