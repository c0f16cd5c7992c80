#pragma once

#include "TinkraSystemLinux/CalendarFolders/Descriptor.h"

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace Tinkra::System {

/// Nanoseconds since 1970 on the machine's clock, the one that stamps its files.
using FileTime = std::chrono::nanoseconds;

/// What tells one state of a file from another.
struct FileStamp {
    FileTime modified{0};
    FileTime changed{0}; ///< of content, name or rights; unlike `modified` nobody can set it
    std::uint64_t inode = 0;
    std::uint32_t size = 0; ///< larger files count as 4 GiB less one byte

    friend bool operator==(const FileStamp&, const FileStamp&) = default;
};

/// A number that differs, as good as certainly, whenever the stamp does.
std::uint64_t fingerprint(const FileStamp& stamp);

/// Which folder it is, wherever it is mounted or moved.
struct FolderIdentity {
    std::uint64_t device = 0;
    std::uint64_t inode = 0;

    friend bool operator==(const FolderIdentity&, const FolderIdentity&) = default;
};

enum class EntryKind { File, Folder, Link, Other };

enum class Links { Followed, Refused };

/// What became of reading one file.
struct FileReading {
    enum class Outcome {
        Read,
        ChangedMeanwhile,
        Missing,
        NotAFile, ///< a link, pipe, device, socket or folder: refused
        TooLarge,
        Forbidden,
        Failed, ///< see `error`
    };

    Outcome outcome = Outcome::Missing;
    FileStamp stamp; ///< of the file that was found
    int error = 0;
    std::string_view text; ///< lies in the caller's buffer
};

/// The calls that the folder store makes to its file system and to the clock behind it. A port, so that tests
/// can count them, delay them and let them fail. Safe to use from several threads.
class FileSystem {
public:
    using Buffer = std::vector<char>;

    virtual ~FileSystem() = default;

    virtual FileTime now() = 0;

    /// Blocks the calling thread.
    virtual void pause(std::chrono::milliseconds duration) = 0;

    /// Opens a folder below `parent` (AT_FDCWD for absolute paths). An invalid descriptor when no folder of
    /// that name is there; throws std::system_error when it cannot be opened.
    virtual Descriptor openFolder(int parent, const std::string& name, Links links) = 0;

    /// The folder at `path`, links followed; nothing when there is none. Opens nothing.
    virtual std::optional<FolderIdentity> identityOf(const std::string& path) = 0;
    virtual FolderIdentity identityOf(int folder) = 0;

    /// Calls `sink` for each entry whose name does not begin with a dot. Throws std::system_error.
    virtual void forEachEntry(
        int folder, const std::function<void(const char* name, EntryKind kind)>& sink) = 0;

    /// The stamp of a regular file, a link not followed; nothing when there is none.
    virtual std::optional<FileStamp> stampOf(int folder, const char* name) = 0;

    /// Reads a regular file of at most `limit` bytes whole; never follows a link and never waits for a pipe.
    virtual FileReading readFile(int folder, const char* name, std::size_t limit, Buffer& buffer) = 0;

    /// Makes the folder and those above it, for the user alone, where they are missing. Failing is no error.
    virtual void makeFolder(const std::string& path) = 0;

    /// True when the kernel reports each change below this folder: not so for network file systems.
    virtual bool reportsChanges(int folder) = 0;
};

}
