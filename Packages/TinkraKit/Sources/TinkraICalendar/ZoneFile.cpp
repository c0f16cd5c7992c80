#include "TinkraICalendar/ZoneFile.h"

#include "TinkraICalendar/PosixZoneRule.h"
#include "TinkraICalendar/ZoneTable.h"

#include <bit>
#include <optional>

namespace Tinkra::ICalendar {

namespace {

using std::chrono::seconds;
using std::chrono::year;

constexpr std::size_t kHeaderSize = 44;
// Where old files say "since ever", they name a moment long before any calendar.
constexpr std::int64_t kEarliest = -62'135'596'800; // 0001-01-01
constexpr std::int64_t kLatest = 253'402'300'800; // 10000-01-01

template <typename Integer> Integer bigEndian(std::string_view bytes, std::size_t at)
{
    using Unsigned = std::make_unsigned_t<Integer>;
    Unsigned value = 0;
    for (std::size_t i = 0; i < sizeof(Integer); ++i)
        value = static_cast<Unsigned>((value << 8U) | static_cast<unsigned char>(bytes[at + i]));
    return std::bit_cast<Integer>(value);
}

/// One of the two blocks of a file, with the places of its parts (RFC 8536, section 3.2).
struct Block {
    std::size_t begin = 0;
    std::uint32_t changes = 0;
    std::uint32_t types = 0;
    std::size_t size = 0; // header included

    static std::optional<Block> at(std::string_view bytes, std::size_t begin, std::size_t timeSize)
    {
        if (begin + kHeaderSize > bytes.size() || bytes.substr(begin, 4) != "TZif")
            return std::nullopt;
        const auto count = [&](std::size_t i) { return bigEndian<std::uint32_t>(bytes, begin + 20 + 4 * i); };
        Block block{.begin = begin, .changes = count(3), .types = count(4)};
        block.size = kHeaderSize + std::size_t{block.changes} * (timeSize + 1) + std::size_t{block.types} * 6
            + count(5) + std::size_t{count(2)} * (timeSize + 4) + count(1) + count(0);
        if (block.types == 0 || block.size > bytes.size() - begin)
            return std::nullopt;
        return block;
    }
};

void appendYearlyChanges(std::vector<ZoneChange>& changes, const PosixZoneRule& rule)
{
    const auto last =
        changes.empty() ? UtcSeconds{std::chrono::sys_days{year{1900} / 1 / 1}} : changes.back().at;
    auto from = std::chrono::year_month_day{std::chrono::floor<std::chrono::days>(last)}.year();
    for (; from < kFirstRepeatedYear; ++from) {
        for (const auto& change : rule.changesIn(from)) {
            if (change.at > last)
                changes.push_back(change);
        }
    }
}

}

ZonePtr readZoneFile(std::string name, std::string_view bytes)
{
    const auto old = Block::at(bytes, 0, 4);
    const auto block = old && bytes[4] >= '2' ? Block::at(bytes, old->size, 8) : std::nullopt;
    if (!block)
        return nullptr;

    const auto times = block->begin + kHeaderSize;
    const auto indices = times + std::size_t{block->changes} * 8;
    const auto types = indices + block->changes;
    const auto offsetOf = [&](std::size_t type) {
        return seconds{bigEndian<std::int32_t>(bytes, types + type * 6)};
    };

    for (std::size_t type = 0; type < block->types; ++type) {
        if (abs(offsetOf(type)) >= std::chrono::hours{24})
            return nullptr;
    }

    auto initial = offsetOf(0);
    std::vector<ZoneChange> changes;
    for (std::size_t i = 0; i < block->changes; ++i) {
        const std::size_t type = static_cast<unsigned char>(bytes[indices + i]);
        if (type >= block->types)
            return nullptr;
        const auto at = bigEndian<std::int64_t>(bytes, times + i * 8);
        if (at < kEarliest)
            initial = offsetOf(type);
        else if (at < kLatest)
            changes.push_back({UtcSeconds{seconds{at}}, offsetOf(type)});
    }

    auto footer = bytes.substr(block->begin + block->size);
    if (!footer.starts_with('\n') || footer.find('\n', 1) == std::string_view::npos)
        return nullptr;
    footer = footer.substr(1, footer.find('\n', 1) - 1);
    const auto rule = parsePosixZoneRule(footer);
    if (rule)
        appendYearlyChanges(changes, *rule);
    const auto after = rule ? AfterLastChange::RepeatsByYear : AfterLastChange::Stays;
    return std::make_shared<ZoneTable>(std::move(name), initial, std::move(changes), after);
}

ZonePtr readPosixZone(std::string name, std::string_view text)
{
    const auto rule = parsePosixZoneRule(text);
    if (!rule)
        return nullptr;
    std::vector<ZoneChange> changes;
    appendYearlyChanges(changes, *rule);
    return std::make_shared<ZoneTable>(
        std::move(name), rule->offset, std::move(changes), AfterLastChange::RepeatsByYear);
}

}
