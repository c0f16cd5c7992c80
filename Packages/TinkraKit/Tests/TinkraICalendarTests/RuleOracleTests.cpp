// The expansion against one that is slow and obviously right, over thousands of random rules.

#include "RuleOracle.h"
#include "RuleTestSupport.h"

#include <array>
#include <gtest/gtest.h>

namespace Tinkra::ICalendar::Test {

namespace {

std::string described(const RuleInstance& instance)
{
    return written(instance.local) + " = " + written(LocalSeconds{instance.utc.time_since_epoch()}) + "Z";
}

std::vector<std::string> described(const std::vector<RuleInstance>& instances)
{
    std::vector<std::string> result;
    for (const auto& instance : instances)
        result.push_back(described(instance));
    return result;
}

void expectAgreement(const RandomSeries& series)
{
    const SeriesStart start{.local = series.start, .zone = findZone(series.zone), .isDate = series.isDate};
    const auto parsed = rule(series.rule);

    std::vector<RuleInstance> given;
    const ExpansionBudget budget{.occurrences = 10'000'000, .time = std::chrono::seconds{60}};
    const auto end = expandRule(parsed, start, series.range, budget,
        [&](const RuleInstance& instance) { given.push_back(instance); });

    auto expected = plainExpansion(parsed, start, series.range.to);
    std::erase_if(expected, [&](const RuleInstance& instance) {
        return instance.utc < series.range.from || instance.utc >= series.range.to;
    });
    ASSERT_EQ(end, ExpansionEnd::Complete);
    ASSERT_EQ(described(given), described(expected))
        << series.rule << "\nDTSTART " << written(series.start) << (series.isDate ? " (date) " : " ")
        << series.zone << "\nfrom " << written(LocalSeconds{series.range.from.time_since_epoch()}) << " to "
        << written(LocalSeconds{series.range.to.time_since_epoch()});
}

/// As many as a few seconds allow: the plain expansion of fine rules is slow.
std::uint64_t seedsFor(Frequency frequency)
{
    switch (frequency) {
    case Frequency::Secondly:
        return 200;
    case Frequency::Minutely:
    case Frequency::Hourly:
        return 1500;
    default:
        return 4000;
    }
}

class PlainExpansion : public testing::TestWithParam<Frequency> { };

TEST_P(PlainExpansion, GivesTheSameForRandomRules)
{
    for (std::uint64_t seed = 1; seed <= seedsFor(GetParam()); ++seed) {
        std::mt19937_64 random(seed);
        SCOPED_TRACE("seed " + std::to_string(seed));
        expectAgreement(randomSeries(random, GetParam()));
        if (HasFatalFailure())
            return;
    }
}

std::string nameOf(const testing::TestParamInfo<Frequency>& frequency)
{
    constexpr std::array<const char*, 7> kNames{
        "Secondly", "Minutely", "Hourly", "Daily", "Weekly", "Monthly", "Yearly"};
    return kNames.at(static_cast<std::size_t>(frequency.param));
}

INSTANTIATE_TEST_SUITE_P(EachFrequency, PlainExpansion,
    testing::Values(Frequency::Secondly, Frequency::Minutely, Frequency::Hourly, Frequency::Daily,
        Frequency::Weekly, Frequency::Monthly, Frequency::Yearly),
    nameOf);

}

}
