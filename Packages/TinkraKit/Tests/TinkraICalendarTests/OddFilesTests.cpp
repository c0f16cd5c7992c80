// Data/Odd holds one oddity a file, and Data/OddFiles.txt what is to be seen of each in 2024 from Berlin.

#include "CalendarTesting.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <random>
#include <string>
#include <string_view>

namespace Tinkra::ICalendar {

namespace {

const std::filesystem::path data{TINKRA_TEST_DATA};

std::string contentOf(const std::filesystem::path& file)
{
    std::ifstream stream{file, std::ios::binary};
    return {std::istreambuf_iterator<char>{stream}, {}};
}

std::map<std::string, std::string> oddFiles()
{
    std::map<std::string, std::string> files;
    for (const auto& entry : std::filesystem::directory_iterator{data / "Odd"})
        files[entry.path().stem()] = contentOf(entry.path());
    return files;
}

/// One paragraph a file: its name, then an occurrence a line, with "?" in front when the text is not whole.
std::map<std::string, Lines> expectations()
{
    std::map<std::string, Lines> all;
    std::ifstream stream{data / "OddFiles.txt"};
    std::string name;
    for (std::string line; std::getline(stream, line);) {
        if (line.starts_with("    "))
            all[name].push_back(line.substr(4));
        else if (!line.empty())
            all[name = line];
    }
    return all;
}

/// Reads and asks, and fails on anything that no text may bring about.
Lines checked(std::string_view text)
{
    const auto calendar = Calendar::read(text);
    Lines found;
    calendar.forEachOccurrence({instant("2024-01-01T00:00:00Z"), instant("2025-01-01T00:00:00Z")},
        findZone("Europe/Berlin"), [&](const Occurrence& one) {
            EXPECT_LE(one.start, one.end);
            EXPECT_FALSE(one.uid.empty());
            auto line = Tinkra::ICalendar::text(one.start) + (one.isAllDay ? " all day " : " ")
                + std::string{one.title == "" ? "(empty)" : one.title.value_or("(none)")};
            std::replace(line.begin(), line.end(), '\n', '|');
            found.push_back(line);
        });
    std::sort(found.begin(), found.end());
    if (!calendar.isWhole())
        found.insert(found.begin(), "?");
    return found;
}

}

TEST(OddFiles, AreReadAsExpected)
{
    const auto expected = expectations();
    const auto files = oddFiles();
    ASSERT_GT(files.size(), 50U);
    for (const auto& [name, content] : files) {
        const auto found = expected.find(name);
        ASSERT_NE(found, expected.end()) << name;
        EXPECT_EQ(checked(content), found->second) << name;
    }
    EXPECT_EQ(expected.size(), files.size());
}

TEST(OddFiles, DoNoHarmToEachOtherInOneText)
{
    std::string all;
    std::size_t before = 0;
    for (const auto& [name, content] : oddFiles()) {
        if (name.starts_with("utf16") || content.find('\0') != std::string::npos)
            continue;
        all += content + "\r\n";
        ++before;
    }
    all += calendarWith(
        "BEGIN:VEVENT\nUID:after\nDTSTART:20240707T070000Z\nSUMMARY:After all of them\nEND:VEVENT\n");
    const auto found = checked(all);
    EXPECT_GT(before, 50U);
    EXPECT_NE(std::find(found.begin(), found.end(), "2024-07-07T07:00:00Z After all of them"), found.end());
    EXPECT_NE(std::find(found.begin(), found.end(), "2024-03-19T13:00:00Z Weekly (moved)"), found.end());
}

TEST(OddFiles, MayEndAnywhere)
{
    std::mt19937 random{20240304};
    for (const auto& [name, content] : oddFiles()) {
        for (int i = 0; i < 50 && !content.empty(); ++i) {
            SCOPED_TRACE(name);
            checked(std::string_view{content}.substr(0, random() % content.size()));
        }
    }
}

TEST(OddFiles, MayBeginAnywhere)
{
    std::mt19937 random{20240305};
    for (const auto& [name, content] : oddFiles()) {
        for (int i = 0; i < 10 && !content.empty(); ++i) {
            SCOPED_TRACE(name);
            checked(std::string_view{content}.substr(random() % content.size()));
        }
    }
}

}
