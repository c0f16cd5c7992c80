#include "NotificationDaemon/SqliteSalvage.h"

#include "NotificationDaemon/RequestRecord.h"

#include <algorithm>
#include <chrono>
#include <map>
#include <set>
#include <sqlite3.h>

namespace Tinkra::NotificationDaemon {

namespace {

constexpr auto kColumns = "SELECT id, state, since, record, checksum, offered FROM request ";
constexpr std::int64_t kMostLookups = 100000;
constexpr auto kLookupTime = std::chrono::milliseconds(500);

/// Steps through `sql` and calls `take` for each row; false when SQLite gave up.
template <typename Take> bool forEachRow(sqlite3* database, const std::string& sql, Take take)
{
    sqlite3_stmt* statement = nullptr;
    if (sqlite3_prepare_v2(database, sql.c_str(), -1, &statement, nullptr) != SQLITE_OK)
        return false;
    int result = SQLITE_ROW;
    while ((result = sqlite3_step(statement)) == SQLITE_ROW)
        take(statement);
    sqlite3_finalize(statement);
    return result == SQLITE_DONE;
}

/// The rows by id, so that one that is met twice counts once.
struct Rows {
    std::map<std::int64_t, StoredRequest> sound;
    std::set<std::int64_t> damaged;

    void take(sqlite3_stmt* statement)
    {
        StoredRequest row;
        row.id = sqlite3_column_int64(statement, 0);
        const auto state = sqlite3_column_int64(statement, 1);
        row.since = sqlite3_column_int64(statement, 2);
        const auto* bytes = static_cast<const char*>(sqlite3_column_blob(statement, 3));
        if (bytes != nullptr)
            row.record.assign(bytes, static_cast<std::size_t>(sqlite3_column_bytes(statement, 3)));
        row.offered = sqlite3_column_int64(statement, 5) != 0;
        const bool isState = state >= 0 && state <= static_cast<std::int64_t>(StoredState::Quarantined);
        row.state = isState ? static_cast<StoredState>(state) : StoredState::Pending;
        if (isState && row.id > 0 && sqlite3_column_int64(statement, 4) == storedChecksum(row))
            sound.emplace(row.id, std::move(row));
        else
            damaged.insert(row.id);
    }
};

bool readNotes(sqlite3* database, Notes& notes)
{
    return forEachRow(database, "SELECT name, value FROM note", [&](sqlite3_stmt* statement) {
        const auto* name = reinterpret_cast<const char*>(sqlite3_column_text(statement, 0));
        if (name != nullptr)
            notes[name] = sqlite3_column_int64(statement, 1);
    });
}

/// Asks for each row by its number, for a while. `high` 0: the end is not known.
void lookUpBetween(sqlite3* database, std::int64_t low, std::int64_t high, Rows& rows)
{
    sqlite3_stmt* statement = nullptr;
    if (sqlite3_prepare_v2(
            database, (std::string(kColumns) + "WHERE id = ?").c_str(), -1, &statement, nullptr)
        != SQLITE_OK)
        return;
    const auto end = std::min(high == 0 ? INT64_MAX : high, low + kMostLookups);
    const auto deadline = std::chrono::steady_clock::now() + kLookupTime;
    for (auto id = low + 1; id < end && std::chrono::steady_clock::now() < deadline; ++id) {
        sqlite3_bind_int64(statement, 1, id);
        if (sqlite3_step(statement) == SQLITE_ROW)
            rows.take(statement);
        sqlite3_reset(statement);
    }
    sqlite3_finalize(statement);
}

StoreReading toReading(Rows&& rows)
{
    StoreReading reading;
    reading.damaged.assign(rows.damaged.begin(), rows.damaged.end());
    for (auto& [id, row] : rows.sound)
        reading.requests.push_back(std::move(row));
    return reading;
}

}

std::int64_t storedChecksum(const StoredRequest& request)
{
    const auto numbers = std::to_string(request.id) + ' ' + std::to_string(static_cast<int>(request.state))
        + ' ' + std::to_string(request.since);
    return static_cast<std::int64_t>(checksum(request.record, checksum(numbers)));
}

StoreReading readStore(sqlite3* database)
{
    Rows rows;
    const bool all = forEachRow(database, std::string(kColumns) + "ORDER BY id",
        [&](sqlite3_stmt* statement) { rows.take(statement); });
    auto reading = toReading(std::move(rows));
    reading.isComplete = readNotes(database, reading.notes) && all;
    return reading;
}

StoreReading salvageStore(sqlite3* database)
{
    // Lets SQLite read what is there of a file that is shorter than it should be.
    sqlite3_db_config(database, SQLITE_DBCONFIG_DEFENSIVE, 0, nullptr);
    sqlite3_exec(database, "PRAGMA writable_schema=ON", nullptr, nullptr, nullptr);

    Rows rows;
    std::int64_t low = 0;
    std::int64_t high = 0;
    const auto takeUp = [&](sqlite3_stmt* statement) {
        low = std::max(low, static_cast<std::int64_t>(sqlite3_column_int64(statement, 0)));
        rows.take(statement);
    };
    const auto takeDown = [&](sqlite3_stmt* statement) {
        high = sqlite3_column_int64(statement, 0);
        rows.take(statement);
    };
    if (!forEachRow(database, std::string(kColumns) + "ORDER BY id", takeUp)) {
        forEachRow(database, std::string(kColumns) + "ORDER BY id DESC", takeDown);
        lookUpBetween(database, low, high, rows);
    }
    auto reading = toReading(std::move(rows));
    readNotes(database, reading.notes);
    reading.isComplete = false;
    return reading;
}

}
