#pragma once

#include <cstdint>
#include <set>
#include <string>

namespace Tinkra::NotificationDaemon {

/// Marks that a request is being read or handed over, so that a crash can be blamed on it.
class BeingProcessed {
public:
    explicit BeingProcessed(std::int64_t id);
    ~BeingProcessed();
    BeingProcessed(const BeingProcessed&) = delete;
    BeingProcessed& operator=(const BeingProcessed&) = delete;
};

/// A list in a file of the requests the daemon crashed on: the handler of the fatal signals adds the one that
/// was being processed. A process that is killed from outside blames nobody.
class CrashedRequests {
public:
    /// Starts recording crashes into `file`, which need not exist. Without a file nothing is recorded.
    static void record(const std::string& file);

    /// Those that the daemon crashed on at least twice.
    static std::set<std::int64_t> repeated(const std::string& file);

    /// Once they are quarantined, the list starts anew.
    static void clear(const std::string& file);
};

}
