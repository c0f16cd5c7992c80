#pragma once

#include "TinkraCore/Protocols/AlarmScheduler.h"
#include "TinkraSystem/LocalCalendar.h"
#include "TinkraSystem/NotificationCenter.h"

#include <memory>

namespace Tinkra {

/// Arms each alarm as one pending notification of the desktop, which shows it at its time whether or not the
/// application runs. Keeps nothing itself: what is pending is what is armed.
///
/// The request of an alarm, which the application reads back when the notification arrives: its identifier is
/// the alarm's; the title is "Meeting starting", the body the meeting's title; default sound, time-sensitive;
/// user info "meetingID" and "title" (text), "fireDate" and "meetingStart" (seconds since 1970, with
/// fraction); it fires once, at the start of the second of local time that holds the fire date.
class NotificationAlarmScheduler final : public AlarmScheduler {
public:
    NotificationAlarmScheduler(
        std::shared_ptr<System::NotificationCenter> center, std::shared_ptr<System::LocalCalendar> calendar);

    /// Asks for alerts, sounds and badges; an error counts as a refusal.
    Task<bool> requestAuthorization() override;

    /// The identifiers of all pending requests, in the centre's order.
    Task<std::vector<Text>> scheduledAlarmIDs() override;

    /// Passes the centre's error on unchanged.
    Task<> schedule(ScheduledAlarm alarm) override;

    Task<> cancel(std::vector<Text> ids) override;

private:
    std::shared_ptr<System::NotificationCenter> m_center;
    std::shared_ptr<System::LocalCalendar> m_calendar;
};

}
