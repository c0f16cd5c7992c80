#include "FolderStore/FolderStoreWorld.h"

#include <algorithm>
#include <cstdlib>
#include <exception>
#include <fstream>
#include <utility>

namespace Tinkra::System {

FolderStoreWorld::FolderStoreWorld()
{
    setenv("TZ", "Europe/Zurich", 1);
    auto pattern = (std::filesystem::temp_directory_path() / "tinkra-folders-XXXXXX").string();
    folder = mkdtemp(pattern.data());
    root = folder / "calendars";
    std::filesystem::create_directory(root);
    options.roots = {root.string()};
    defaults->setData(options.grantKey, "granted");
    restart();
}

FolderStoreWorld::~FolderStoreWorld()
{
    store.reset();
    std::filesystem::remove_all(folder);
}

void FolderStoreWorld::write(const std::string& path, const std::string& text) const
{
    std::filesystem::create_directories((root / path).parent_path());
    std::ofstream file{root / path, std::ios::binary | std::ios::trunc};
    file << text;
}

void FolderStoreWorld::append(const std::string& path, const std::string& text) const
{
    std::ofstream file{root / path, std::ios::binary | std::ios::app};
    file << text;
}

void FolderStoreWorld::remove(const std::string& path) const
{
    std::filesystem::remove_all(root / path);
}

void FolderStoreWorld::rename(const std::string& from, const std::string& to) const
{
    std::filesystem::rename(root / from, root / to);
}

void FolderStoreWorld::restart()
{
    store.reset();
    store = std::make_unique<FolderEventStore>(defaults, options, files);
}

std::vector<StoredCalendar> FolderStoreWorld::calendars()
{
    return loop.runInRealTime(store->calendars());
}

std::vector<std::string> FolderStoreWorld::identifiers()
{
    std::vector<std::string> result;
    for (const auto& calendar : calendars())
        result.push_back(calendar.identifier);
    return result;
}

std::vector<std::string> FolderStoreWorld::titles(std::vector<std::string> calendarIdentifiers)
{
    std::vector<std::string> result;
    for (const auto& event : events(std::move(calendarIdentifiers)))
        result.push_back(event.details->title.value_or("(none)"));
    std::sort(result.begin(), result.end());
    return result;
}

std::vector<StoredEvent> FolderStoreWorld::events(std::vector<std::string> calendarIdentifiers)
{
    return events(kDecember, kDecember + 31 * kDay, std::move(calendarIdentifiers));
}

std::vector<StoredEvent> FolderStoreWorld::events(
    double from, double to, std::vector<std::string> calendarIdentifiers)
{
    return loop.runInRealTime(store->events(instantAt(from), instantAt(to), std::move(calendarIdentifiers)));
}

FolderStoreStatus FolderStoreWorld::status()
{
    return loop.runInRealTime(store->status());
}

std::string FolderStoreWorld::errorOfEvents()
{
    try {
        events();
        return {};
    } catch (const std::exception& error) {
        return error.what();
    }
}

std::string FolderStoreWorld::errorOfCalendars()
{
    try {
        calendars();
        return {};
    } catch (const std::exception& error) {
        return error.what();
    }
}

}
