#include "TinkraSystemLinux/CalendarFolders/FileSystem.h"

namespace Tinkra::System {

namespace {

// One step of a mixing function: every bit of the sum moves about half of the result's bits.
std::uint64_t mixed(std::uint64_t seed, std::uint64_t value)
{
    auto bits = seed + 0x9E3779B97F4A7C15U + value;
    bits = (bits ^ (bits >> 30U)) * 0xBF58476D1CE4E5B9U;
    bits = (bits ^ (bits >> 27U)) * 0x94D049BB133111EBU;
    return bits ^ (bits >> 31U);
}

}

std::uint64_t fingerprint(const FileStamp& stamp)
{
    auto bits = mixed(0, static_cast<std::uint64_t>(stamp.modified.count()));
    bits = mixed(bits, static_cast<std::uint64_t>(stamp.changed.count()));
    bits = mixed(bits, stamp.inode);
    return mixed(bits, stamp.size);
}

}
