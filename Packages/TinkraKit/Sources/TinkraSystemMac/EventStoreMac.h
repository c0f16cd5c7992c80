#pragma once

#include "TinkraConcurrency/Clock.h"
#include "TinkraSystem/EventStore.h"

#include <asio/thread_pool.hpp>

#import <EventKit/EventKit.h>

namespace Tinkra::System {

/// EKEventStore. Queries block, so they run one after the other on a thread of the store's own, which also
/// tells of changes.
class EventStoreMac final : public EventStore {
public:
    EventStoreMac(EKEventStore* _Nonnull store, std::shared_ptr<Clock> clock);

    CalendarAuthorization authorizationStatus() override;
    Task<bool> requestFullAccess() override;
    Task<std::vector<StoredCalendar>> calendars() override;
    Task<std::vector<StoredEvent>> events(
        Instant from, Instant to, std::vector<std::string> calendarIdentifiers) override;
    Observation observeChanges(std::function<void()> changed) override;

private:
    EKEventStore* _Nonnull m_store;
    std::shared_ptr<Clock> m_clock;
    std::shared_ptr<asio::thread_pool> m_thread = std::make_shared<asio::thread_pool>(1);
};

}
