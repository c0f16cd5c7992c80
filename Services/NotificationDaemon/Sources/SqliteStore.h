#pragma once

#include "NotificationDaemon/NotificationStore.h"

#include <memory>
#include <string>
#include <vector>

struct sqlite3;
struct sqlite3_stmt;

namespace Tinkra::NotificationDaemon {

/// A store from a newer version of the daemon. It is left as it is.
class NewerStore : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// One SQLite file in WAL mode, in which an acknowledged change costs one fsync.
///
/// Two files stand beside it at times: `<file>.rebuilt`, a complete successor that has yet to take its place,
/// and `<file>.damaged-<time>`, one that could not be read any more; of these the newest five stay.
class SqliteStore final : public NotificationStore {
public:
    struct Contents {
        std::vector<StoredRequest> requests;
        Notes notes;
        bool wasDamaged = false;
        std::int64_t lost = 0; ///< as far as known
        std::vector<std::int64_t> damagedRows; ///< those of the lost ones that the store still holds
    };

    /// Opens or makes the store. What is readable of a damaged one is taken over into a fresh one. Throws
    /// NewerStore, and StoreError when no store can be kept there at all.
    SqliteStore(std::string file, Contents& contents);
    ~SqliteStore() override;

    /// What a store holds that cannot be written where it lies. Works on a private copy; empty when there is
    /// no store, or none that can be read.
    static Contents read(const std::string& file);

    void apply(const StoreChange& change, Durability durability) override;
    void replace(const std::vector<StoredRequest>& requests, const Notes& notes) override;

private:
    struct CloseDatabase {
        void operator()(sqlite3* database) const;
    };
    struct CloseStatement {
        void operator()(sqlite3_stmt* statement) const;
    };
    using Database = std::unique_ptr<sqlite3, CloseDatabase>;
    using Statement = std::unique_ptr<sqlite3_stmt, CloseStatement>;

    void openOrRecover(Contents& contents);
    void prepareStatements();
    void applyOnce(const StoreChange& change);
    void writeSuccessor(const std::vector<StoredRequest>& requests, const Notes& notes);
    void installSuccessor();
    void setAside();
    [[noreturn]] void fail(const std::string& doing) const;

    std::string m_file;
    Database m_database;
    Statement m_put;
    Statement m_erase;
    Statement m_note;
    Statement m_begin;
    Statement m_commit;
    Durability m_durability = Durability::SurvivesPowerCut;
};

}
