#include "qrvel/base/handles.h"

#include <gtest/gtest.h>

namespace qrvel {
namespace {

struct Thing : Object {
    static constexpr Kind KIND = Kind::Font;
};

struct Other : Object {
    static constexpr Kind KIND = Kind::Child;
};

TEST(Handles, AreGoodForOneKind) {
    HandleTable table;
    const Thing* thing = table.make<Thing>();
    EXPECT_EQ(thing->handle, 1U);
    EXPECT_EQ(table.find<Thing>(1), thing);
    EXPECT_EQ(table.find<Other>(1), nullptr);
    EXPECT_EQ(table.find<Thing>(0), nullptr);
    EXPECT_EQ(table.find<Thing>(2), nullptr);
}

TEST(Handles, KeptTooLongAreRecognised) {
    HandleTable table;
    const WHandle old = table.make<Thing>()->handle;
    table.destroy<Thing>(old, __func__);
    const Thing* next = table.make<Thing>();
    EXPECT_EQ(next->handle, 0x10001U);
    EXPECT_EQ(table.find<Thing>(old), nullptr);
    EXPECT_EQ(table.find<Thing>(next->handle), next);
}

TEST(Handles, Are65535) {
    HandleTable table;
    for (WHandle handle = 1; handle <= 65535; ++handle) {
        const Thing* thing = table.make<Thing>();
        ASSERT_NE(thing, nullptr) << handle;
        ASSERT_EQ(thing->handle, handle);
    }
    EXPECT_EQ(table.make<Thing>(), nullptr);
    table.destroy<Thing>(777, __func__);
    EXPECT_NE(table.make<Thing>(), nullptr);
    EXPECT_EQ(table.make<Thing>(), nullptr);
}

}  // namespace
}  // namespace qrvel
