#include "NotificationDaemon/RequestRecord.h"
#include "NotificationDaemon/SqliteSalvage.h"
#include "NotificationDaemon/SqliteStore.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <memory>
#include <random>
#include <sqlite3.h>
#include <sys/stat.h>

namespace Tinkra::NotificationDaemon {
namespace {

namespace fs = std::filesystem;

StoredRequest request(std::int64_t id)
{
    NotificationDaemonProtocol::Request request{.identifier = "request " + std::to_string(id),
        .title = "Meeting starting",
        .body = std::string(100, 'b'),
        .userInfo = {{"fireDate", 1795175700.25}},
        .components = {2026, 11, 20, 12, 55, 0}};
    return {.id = id, .since = 1795170000, .record = encodeRecord(request)};
}

std::vector<StoredRequest> requests(std::int64_t count)
{
    std::vector<StoredRequest> all;
    for (std::int64_t id = 1; id <= count; ++id)
        all.push_back(request(id));
    return all;
}

class SqliteStoreTest : public testing::Test {
protected:
    void SetUp() override
    {
        std::string name = testing::TempDir() + "storeXXXXXX";
        m_folder = mkdtemp(name.data());
        m_file = (m_folder / "notifications.db").string();
    }
    void TearDown() override { fs::remove_all(m_folder); }

    /// Opens the store, and keeps it open until the next call.
    SqliteStore::Contents open()
    {
        m_store.reset();
        SqliteStore::Contents contents;
        m_store = std::make_unique<SqliteStore>(m_file, contents);
        return contents;
    }

    void fillAndClose(std::int64_t count)
    {
        open();
        m_store->apply({.put = requests(count), .erase = {}, .notes = {{"lastContact", 7}}},
            Durability::SurvivesPowerCut);
        m_store.reset();
    }

    std::string bytes() const
    {
        std::ifstream file(m_file, std::ios::binary);
        return {std::istreambuf_iterator<char>(file), {}};
    }
    void write(const std::string& bytes) const { std::ofstream(m_file, std::ios::binary) << bytes; }

    std::size_t damagedFiles() const
    {
        std::size_t count = 0;
        for (const auto& entry : fs::directory_iterator(m_folder))
            count += entry.path().filename().string().find(".damaged-") != std::string::npos ? 1 : 0;
        return count;
    }

    std::vector<std::string> damagedContents() const
    {
        std::vector<std::string> contents;
        for (const auto& entry : fs::directory_iterator(m_folder)) {
            std::ifstream file(entry.path(), std::ios::binary);
            if (entry.path().filename().string().find(".damaged-") != std::string::npos)
                contents.emplace_back(std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>());
        }
        return contents;
    }

    fs::path m_folder;
    std::string m_file;
    std::unique_ptr<SqliteStore> m_store;
};

TEST_F(SqliteStoreTest, StartsEmptyAndSound)
{
    const auto contents = open();
    EXPECT_THAT(contents.requests, testing::IsEmpty());
    EXPECT_FALSE(contents.wasDamaged);
}

TEST_F(SqliteStoreTest, GivesBackWhatWasPutErasedAndNoted)
{
    open();
    auto shown = request(2);
    shown.state = StoredState::Shown;
    shown.offered = true;
    m_store->apply({.put = requests(3), .erase = {}, .notes = {{"a", 1}}}, Durability::SurvivesPowerCut);
    m_store->apply({.put = {shown}, .erase = {1}, .notes = {{"a", 2}}}, Durability::SurvivesCrash);

    const auto contents = open();

    EXPECT_THAT(contents.requests, testing::ElementsAre(shown, request(3)));
    EXPECT_EQ(contents.notes, (Notes{{"a", 2}}));
}

TEST_F(SqliteStoreTest, IsReadableByItsOwnerAlone)
{
    open();
    m_store->apply({.put = requests(1), .erase = {}, .notes = {}}, Durability::SurvivesPowerCut);
    for (const auto& entry : fs::directory_iterator(m_folder))
        EXPECT_EQ(entry.status().permissions(), fs::perms::owner_read | fs::perms::owner_write)
            << entry.path();
}

TEST_F(SqliteStoreTest, TakesAnythingForAnIdentifierAndAText)
{
    open();
    auto odd = request(1);
    odd.record = std::string("\0'; DROP TABLE request; --\xff", 27);
    m_store->apply({.put = {odd}, .erase = {}, .notes = {}}, Durability::SurvivesPowerCut);
    EXPECT_THAT(open().requests, testing::ElementsAre(odd));
}

TEST_F(SqliteStoreTest, CanBeReplacedWhole)
{
    fillAndClose(3);
    open();
    m_store->replace({request(9)}, {{"b", 1}});
    m_store->apply({.put = {request(10)}, .erase = {}, .notes = {}}, Durability::SurvivesPowerCut);

    const auto contents = open();

    EXPECT_THAT(contents.requests, testing::ElementsAre(request(9), request(10)));
    EXPECT_EQ(contents.notes, (Notes{{"b", 1}}));
    EXPECT_EQ(damagedFiles(), 0U);
}

TEST_F(SqliteStoreTest, FinishesAReplacementThatACrashInterrupted)
{
    fillAndClose(3);
    fs::rename(m_file, m_file + ".rebuilt");
    write("the old store, about to go");
    std::ofstream(m_file + "-wal") << "its log";

    const auto contents = open();

    EXPECT_THAT(contents.requests, testing::ElementsAreArray(requests(3)));
    EXPECT_FALSE(contents.wasDamaged);
}

TEST_F(SqliteStoreTest, IgnoresADraftThatACrashLeftBehind)
{
    fillAndClose(3);
    std::ofstream(m_file + ".draft") << "half a store";
    EXPECT_EQ(open().requests.size(), 3U);
    m_store->replace({request(9)}, {});
    EXPECT_THAT(open().requests, testing::ElementsAre(request(9)));
}

TEST_F(SqliteStoreTest, OpensAfreshBesideAStoreThatIsEmptyZeroedOrRandom)
{
    std::mt19937 random(1);
    std::string noise;
    for (int i = 0; i < 20000; ++i)
        noise.push_back(static_cast<char>(random()));
    std::size_t kept = 0;
    for (const auto& bad : {std::string(), std::string(8192, '\0'), noise, std::string("SQLite format 3")}) {
        write(bad);
        const auto contents = open();
        EXPECT_TRUE(contents.wasDamaged);
        EXPECT_THAT(contents.requests, testing::IsEmpty());
        EXPECT_EQ(damagedFiles(), ++kept) << "kept under another name";
        m_store->apply({.put = requests(1), .erase = {}, .notes = {}}, Durability::SurvivesPowerCut);
        EXPECT_EQ(open().requests.size(), 1U);
        m_store.reset();
    }
}

TEST_F(SqliteStoreTest, ASymbolicLinkOrADirectoryInItsPlaceIsNotFollowed)
{
    const auto victim = m_folder / "victim";
    std::ofstream(victim) << "precious";
    fs::create_symlink(victim, m_file);
    EXPECT_TRUE(open().wasDamaged);
    m_store.reset();
    EXPECT_EQ(fs::file_size(victim), 8U);

    fs::remove(m_file);
    fs::create_directory(m_file);
    EXPECT_TRUE(open().wasDamaged);
}

TEST_F(SqliteStoreTest, SurvivesBeingCutShortAnywhere)
{
    fillAndClose(60);
    const auto whole = bytes();
    std::mt19937 random(2);
    std::vector<std::size_t> lengths;
    for (std::size_t page = 0; page < whole.size(); page += 4096)
        lengths.push_back(page);
    for (int i = 0; i < 64; ++i)
        lengths.push_back(random() % whole.size());
    std::size_t saved = 0;
    for (const auto length : lengths) {
        write(whole.substr(0, length));
        const auto contents = open();
        EXPECT_TRUE(contents.wasDamaged) << length;
        for (const auto& row : contents.requests)
            EXPECT_EQ(row, request(row.id));
        saved += contents.requests.size();
        m_store.reset();
    }
    EXPECT_GT(saved, 20 * lengths.size()) << "what the file still holds is taken over";
}

TEST_F(SqliteStoreTest, LosesOnlyWhatLiesOnADamagedPage)
{
    constexpr std::int64_t kCount = 400;
    fillAndClose(kCount);
    const auto whole = bytes();
    constexpr std::size_t kPage = 4096;
    const std::size_t perPage = kPage / request(1).record.size();
    std::mt19937 random(3);
    int noticed = 0;
    // Behind the first pages, which hold the schema and the roots.
    for (int i = 0; i < 150; ++i) {
        auto damaged = whole;
        const auto at = 4 * kPage + random() % (whole.size() - 4 * kPage);
        damaged[at] = static_cast<char>(damaged[at] ^ (1 << (random() % 8)));
        write(damaged);
        const auto contents = open();
        EXPECT_GE(contents.requests.size(), kCount - perPage) << "byte " << at;
        for (const auto& row : contents.requests) {
            auto expected = request(row.id);
            expected.offered = row.offered;
            EXPECT_EQ(row, expected) << "byte " << at;
        }
        if (contents.requests.size() < kCount) {
            EXPECT_TRUE(contents.wasDamaged) << "byte " << at;
            ++noticed;
        }
        m_store.reset();
    }
    EXPECT_GT(noticed, 50);
}

TEST_F(SqliteStoreTest, KeepsNearlyEverythingWholeWhicheverByteOfItsFileIsWrong)
{
    constexpr std::size_t kCount = 40;
    constexpr std::size_t kFaults = 2000;
    fillAndClose(kCount);
    const auto whole = bytes();
    std::mt19937 random(11);
    std::size_t left = 0;
    for (std::size_t i = 0; i < kFaults; ++i) {
        const auto at = random() % whole.size();
        auto damaged = whole;
        damaged[at] = static_cast<char>(damaged[at] ^ (1 << (random() % 8)));
        write(damaged);
        const auto contents = open();
        for (const auto& row : contents.requests) {
            auto expected = request(row.id);
            expected.offered = row.offered;
            EXPECT_EQ(row, expected) << "byte " << at;
        }
        EXPECT_TRUE(contents.requests.size() == kCount || contents.wasDamaged) << "byte " << at;
        left += contents.requests.size();
        m_store.reset();
    }
    EXPECT_GT(left, kFaults * kCount * 95 / 100);
}

TEST_F(SqliteStoreTest, NamesADamagedRowUntilItIsErased)
{
    fillAndClose(3);
    auto damaged = bytes();
    const auto at = damaged.find(request(2).record);
    ASSERT_NE(at, std::string::npos);
    damaged[at + 1] = static_cast<char>(damaged[at + 1] ^ 1);
    write(damaged);

    const auto contents = open();
    EXPECT_EQ(contents.lost, 1);
    EXPECT_THAT(contents.damagedRows, testing::ElementsAre(2));
    m_store->apply({.put = {}, .erase = contents.damagedRows, .notes = {}}, Durability::SurvivesPowerCut);
    m_store.reset();

    const auto mended = open();
    EXPECT_FALSE(mended.wasDamaged);
    EXPECT_THAT(mended.requests, testing::SizeIs(2));
}

TEST_F(SqliteStoreTest, KeepsOnlyTheNewestFewOfItsDamagedPredecessors)
{
    const auto old = m_folder / "notifications.db.damaged-5";
    std::ofstream(old) << "the oldest";
    std::ofstream(old.string() + "-wal") << "and its log";
    fs::last_write_time(old, fs::file_time_type::clock::now() - std::chrono::hours(1));
    for (int i = 0; i < 12; ++i) {
        write("damage number " + std::to_string(i));
        EXPECT_TRUE(open().wasDamaged);
        EXPECT_THAT(damagedContents(), testing::Contains("damage number " + std::to_string(i)));
    }
    EXPECT_EQ(damagedFiles(), 5U);
    EXPECT_FALSE(fs::exists(old));
    EXPECT_FALSE(fs::exists(old.string() + "-wal"));
}

TEST_F(SqliteStoreTest, LeavesAStoreOfANewerVersionAsItIs)
{
    fillAndClose(3);
    sqlite3* database = nullptr;
    sqlite3_open(m_file.c_str(), &database);
    sqlite3_exec(database, "PRAGMA journal_mode=DELETE; PRAGMA user_version=3", nullptr, nullptr, nullptr);
    sqlite3_close(database);
    const auto before = bytes();

    EXPECT_THROW(open(), NewerStore);

    EXPECT_EQ(bytes(), before);
    EXPECT_EQ(damagedFiles(), 0U);
}

TEST_F(SqliteStoreTest, MigratesAnOlderVersion)
{
    sqlite3* database = nullptr;
    sqlite3_open(m_file.c_str(), &database);
    const auto row = request(1);
    sqlite3_exec(database,
        "PRAGMA application_id=1414417234; PRAGMA user_version=1;"
        "CREATE TABLE request (id INTEGER PRIMARY KEY, state INTEGER NOT NULL, since INTEGER NOT NULL,"
        "                      record BLOB NOT NULL, checksum INTEGER NOT NULL);"
        "CREATE TABLE note (name TEXT PRIMARY KEY, value INTEGER NOT NULL) WITHOUT ROWID;"
        "INSERT INTO note VALUES ('lastContact', 5)",
        nullptr, nullptr, nullptr);
    sqlite3_stmt* insert = nullptr;
    sqlite3_prepare_v2(database, "INSERT INTO request VALUES (1, 0, ?, ?, ?)", -1, &insert, nullptr);
    sqlite3_bind_int64(insert, 1, row.since);
    sqlite3_bind_blob(insert, 2, row.record.data(), static_cast<int>(row.record.size()), SQLITE_STATIC);
    sqlite3_bind_int64(insert, 3, storedChecksum(row));
    EXPECT_EQ(sqlite3_step(insert), SQLITE_DONE);
    sqlite3_finalize(insert);
    sqlite3_close(database);

    for (int start = 0; start < 2; ++start) {
        const auto contents = open();
        EXPECT_THAT(contents.requests, testing::ElementsAre(row));
        EXPECT_EQ(contents.notes, (Notes{{"lastContact", 5}}));
        EXPECT_FALSE(contents.wasDamaged);
    }
    m_store->apply({.put = {request(2)}, .erase = {}, .notes = {}}, Durability::SurvivesPowerCut);
}

TEST_F(SqliteStoreTest, DoesNotKeepDeletedTitles)
{
    open();
    auto secret = request(1);
    secret.record = "the secret title";
    m_store->apply({.put = {secret, request(2)}, .erase = {}, .notes = {}}, Durability::SurvivesPowerCut);
    m_store->apply({.put = {}, .erase = {1}, .notes = {}}, Durability::SurvivesPowerCut);
    m_store.reset();
    EXPECT_EQ(bytes().find("secret title"), std::string::npos);
}

}
}
