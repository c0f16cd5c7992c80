// Files and entries that are not what they should be: never a hang, never a crash, and the others go on.

#include "FolderStore/FolderStoreWorld.h"

#include <fcntl.h>
#include <gmock/gmock.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

#include <algorithm>
#include <cstring>
#include <random>

namespace Tinkra::System {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;

struct OddFile {
    const char* name;
    std::string text;
};

// "G" is the title of an event in them that can be read.
std::vector<OddFile> oddFiles()
{
    const auto good = calendarWith("g", "G");
    const auto event = [](const std::string& lines) {
        return vcalendar("BEGIN:VEVENT\r\n" + lines + "END:VEVENT\r\n");
    };
    return {
        {"empty", ""},
        {"one line end", "\r\n"},
        {"text", "Dear all,\nplease find attached\n"},
        {"html", "<!DOCTYPE html><html><body>502 Bad Gateway</body></html>"},
        {"json", "[{\"BEGIN\":\"VCALENDAR\"}]"},
        {"picture", std::string("\x89PNG\r\n\x1a\n\0\0\0\rIHDR", 16)},
        {"zeros", std::string(10'000, '\0')},
        {"begin alone", "BEGIN:VCALENDAR\r\n"},
        {"end alone", "END:VCALENDAR\r\n"},
        {"no end of the calendar", good.substr(0, good.size() - 15)},
        {"no end of the event", "BEGIN:VCALENDAR\r\nBEGIN:VEVENT\r\nUID:x\r\nEND:VCALENDAR\r\n"},
        {"ends crossed",
            "BEGIN:VCALENDAR\r\nBEGIN:VEVENT\r\nBEGIN:VALARM\r\nEND:VEVENT\r\nEND:VALARM\r\nEND:"
            "VCALENDAR\r\n"},
        {"deep nesting",
            [] {
                std::string text = "BEGIN:VCALENDAR\r\n";
                for (int i = 0; i < 20'000; ++i)
                    text += "BEGIN:VEVENT\r\n";
                for (int i = 0; i < 20'000; ++i)
                    text += "END:VEVENT\r\n";
                return text + "END:VCALENDAR\r\n";
            }()},
        {"no start", event("UID:x\r\nSUMMARY:X\r\n")},
        {"start is no date", event("UID:x\r\nDTSTART:tomorrow\r\n")},
        {"month thirteen", event("UID:x\r\nDTSTART:20261301T000000Z\r\n")},
        {"year zero", event("UID:x\r\nDTSTART:00000101T000000Z\r\n")},
        {"end before start",
            event("UID:g\r\nSUMMARY:G\r\nDTSTART:20261202T000000Z\r\nDTEND:20261201T000000Z\r\n")},
        {"negative length", event("UID:g\r\nSUMMARY:G\r\nDTSTART:20261202T000000Z\r\nDURATION:-PT1H\r\n")},
        {"endless length", event("UID:x\r\nDTSTART:20261202T000000Z\r\nDURATION:P99999999999999999999W\r\n")},
        {"rule without frequency",
            event("UID:g\r\nSUMMARY:G\r\nDTSTART:20261202T000000Z\r\nRRULE:COUNT=3\r\n")},
        {"rule of nonsense",
            event("UID:g\r\nSUMMARY:G\r\nDTSTART:20261202T000000Z\r\nRRULE:FREQ=DAILY;INTERVAL=0;BYDAY=99XX;"
                  "COUNT=1\r\n")},
        {"rule that never comes true",
            event("UID:g\r\nSUMMARY:G\r\nDTSTART:20261202T000000Z\r\nRRULE:FREQ=YEARLY;BYMONTH=2;BYMONTHDAY="
                  "30\r\n")},
        {"every second for ever",
            event("UID:x\r\nSUMMARY:X\r\nDTSTART:20200101T000000Z\r\nRRULE:FREQ=SECONDLY\r\n")},
        {"minutely on the first Tuesday",
            event("UID:x\r\nSUMMARY:X\r\nDTSTART:20200101T000000Z\r\nRRULE:FREQ=MINUTELY;BYDAY=1TU\r\n")},
        {"weeks from the end",
            event("UID:x\r\nSUMMARY:X\r\nDTSTART;VALUE=DATE:20110101\r\nRRULE:FREQ=YEARLY;BYWEEKNO=-53,-2,-1;"
                  "WKST=WE\r\n")},
        {"unknown zone", event("UID:g\r\nSUMMARY:G\r\nDTSTART;TZID=Mars/Olympus:20261202T000000\r\n")},
        {"zone that holds itself",
            "BEGIN:VCALENDAR\r\nBEGIN:VTIMEZONE\r\nTZID:X\r\nBEGIN:STANDARD\r\nDTSTART:"
            "20000101T000000\r\nTZOFFSETFROM:+9999\r\nTZOFFSETTO:-9999\r\nRRULE:FREQ=SECONDLY\r\nEND:"
            "STANDARD\r\nEND:VTIMEZONE\r\nBEGIN:VEVENT\r\nUID:x\r\nDTSTART;TZID=X:20261202T000000\r\nEND:"
            "VEVENT\r\nEND:VCALENDAR\r\n"},
        {"override without master",
            event("UID:g\r\nSUMMARY:G\r\nRECURRENCE-ID:20261202T000000Z\r\nDTSTART:20261203T000000Z\r\n")},
        {"colons and quotes",
            event("UID;X=\":::;;;\":g\r\nSUMMARY;ALTREP=\"cid:a,b\";LANGUAGE=en:G\r\nDTSTART:"
                  "20261202T000000Z\r\n")},
        {"open quote", event("UID:x\r\nSUMMARY;ALTREP=\"cid:X\r\nDTSTART:20261202T000000Z\r\n")},
        {"folds within a character",
            event("UID:x\r\nSUMMARY:\xC3\r\n \x84rzte\r\nDTSTART:20261202T000000Z\r\n")},
        {"latin 1", event("UID:x\r\nSUMMARY:\xC4rzte\r\nDTSTART:20261202T000000Z\r\n")},
        {"byte order mark", "\xEF\xBB\xBF" + good},
        {"old Mac line ends",
            [&] {
                auto text = good;
                std::erase(text, '\n');
                return text;
            }()},
        {"zero in the title",
            event(std::string("UID:x\r\nSUMMARY:A\0B\r\nDTSTART:20261202T000000Z\r\n", 46))},
        {"a line of two megabytes",
            event("UID:g\r\nSUMMARY:G\r\nDTSTART:20261202T000000Z\r\nDESCRIPTION:"
                + std::string(2'000'000, 'x') + "\r\n")},
        {"folded every byte",
            [&] {
                std::string text;
                for (const char c : event("UID:g\r\nSUMMARY:G\r\nDTSTART:20261202T000000Z\r\n"))
                    text += c == '\n' || c == '\r' ? std::string{c} : std::string{c} + "\r\n ";
                return text;
            }()},
        {"twice the same", good + good},
    };
}

class OddFilesTest : public FolderStoreWorld {
protected:
    OddFilesTest() { write("Cloud/Work/good.ics", calendarWith("good", "Good")); }

    bool isThere() { return testing::Value(titles(), Contains("Good")); }
};

TEST_F(OddFilesTest, DoNotDisturbOthersOneByOne)
{
    for (const auto& odd : oddFiles()) {
        write("Cloud/Work/odd.ics", odd.text);
        restart();
        EXPECT_TRUE(isThere()) << odd.name;
    }
}

TEST_F(OddFilesTest, DoNotDisturbOthersAllTogether)
{
    int number = 0;
    for (const auto& odd : oddFiles())
        write("Cloud/Work/odd " + std::to_string(number++) + ".ics", odd.text);

    EXPECT_TRUE(isThere());
    const auto notices = status().notices;
    for (const auto* what :
        {"odd 0.ics: does not begin", "odd 2.ics: does not begin", "odd 7.ics: does not begin"})
        EXPECT_THAT(notices, Contains(HasSubstr(what)));
}

TEST_F(OddFilesTest, DoNotDisturbOthersCutAnywhere)
{
    std::minstd_rand random{7};
    for (const auto& odd : oddFiles()) {
        for (int i = 0; i < 50; ++i)
            write("Cloud/Work/cut " + std::to_string(i) + ".ics",
                odd.text.substr(0, random() % (odd.text.size() + 1)));
        restart();
        EXPECT_TRUE(isThere()) << odd.name;
    }
}

TEST_F(OddFilesTest, AreNamedByAnExaminationThoughNobodyAskedForThem)
{
    write("Cloud/Home/odd.ics", "nothing");
    EXPECT_THAT(status().notices, IsEmpty());

    const auto examined = loop.runInRealTime(store->examine());

    EXPECT_THAT(examined.notices, ElementsAre(HasSubstr("Home/odd.ics: does not begin")));
    EXPECT_EQ(examined.calendars.size(), 2U);
    EXPECT_EQ(examined.calendars.back().events, 1U);
}

TEST_F(OddFilesTest, AreHeardLastAndOnceWhenTheyHappenTooOften)
{
    write("Cloud/Work/a.ics",
        vcalendar("BEGIN:VEVENT\r\nUID:x\r\nSUMMARY:X\r\nDTSTART:20200101T000000Z\r\n"
                  "RRULE:FREQ=SECONDLY\r\nEND:VEVENT\r\n"));

    const auto found = events();

    ASSERT_EQ(found.size(), 10'001U);
    EXPECT_EQ(found.front().details->title, "Good");
    EXPECT_THAT(status().notices, Contains(HasSubstr("a.ics: ")));
}

TEST_F(OddFilesTest, AreNamedWhenTheyAreTooLarge)
{
    write("Cloud/Work/large.ics", "BEGIN:VCALENDAR\r\n");
    std::filesystem::resize_file(root / "Cloud/Work/large.ics", 33U << 20U);

    EXPECT_THAT(titles(), ElementsAre("Good"));
    EXPECT_THAT(status().notices, Contains(HasSubstr("large.ics: is larger than 32 MB")));
}

TEST_F(OddFilesTest, AreToldApartByWhetherAnythingOfThemIsUsed)
{
    write("Cloud/Work/empty.ics", "");
    write(
        "Cloud/Work/half.ics", vcalendar("BEGIN:VEVENT\r\nUID:x\r\nEND:VEVENT\r\n" + vevent("half", "Half")));

    EXPECT_THAT(titles(), ElementsAre("Good", "Half"));
    EXPECT_THAT(status().notices, SizeIs(2));
    EXPECT_THAT(status().leftOut, ElementsAre(HasSubstr("Cloud/Work/empty.ics: does not begin")));

    write("Cloud/Work/good.ics", "broken since");
    EXPECT_THAT(titles(), ElementsAre("Good", "Half"));
    EXPECT_THAT(status().leftOut, SizeIs(1)) << "what was good still stands";
}

TEST_F(OddFilesTest, AreNamedUpToALimit)
{
    for (int i = 0; i < 1000; ++i)
        write("Cloud/Work/odd " + std::to_string(i) + ".ics", "nothing");

    EXPECT_THAT(titles(), ElementsAre("Good"));
    EXPECT_THAT(status().notices, SizeIs(200));
}

TEST_F(OddFilesTest, ArePassedOverWhenTheyAreNoFiles)
{
    const auto path = [&](const char* name) { return (root / "Cloud/Work" / name).string(); };
    ASSERT_EQ(mkfifo(path("pipe.ics").c_str(), 0600), 0);
    std::filesystem::create_directory(path("folder.ics"));
    std::filesystem::create_symlink("good.ics", path("inside.ics"));
    std::filesystem::create_symlink("/etc/passwd", path("outside.ics"));
    std::filesystem::create_symlink("loop.ics", path("loop.ics"));
    std::filesystem::create_symlink("/dev/zero", path("device.ics"));
    const int server = socket(AF_UNIX, SOCK_STREAM, 0);
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    std::strncpy(address.sun_path, path("socket.ics").c_str(), sizeof address.sun_path - 1);
    ASSERT_EQ(bind(server, reinterpret_cast<const sockaddr*>(&address), sizeof address), 0);
    close(server);

    EXPECT_THAT(titles(), ElementsAre("Good"));
    const auto notices = status().notices;
    for (const auto* name : {"pipe", "folder", "inside", "outside", "loop", "device", "socket"})
        EXPECT_THAT(notices, Contains(HasSubstr(std::string{name} + ".ics: is a link or no regular file")));
}

TEST_F(OddFilesTest, AreRefusedEvenWhenTheyTakeTheNameOfAFileAfterTheListing)
{
    files->beforeReading = [this](const std::string& name) {
        if (name != "good.ics")
            return;
        remove("Cloud/Work/good.ics");
        ASSERT_EQ(mkfifo((root / "Cloud/Work/good.ics").c_str(), 0600), 0);
    };

    EXPECT_THAT(titles(), IsEmpty());
}

TEST_F(OddFilesTest, DoNotLeadOutOfTheRootAsLinksOfFolders)
{
    std::filesystem::create_directories(folder / "outside/Secret");
    std::filesystem::copy(root / "Cloud/Work/good.ics", folder / "outside/Secret/a.ics");
    std::filesystem::create_directory_symlink(folder / "outside", root / "Linked");
    std::filesystem::create_directory_symlink(folder / "outside/Secret", root / "Cloud/Linked");
    std::filesystem::create_directory_symlink(".", root / "Cloud/Loop");

    EXPECT_THAT(identifiers(), ElementsAre("Cloud/Work"));
    const auto notices = status().notices;
    EXPECT_THAT(notices, Contains(HasSubstr("calendars/Linked: is a link, and is not followed")));
    EXPECT_THAT(notices, Contains(HasSubstr("Cloud/Linked: is a link, and is not followed")));
}

}
}
