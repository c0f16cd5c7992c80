#include "NotificationDaemon/SqliteStore.h"

#include "NotificationDaemon/CrashPoint.h"
#include "NotificationDaemon/Log.h"
#include "NotificationDaemon/RequestRecord.h"
#include "NotificationDaemon/SqliteSalvage.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <ctime>
#include <fcntl.h>
#include <filesystem>
#include <functional>
#include <sqlite3.h>
#include <unistd.h>

namespace Tinkra::NotificationDaemon {

namespace {

constexpr int kApplicationId = 0x544e4b52;
constexpr int kSchemaVersion = 2;
constexpr std::size_t kDamagedStoresKept = 5;

constexpr auto kSchema = R"(
    CREATE TABLE request (
        id       INTEGER PRIMARY KEY,
        state    INTEGER NOT NULL,
        since    INTEGER NOT NULL,
        record   BLOB    NOT NULL,
        checksum INTEGER NOT NULL,
        offered  INTEGER NOT NULL DEFAULT 0
    );
    CREATE TABLE note (name TEXT PRIMARY KEY, value INTEGER NOT NULL) WITHOUT ROWID;
)";

/// What older versions of the store lack; entry N brings version N + 1 to N + 2.
constexpr const char* kMigrations[] = {
    "ALTER TABLE request ADD COLUMN offered INTEGER NOT NULL DEFAULT 0;",
};

bool isBroken(int result)
{
    switch (result & 0xff) {
    case SQLITE_FULL:
    case SQLITE_NOMEM:
    case SQLITE_BUSY:
    case SQLITE_LOCKED:
        return false;
    default:
        return true;
    }
}

StoreError storeError(sqlite3* database, const std::string& doing)
{
    const int result = database != nullptr ? sqlite3_extended_errcode(database) : SQLITE_NOMEM;
    const auto kind = isBroken(result) ? StoreError::Kind::Broken : StoreError::Kind::Full;
    return {kind, doing + ": " + (database != nullptr ? sqlite3_errmsg(database) : "out of memory")};
}

void execute(sqlite3* database, const std::string& sql)
{
    if (sqlite3_exec(database, sql.c_str(), nullptr, nullptr, nullptr) != SQLITE_OK)
        throw storeError(database, sql.substr(0, sql.find(' ')));
}

std::string firstValue(sqlite3* database, const char* sql)
{
    sqlite3_stmt* statement = nullptr;
    if (sqlite3_prepare_v2(database, sql, -1, &statement, nullptr) != SQLITE_OK)
        throw storeError(database, sql);
    const int result = sqlite3_step(statement);
    std::string value;
    if (result == SQLITE_ROW) {
        const auto* text = sqlite3_column_text(statement, 0);
        value = text != nullptr ? reinterpret_cast<const char*>(text) : "";
    }
    sqlite3_finalize(statement);
    if (result != SQLITE_ROW && result != SQLITE_DONE)
        throw storeError(database, sql);
    return value;
}

int firstNumber(sqlite3* database, const char* sql)
{
    return std::atoi(firstValue(database, sql).c_str());
}

sqlite3* openDatabase(const std::string& file)
{
    sqlite3* database = nullptr;
    const int flags =
        SQLITE_OPEN_READWRITE | SQLITE_OPEN_NOMUTEX | SQLITE_OPEN_NOFOLLOW | SQLITE_OPEN_EXRESCODE;
    if (sqlite3_open_v2(file.c_str(), &database, flags, nullptr) != SQLITE_OK) {
        const auto error = storeError(database, "opening " + file);
        sqlite3_close(database);
        throw error;
    }
    // Somebody may be looking at it with a tool of his own.
    constexpr int kPatience = 2000;
    sqlite3_busy_timeout(database, kPatience);
    // Alone with the file: no shared memory file, no lock calls.
    sqlite3_exec(database, "PRAGMA locking_mode=EXCLUSIVE", nullptr, nullptr, nullptr);
    sqlite3_db_config(database, SQLITE_DBCONFIG_DEFENSIVE, 1, nullptr);
    sqlite3_db_config(database, SQLITE_DBCONFIG_TRUSTED_SCHEMA, 0, nullptr);
    return database;
}

/// A disk that damages a store at every start must not be filled with them. `newest` stays in any case,
/// whatever the clock says.
void removeOldDamagedStores(const std::filesystem::path& store, const std::filesystem::path& newest)
{
    namespace fs = std::filesystem;
    const auto prefix = store.filename().string() + ".damaged-";
    std::vector<std::pair<fs::file_time_type, fs::path>> others;
    std::error_code failure;
    for (fs::directory_iterator entry(store.parent_path(), failure), end; !failure && entry != end;
         entry.increment(failure)) {
        const auto name = entry->path().filename().string();
        if (name.starts_with(prefix) && !name.ends_with("-wal") && entry->path() != newest)
            others.emplace_back(entry->last_write_time(failure), entry->path());
    }
    std::sort(others.begin(), others.end(), std::greater<>());
    for (std::size_t i = kDamagedStoresKept - 1; i < others.size(); ++i) {
        fs::remove(others[i].second, failure);
        fs::remove(others[i].second.string() + "-wal", failure);
    }
}

/// The version in the header, read without SQLite so that a newer file is not even recovered. 0 when there is
/// none.
int versionInHeader(const std::string& file)
{
    const int fd = open(file.c_str(), O_RDONLY | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK);
    if (fd < 0)
        return 0;
    unsigned char header[100] = {};
    const auto got = read(fd, header, sizeof header);
    close(fd);
    const auto number = [&](int at) {
        return static_cast<int>(static_cast<unsigned>(header[at]) << 24U
            | static_cast<unsigned>(header[at + 1]) << 16U | static_cast<unsigned>(header[at + 2]) << 8U
            | static_cast<unsigned>(header[at + 3]));
    };
    constexpr int kUserVersionAt = 60;
    constexpr int kApplicationIdAt = 68;
    const bool isOurs = got == static_cast<ssize_t>(sizeof header)
        && std::memcmp(header, "SQLite format 3", 16) == 0 && number(kApplicationIdAt) == kApplicationId;
    return isOurs ? number(kUserVersionAt) : 0;
}

NewerStore newerStore(int version)
{
    return NewerStore("the store has version " + std::to_string(version) + ", this daemon knows "
        + std::to_string(kSchemaVersion));
}

void syncDirectoryOf(const std::string& file)
{
    const auto directory = std::filesystem::path(file).parent_path();
    const int fd = open(directory.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    const int result = fd >= 0 ? fsync(fd) : -1;
    if (fd >= 0)
        close(fd);
    if (result != 0)
        throw StoreError(StoreError::Kind::Broken, "syncing " + directory.string() + " failed");
}

void rename(const std::string& from, const std::string& to)
{
    std::error_code error;
    std::filesystem::rename(from, to, error);
    if (error)
        throw StoreError(StoreError::Kind::Broken, "renaming " + from + ": " + error.message());
}

void bindRequest(sqlite3_stmt* put, const StoredRequest& request)
{
    sqlite3_reset(put);
    sqlite3_bind_int64(put, 1, request.id);
    sqlite3_bind_int64(put, 2, static_cast<int>(request.state));
    sqlite3_bind_int64(put, 3, request.since);
    sqlite3_bind_blob64(put, 4, request.record.data(), request.record.size(), SQLITE_STATIC);
    sqlite3_bind_int64(put, 5, storedChecksum(request));
    sqlite3_bind_int64(put, 6, request.offered ? 1 : 0);
}

constexpr auto kPut =
    "INSERT OR REPLACE INTO request (id, state, since, record, checksum, offered) VALUES (?, ?, ?, ?, ?, ?)";
constexpr auto kErase = "DELETE FROM request WHERE id = ?";
constexpr auto kNote = "INSERT OR REPLACE INTO note (name, value) VALUES (?, ?)";

}

void SqliteStore::CloseDatabase::operator()(sqlite3* database) const
{
    sqlite3_close_v2(database);
}

void SqliteStore::CloseStatement::operator()(sqlite3_stmt* statement) const
{
    sqlite3_finalize(statement);
}

SqliteStore::SqliteStore(std::string file, Contents& contents)
    : m_file(std::move(file))
{
    if (std::filesystem::exists(m_file + ".rebuilt"))
        installSuccessor();
    if (const int version = versionInHeader(m_file); version > kSchemaVersion)
        throw newerStore(version);
    crashPoint("opening");
    std::error_code error;
    if (std::filesystem::symlink_status(m_file, error).type() == std::filesystem::file_type::not_found) {
        writeSuccessor({}, {});
        installSuccessor();
    }
    openOrRecover(contents);
}

SqliteStore::~SqliteStore() = default;

SqliteStore::Contents SqliteStore::read(const std::string& file)
{
    namespace fs = std::filesystem;
    Contents contents;
    std::error_code error;
    auto folder = (fs::temp_directory_path(error) / "tinkra-notifierd-XXXXXX").string();
    if (error || versionInHeader(file) > kSchemaVersion || mkdtemp(folder.data()) == nullptr)
        return contents;
    const auto copy = folder + "/store";
    for (const auto* part : {"", "-wal"}) {
        fs::copy_file(file + part, copy + part, error);
        fs::permissions(copy + part, fs::perms::owner_read | fs::perms::owner_write, error);
    }
    try {
        const Database database(openDatabase(copy));
        const auto reading = salvageStore(database.get());
        contents.requests = reading.requests;
        contents.notes = reading.notes;
    } catch (const StoreError& unreadable) {
        log(LogLevel::Error, std::string("nothing is taken over: ") + unreadable.what());
    }
    fs::remove_all(folder, error);
    return contents;
}

void SqliteStore::fail(const std::string& doing) const
{
    throw storeError(m_database.get(), doing);
}

void SqliteStore::openOrRecover(Contents& contents)
{
    try {
        m_database.reset(openDatabase(m_file));
        auto* database = m_database.get();
        if (firstNumber(database, "PRAGMA application_id") != kApplicationId)
            throw StoreError(StoreError::Kind::Broken, m_file + " is no store of ours");
        const int version = firstNumber(database, "PRAGMA user_version");
        if (version > kSchemaVersion) {
            // So far only its log knows of the version; that stays as it is, too.
            sqlite3_db_config(database, SQLITE_DBCONFIG_NO_CKPT_ON_CLOSE, 1, nullptr);
            throw newerStore(version);
        }
        if (version < 1)
            throw StoreError(StoreError::Kind::Broken, m_file + " has an impossible version");
        if (const auto report = firstValue(database, "PRAGMA quick_check(1)"); report != "ok")
            throw StoreError(StoreError::Kind::Broken, report);
        if (version < kSchemaVersion) {
            execute(database, "BEGIN IMMEDIATE");
            for (int step = version; step < kSchemaVersion; ++step)
                execute(database, kMigrations[step - 1]);
            crashPoint("migrating");
            execute(database, "PRAGMA user_version=" + std::to_string(kSchemaVersion));
            execute(database, "COMMIT");
        }
        const auto read = readStore(database);
        contents.requests = read.requests;
        contents.notes = read.notes;
        contents.lost = static_cast<std::int64_t>(read.damaged.size());
        contents.wasDamaged = !read.damaged.empty();
        contents.damagedRows = read.damaged;
        if (!read.isComplete)
            throw StoreError(StoreError::Kind::Broken, "not every row could be read");
        prepareStatements();
    } catch (const StoreError& error) {
        if (error.kind() != StoreError::Kind::Broken)
            throw;
        log(LogLevel::Error, std::string("the store is damaged: ") + error.what());
        const auto saved = m_database ? salvageStore(m_database.get()) : StoreReading{};
        contents = {.requests = saved.requests,
            .notes = saved.notes,
            .wasDamaged = true,
            .lost = static_cast<std::int64_t>(saved.damaged.size())};
        m_database.reset();
        // Together with what was saved, so that no crash makes us forget that something was lost.
        contents.notes[kStoreWasReset] = 1;
        writeSuccessor(contents.requests, contents.notes);
        crashPoint("salvaging");
        setAside();
        installSuccessor();
        m_database.reset(openDatabase(m_file));
        prepareStatements();
    }
}

void SqliteStore::prepareStatements()
{
    auto* database = m_database.get();
    execute(database, "PRAGMA journal_mode=WAL");
    execute(database, "PRAGMA synchronous=FULL");
    // Small disks: the log is folded in early. Deleted titles do not stay behind.
    execute(database,
        "PRAGMA wal_autocheckpoint=256; PRAGMA journal_size_limit=1048576; PRAGMA secure_delete=ON;");
    m_durability = Durability::SurvivesPowerCut;
    const auto prepare = [&](const char* sql) {
        sqlite3_stmt* statement = nullptr;
        if (sqlite3_prepare_v3(database, sql, -1, SQLITE_PREPARE_PERSISTENT, &statement, nullptr)
            != SQLITE_OK)
            fail("preparing");
        return Statement(statement);
    };
    m_put = prepare(kPut);
    m_erase = prepare(kErase);
    m_note = prepare(kNote);
    m_begin = prepare("BEGIN IMMEDIATE");
    m_commit = prepare("COMMIT");
}

void SqliteStore::apply(const StoreChange& change, Durability durability)
{
    if (!m_database || !m_commit)
        throw StoreError(StoreError::Kind::Broken, "the store is not open");
    if (durability != m_durability) {
        // In WAL mode NORMAL hands a commit to the system and does not wait for the disk.
        execute(m_database.get(),
            durability == Durability::SurvivesPowerCut ? "PRAGMA synchronous=FULL"
                                                       : "PRAGMA synchronous=NORMAL");
        m_durability = durability;
    }
    try {
        applyOnce(change);
    } catch (const StoreError& error) {
        if (error.kind() == StoreError::Kind::Broken)
            throw;
        // A full disk may still have room once the log is folded in.
        sqlite3_wal_checkpoint_v2(m_database.get(), nullptr, SQLITE_CHECKPOINT_TRUNCATE, nullptr, nullptr);
        applyOnce(change);
    }
}

void SqliteStore::applyOnce(const StoreChange& change)
{
    const auto run = [&](sqlite3_stmt* statement) {
        const int result = sqlite3_step(statement);
        if (result != SQLITE_DONE) {
            const auto error = storeError(m_database.get(), "writing");
            sqlite3_reset(statement);
            sqlite3_exec(m_database.get(), "ROLLBACK", nullptr, nullptr, nullptr);
            throw error;
        }
        sqlite3_reset(statement);
    };
    run(m_begin.get());
    for (const auto& request : change.put) {
        bindRequest(m_put.get(), request);
        run(m_put.get());
    }
    for (const auto id : change.erase) {
        sqlite3_bind_int64(m_erase.get(), 1, id);
        run(m_erase.get());
    }
    for (const auto& [name, value] : change.notes) {
        sqlite3_bind_text(m_note.get(), 1, name.data(), static_cast<int>(name.size()), SQLITE_STATIC);
        sqlite3_bind_int64(m_note.get(), 2, value);
        run(m_note.get());
    }
    run(m_commit.get());
}

void SqliteStore::replace(const std::vector<StoredRequest>& requests, const Notes& notes)
{
    writeSuccessor(requests, notes);
    m_put.reset();
    m_erase.reset();
    m_note.reset();
    m_begin.reset();
    m_commit.reset();
    m_database.reset();
    installSuccessor();
    m_database.reset(openDatabase(m_file));
    prepareStatements();
}

/// Writes a complete store beside the present one and makes it durable.
void SqliteStore::writeSuccessor(const std::vector<StoredRequest>& requests, const Notes& notes)
{
    const auto draft = m_file + ".draft";
    std::error_code ignored;
    std::filesystem::remove(draft, ignored);
    std::filesystem::remove(draft + "-journal", ignored);
    const int fd = open(draft.c_str(), O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC | O_NOFOLLOW, 0600);
    if (fd < 0)
        throw StoreError(StoreError::Kind::Broken, "creating " + draft + " failed");
    close(fd);

    Database database(openDatabase(draft));
    execute(database.get(), "PRAGMA journal_mode=MEMORY");
    execute(database.get(), "PRAGMA synchronous=FULL");
    execute(database.get(), "PRAGMA application_id=" + std::to_string(kApplicationId));
    execute(database.get(), "PRAGMA user_version=" + std::to_string(kSchemaVersion));
    execute(database.get(), "BEGIN IMMEDIATE");
    execute(database.get(), kSchema);
    {
        const auto insert = [&](const char* sql, const auto& rows, auto bind) {
            sqlite3_stmt* raw = nullptr;
            if (sqlite3_prepare_v2(database.get(), sql, -1, &raw, nullptr) != SQLITE_OK)
                throw storeError(database.get(), "preparing");
            const Statement statement(raw);
            for (const auto& row : rows) {
                bind(statement.get(), row);
                if (sqlite3_step(statement.get()) != SQLITE_DONE)
                    throw storeError(database.get(), "writing " + draft);
            }
        };
        insert(kPut, requests, bindRequest);
        insert(kNote, notes, [](sqlite3_stmt* statement, const auto& note) {
            sqlite3_reset(statement);
            sqlite3_bind_text(
                statement, 1, note.first.data(), static_cast<int>(note.first.size()), SQLITE_STATIC);
            sqlite3_bind_int64(statement, 2, note.second);
        });
    }
    execute(database.get(), "COMMIT");
    database.reset();
    crashPoint("replacing");
    rename(draft, m_file + ".rebuilt");
    syncDirectoryOf(m_file);
}

/// Puts the successor in place. Safe to begin again after a crash at any of its steps: the old log, which
/// would be applied to the new file, goes first, and the successor is complete without it.
void SqliteStore::installSuccessor()
{
    std::error_code ignored;
    std::filesystem::remove(m_file + "-wal", ignored);
    std::filesystem::remove(m_file + "-shm", ignored);
    std::filesystem::remove(m_file + "-journal", ignored);
    crashPoint("replaced");
    rename(m_file + ".rebuilt", m_file);
    syncDirectoryOf(m_file);
}

/// Keeps a damaged store under another name, so that somebody can look at it.
void SqliteStore::setAside()
{
    const auto stem = m_file + ".damaged-" + std::to_string(std::time(nullptr));
    auto name = stem;
    for (int i = 2; std::filesystem::exists(name); ++i)
        name = stem + "-" + std::to_string(i);
    rename(m_file, name);
    std::error_code ignored;
    std::filesystem::rename(m_file + "-wal", name + "-wal", ignored);
    log(LogLevel::Error, "the damaged store is kept as " + name);
    removeOldDamagedStores(m_file, name);
}

}
