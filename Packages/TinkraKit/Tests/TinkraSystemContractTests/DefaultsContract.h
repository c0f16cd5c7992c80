#pragma once

#include "TinkraSystem/Defaults.h"

#include <gtest/gtest.h>

namespace Tinkra::System {

/// What all preferences do. A kind has `defaults`, and a way to put something else than data there.
template <typename Kind> class DefaultsContract : public testing::Test {
protected:
    Kind kind;
    Defaults& defaults = *kind.defaults;
};

TYPED_TEST_SUITE_P(DefaultsContract);

TYPED_TEST_P(DefaultsContract, HoldsNothingAtFirst)
{
    EXPECT_EQ(this->defaults.data("key"), std::nullopt);
}

TYPED_TEST_P(DefaultsContract, GivesBackTheExactBytes)
{
    std::string bytes;
    for (int byte = 0; byte < 256; ++byte)
        bytes.push_back(static_cast<char>(byte));

    this->defaults.setData("key", bytes);

    EXPECT_EQ(this->defaults.data("key"), bytes);
}

TYPED_TEST_P(DefaultsContract, NoBytesAtAllAreDataToo)
{
    this->defaults.setData("key", "");

    EXPECT_EQ(this->defaults.data("key"), "");
}

TYPED_TEST_P(DefaultsContract, KeepsTheNewestValueAlone)
{
    this->defaults.setData("key", "a long first value");
    this->defaults.setData("key", "second");

    EXPECT_EQ(this->defaults.data("key"), "second");
}

TYPED_TEST_P(DefaultsContract, KeepsKeysApart)
{
    this->defaults.setData("tinkra.configuration", "one");
    this->defaults.setData("tinkra.configuration2", "two");

    EXPECT_EQ(this->defaults.data("tinkra.configuration"), "one");
    EXPECT_EQ(this->defaults.data("tinkra.configuration2"), "two");
}

TYPED_TEST_P(DefaultsContract, SomethingElseThanDataIsNothingUntilItIsOverwritten)
{
    this->kind.putSomethingElse("key");
    EXPECT_EQ(this->defaults.data("key"), std::nullopt);

    this->defaults.setData("key", "data");
    EXPECT_EQ(this->defaults.data("key"), "data");
}

REGISTER_TYPED_TEST_SUITE_P(DefaultsContract, HoldsNothingAtFirst, GivesBackTheExactBytes,
    NoBytesAtAllAreDataToo, KeepsTheNewestValueAlone, KeepsKeysApart,
    SomethingElseThanDataIsNothingUntilItIsOverwritten);

}
