#pragma once

#include "TinkraCore/Protocols/CalendarProvider.h"
#include "TinkraSystem/EventStore.h"

#include <memory>
#include <optional>
#include <vector>

namespace Tinkra {

/// Calendars and meetings out of the desktop's calendar store (on macOS EKEventStore).
///
/// Translates and decides nothing: all-day, declined and cancelled events are kept, meetings are not sorted.
/// It keeps no state, so calls may overlap. What the store throws passes through unchanged.
class EventKitCalendarProvider final : public CalendarProvider {
public:
    explicit EventKitCalendarProvider(std::shared_ptr<System::EventStore> store);

    const std::shared_ptr<System::EventStore>& store() const { return m_store; }

    /// Asks for full access. A request that ends with an error counts as refused.
    Task<bool> requestAccess() override;

    /// Sorted by account name, then by title, in the order of `Text`; equal ones keep the store's order. A
    /// colour component that is not finite, or out of the range of 64 bits when scaled to 255, is a
    /// programming fault and ends the program.
    Task<std::vector<CalendarRef>> availableCalendars() override;

    /// The occurrences that the store reports, in its order; those without a start are left out. The
    /// identifier is that of the event, "@", and the start in whole seconds since 1970, cut off towards zero;
    /// a start that such a number cannot hold is a programming fault and ends the program.
    Task<std::vector<Meeting>> meetings(CalendarIDs in, Instant from, Instant to) override;

private:
    static std::optional<Text> hexString(const std::optional<std::vector<double>>& colorComponents);

    std::shared_ptr<System::EventStore> m_store;
};

}
