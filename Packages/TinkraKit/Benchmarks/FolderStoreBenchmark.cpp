// store_benchmark DIR [--base EPOCH] [--libical PROGRAM] [--rounds N]
//
// DIR holds two accounts of equal content: `single` with one file per calendar, `vdir` with one file per
// event. Prints medians of the rounds and ratios within this run: the folder store, cold, against a line scan
// of the same files, and against PROGRAM when it is given (called as PROGRAM EPOCH DAYS PATH); then the store
// again after one file was written anew, and unchanged; then its memory. The page cache is warm throughout.

#include "LineScan.h"
#include "TinkraSystemLinux/FolderEventStore.h"

#include <asio/co_spawn.hpp>
#include <asio/io_context.hpp>
#include <malloc.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

namespace {

using namespace Tinkra;
using System::FolderEventStore;
namespace fs = std::filesystem;

constexpr double kDays = 30;

struct Arguments {
    std::string folder;
    double base = 1795132800; // 2026-11-20 00:00:00 UTC
    std::string libical;
    int rounds = 7;
};

class MemoryDefaults final : public System::Defaults {
public:
    std::optional<std::string> data(std::string_view) override { return "granted"; }
    void setData(std::string_view, std::string_view) override { }
};

template <typename T> T run(Task<T> task)
{
    asio::io_context context;
    std::optional<T> result;
    std::exception_ptr failure;
    asio::co_spawn(context, std::move(task), [&](std::exception_ptr error, T value) {
        failure = std::move(error);
        result = std::move(value);
    });
    context.run();
    if (failure)
        std::rethrow_exception(failure);
    return std::move(*result);
}

std::unique_ptr<FolderEventStore> open(const Arguments& arguments)
{
    System::FolderStoreOptions options;
    options.roots = {arguments.folder};
    options.queryLimit = std::chrono::minutes{10};
    return std::make_unique<FolderEventStore>(std::make_shared<MemoryDefaults>(), options);
}

std::vector<System::StoredEvent> query(
    FolderEventStore& store, const Arguments& arguments, std::string_view account)
{
    std::vector<std::string> identifiers;
    for (const auto& calendar : run(store.calendars())) {
        if (calendar.sourceTitle == account)
            identifiers.push_back(calendar.identifier);
    }
    const auto from = instantAt(arguments.base);
    return run(store.events(from, from + Seconds{kDays * 86400}, std::move(identifiers)));
}

template <typename Work> double secondsOf(Work work)
{
    const auto start = std::chrono::steady_clock::now();
    work();
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

double median(std::vector<double> values)
{
    std::sort(values.begin(), values.end());
    return values.at(values.size() / 2);
}

double libicalSeconds(const Arguments& arguments, const std::string& account)
{
    const auto command = "\"" + arguments.libical + "\" "
        + std::to_string(static_cast<long long>(arguments.base)) + " 30 \"" + arguments.folder + "/" + account
        + "\" >/dev/null 2>&1";
    int status = 0;
    const auto seconds = secondsOf([&] { status = std::system(command.c_str()); });
    if (status != 0) {
        std::fprintf(stderr, "%s failed\n", command.c_str());
        std::exit(1);
    }
    return seconds;
}

fs::path anyFile(const fs::path& folder)
{
    for (const auto& entry : fs::recursive_directory_iterator{folder}) {
        if (entry.path().extension() == ".ics")
            return entry.path();
    }
    std::fprintf(stderr, "no .ics file below %s\n", folder.c_str());
    std::exit(1);
}

// The same bytes under a new stamp; then the pause after which a change notice comes.
void writeAnew(const fs::path& path)
{
    std::ifstream in{path, std::ios::binary};
    const std::string text{std::istreambuf_iterator<char>{in}, {}};
    std::ofstream{path, std::ios::binary | std::ios::trunc} << text;
    std::this_thread::sleep_for(std::chrono::milliseconds{100});
}

// Gives the median time of a cold query.
double measureCold(const Arguments& arguments, const std::string& account)
{
    std::vector<double> scans;
    std::vector<double> queries;
    std::size_t occurrences = 0;
    for (int i = 0; i < arguments.rounds; ++i) {
        scans.push_back(secondsOf([&] { Benchmarks::scanLines(arguments.folder + "/" + account); }));
        auto store = open(arguments);
        queries.push_back(secondsOf([&] { occurrences = query(*store, arguments, account).size(); }));
    }
    const double cold = median(queries);
    std::printf("%-7s cold      %8.1f ms  %zu occurrences\n", account.c_str(), cold * 1e3, occurrences);
    std::printf("%-7s line scan %8.1f ms  store / scan %.2f\n", account.c_str(), median(scans) * 1e3,
        cold / median(scans));
    if (!arguments.libical.empty()) {
        const double libical = libicalSeconds(arguments, account);
        std::printf("%-7s libical   %8.1f ms  libical / store %.1f  (one run)\n", account.c_str(),
            libical * 1e3, libical / cold);
    }
    return cold;
}

void measureAgain(const Arguments& arguments, const std::string& account, double cold)
{
    auto store = open(arguments);
    query(*store, arguments, account);
    const auto file = anyFile(fs::path{arguments.folder} / account);

    std::vector<double> changed;
    std::vector<double> unchanged;
    for (int i = 0; i < arguments.rounds; ++i) {
        writeAnew(file);
        changed.push_back(secondsOf([&] { query(*store, arguments, account); }));
        unchanged.push_back(secondsOf([&] { query(*store, arguments, account); }));
    }
    std::printf("%-7s one file changed %8.2f ms  %.2f %% of cold\n", account.c_str(), median(changed) * 1e3,
        100 * median(changed) / cold);
    std::printf("%-7s unchanged        %8.2f ms  %.2f %% of cold\n", account.c_str(), median(unchanged) * 1e3,
        100 * median(unchanged) / cold);
}

std::size_t heapInUse()
{
    malloc_trim(0);
    const auto info = mallinfo2();
    return info.uordblks + info.hblkhd;
}

// What the process holds for an account after a query, without the bytes of the titles.
void measureMemory(const Arguments& arguments, const std::string& account)
{
    const auto before = heapInUse();
    auto store = open(arguments);
    query(*store, arguments, account);
    const auto after = heapInUse();

    std::size_t events = 0;
    const auto status = run(store->status());
    for (const auto& calendar : status.calendars)
        events += calendar.events;
    const auto titles = Benchmarks::titleBytes(arguments.folder + "/" + account);
    std::printf("%-7s memory  %.1f MB heap, %zu events, %.1f bytes of title each: %.0f bytes per event "
                "beyond titles\n",
        account.c_str(), static_cast<double>(after - before) / 1e6, events,
        static_cast<double>(titles) / static_cast<double>(events),
        (static_cast<double>(after - before) - static_cast<double>(titles)) / static_cast<double>(events));
}

Arguments parse(int argc, char** argv)
{
    Arguments arguments;
    for (int i = 1; i < argc; ++i) {
        const std::string_view word = argv[i];
        const bool hasValue = i + 1 < argc;
        if (word == "--base" && hasValue)
            arguments.base = std::atof(argv[++i]);
        else if (word == "--libical" && hasValue)
            arguments.libical = argv[++i];
        else if (word == "--rounds" && hasValue)
            arguments.rounds = std::max(1, std::atoi(argv[++i]));
        else
            arguments.folder = fs::absolute(word).lexically_normal().string();
    }
    return arguments;
}

}

int main(int argc, char** argv)
{
    const auto arguments = parse(argc, argv);
    if (arguments.folder.empty()) {
        std::fprintf(stderr, "usage: store_benchmark DIR [--base EPOCH] [--libical PROGRAM] [--rounds N]\n");
        return 2;
    }
    for (const auto* account : {"single", "vdir"}) {
        // First, while the heap is fresh.
        measureMemory(arguments, account);
        const double cold = measureCold(arguments, account);
        measureAgain(arguments, account, cold);
    }
    return 0;
}
