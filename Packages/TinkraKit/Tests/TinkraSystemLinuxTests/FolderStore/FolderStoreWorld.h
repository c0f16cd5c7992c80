#pragma once

#include "FolderStore/CalendarTexts.h"
#include "FolderStore/TestFileSystem.h"
#include "TinkraSystemLinux/FolderEventStore.h"
#include "TinkraTestSupport/FakeDefaults.h"
#include "TinkraTestSupport/TestLoop.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <memory>
#include <string>
#include <vector>

namespace Tinkra::System {

/// A folder store over a private temporary root, access granted unless a test says otherwise.
class FolderStoreWorld : public testing::Test {
protected:
    FolderStoreWorld();
    ~FolderStoreWorld() override;

    /// Writes a file below the root, with the folders above it.
    void write(const std::string& path, const std::string& text) const;
    void append(const std::string& path, const std::string& text) const;
    void remove(const std::string& path) const;
    void rename(const std::string& from, const std::string& to) const;

    /// The same files in a new process, so to speak: nothing is remembered but the grant.
    void restart();

    std::vector<StoredCalendar> calendars();
    std::vector<std::string> identifiers();
    /// The titles of all occurrences in December 2026, sorted; "(none)" for those without.
    std::vector<std::string> titles(std::vector<std::string> calendarIdentifiers = {"Cloud/Work"});
    std::vector<StoredEvent> events(std::vector<std::string> calendarIdentifiers = {"Cloud/Work"});
    std::vector<StoredEvent> events(
        double from, double to, std::vector<std::string> calendarIdentifiers = {"Cloud/Work"});
    FolderStoreStatus status();
    /// The error that asking for the events of Cloud/Work ends with; empty when it does not.
    std::string errorOfEvents();
    std::string errorOfCalendars();

    std::filesystem::path folder; ///< private, holds the root and what tests put beside it
    std::filesystem::path root;
    TestLoop loop;
    std::shared_ptr<FakeDefaults> defaults = std::make_shared<FakeDefaults>();
    std::shared_ptr<TestFileSystem> files = std::make_shared<TestFileSystem>();
    FolderStoreOptions options;
    std::unique_ptr<FolderEventStore> store;
};

constexpr double kDecember = 1796083200; ///< 2026-12-01 00:00:00 UTC
constexpr double kDay = 86400;

}
