#include "TinkraSystemLinux/CalendarFolders/LinuxFileSystem.h"

#include "TinkraTestSupport/TemporaryFolder.h"

#include <fcntl.h>
#include <gmock/gmock.h>

#include <fstream>
#include <system_error>

namespace Tinkra::System {
namespace {

using testing::HasSubstr;

template <typename Work> std::string errorOf(Work work)
{
    try {
        work();
        return {};
    } catch (const std::system_error& error) {
        return error.what();
    }
}

TEST(LinuxFileSystem, NamesTheWholePathOfAFolderThatItCannotOpenOrList)
{
    LinuxFileSystem files;
    const TemporaryFolder temporary;
    const auto path = temporary.path().string();
    const auto folder = files.openFolder(AT_FDCWD, path, Links::Followed);
    const std::string tooLong(300, 'x');

    EXPECT_THAT(errorOf([&] { files.openFolder(folder.get(), tooLong, Links::Refused); }),
        HasSubstr("cannot open the folder \"" + path + "/" + tooLong + "\": "));
    EXPECT_THAT(errorOf([&] { files.openFolder(AT_FDCWD, path + "/" + tooLong, Links::Followed); }),
        HasSubstr("cannot open the folder \"" + path + "/" + tooLong + "\": "));

    std::ofstream{path + "/file"} << "no folder";
    const Descriptor file{open((path + "/file").c_str(), O_RDONLY | O_CLOEXEC)};
    EXPECT_THAT(errorOf([&] { files.forEachEntry(file.get(), [](const char*, EntryKind) {}); }),
        HasSubstr("cannot list the folder \"" + path + "/file\": "));
}

}
}
