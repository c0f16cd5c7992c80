#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace Tinkra::System {

/// What a `FolderEventStore` has to say about its folders, for those who look after them.
struct FolderStoreStatus {
    struct Root {
        std::string path;
        bool isReachable = false;
        bool isWatched = false; ///< changes are reported; otherwise every query looks at every file again
        std::string trouble; ///< one sentence; empty when there is none

        friend bool operator==(const Root&, const Root&) = default;
    };

    struct Calendar {
        std::string identifier;
        std::string path;
        bool isRead = false; ///< its events were asked for
        bool isWatched = false;
        std::size_t files = 0;
        std::size_t events = 0;

        friend bool operator==(const Calendar&, const Calendar&) = default;
    };

    std::vector<Root> roots;
    std::vector<Calendar> calendars;
    std::vector<std::string>
        notices; ///< files and events that were not understood; one sentence each, 200 at most
    std::vector<std::string> leftOut; ///< files among them of which nothing is used
    std::size_t memoryUse = 0; ///< bytes on the heap for what was read

    friend bool operator==(const FolderStoreStatus&, const FolderStoreStatus&) = default;
};

}
