// Saving and loading the settings through the host's store.
#include <gtest/gtest.h>

#include "host_fixture.h"
#include "kestrone/memory_store.h"

namespace {

using host_testing::Robot;
using kestrone::HRESULT;
using kestrone::MemoryStore;
using kestrone::Variant;

using Entries = std::vector<MemoryStore::Entry>;

std::vector<std::string> keys_of(const Entries& entries) {
    std::vector<std::string> keys;
    for (const auto& e : entries)
        keys.push_back(e.key);
    return keys;
}

std::int16_t setting(Robot& robot, const char* name) {
    return robot.core().GetSetting(*rovanta::find_setting(name)).as_integer();
}

TEST(WriteProperties, WritesTheFallbackPinToo) {
    Robot robot(host_testing::kNoPins);
    MemoryStore store;
    ASSERT_EQ(robot.object().WriteProperties(&store), kestrone::S_OK);
    EXPECT_EQ(store.entries()[0], (MemoryStore::Entry{"Port0", Variant::long_(0)}));
    EXPECT_EQ(store.entries()[1], (MemoryStore::Entry{"Bit0", Variant::long_(0)}));
    EXPECT_EQ(store.entries().size(), 2u + 15u);
}

TEST(ReadProperties, NeverMovesAPin) {
    Robot robot(host_testing::kThreePins);
    MemoryStore store;
    store.set("Port0", Variant::long_(5));
    store.set("Bit0", Variant::integer(3));
    ASSERT_EQ(robot.object().ReadProperties(&store), kestrone::S_OK);
    EXPECT_EQ(robot.core().Port(0), 1);
    EXPECT_EQ(robot.core().Bit(0), 5);
    MemoryStore saved;
    ASSERT_EQ(robot.object().WriteProperties(&saved), kestrone::S_OK);
    EXPECT_EQ(*saved.get("Port0"), Variant::long_(1));
}

TEST(ReadProperties, ConvertsStoredValuesAsTheProperties) {
    struct Case {
        const char* key;
        Variant stored;
        std::int16_t expected;
    };
    const Case cases[] = {
        {"iThreshL", Variant::integer(-5), -5},          {"iMotorBias", Variant::long_(500), 500},
        {"iThreshF", Variant::double_(2.5), 2},          {"iThreshR", Variant::single(3.5f), 4},
        {"iThreshMic", Variant::string(" 1E2 "), 100},   {"bUseI2C", Variant::boolean(true), -1},
        {"iDummyInt1", Variant::byte(255), 255},         {"iDummyInt2", Variant(), 0},
        {"bDummyBool1", Variant::long_(-32768), -32768},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.key);
        Robot robot(host_testing::kNoPins);
        MemoryStore store;
        store.set(c.key, c.stored);
        ASSERT_EQ(robot.object().ReadProperties(&store), kestrone::S_OK);
        EXPECT_EQ(setting(robot, c.key), c.expected);
    }
}

TEST(ReadProperties, StringSettingsTakeNumbersAsText) {
    Robot robot(host_testing::kNoPins);
    MemoryStore store;
    store.set("sDummyString1", Variant::integer(42));
    store.set("sDummyString2", Variant::string("a\"b\r\n"));
    ASSERT_EQ(robot.object().ReadProperties(&store), kestrone::S_OK);
    EXPECT_EQ(robot.core().settings.sDummyString1, "42");
    EXPECT_EQ(robot.core().settings.sDummyString2, "a\"b\r\n");
}

// A value that does not convert stops the walk at its key: what came before stands, what comes
// after keeps its value.
TEST(ReadProperties, StopsAtTheFirstValueThatDoesNotConvert) {
    enum Stage { AtAPin, AtIThreshF, AtSDummyString1 };
    struct Case {
        const char* key;
        Variant stored;
        int error;
        Stage stage;
    };
    const Case cases[] = {
        {"iThreshF", Variant::string("abc"), 13, AtIThreshF},
        {"iThreshF", Variant::long_(40000), 6, AtIThreshF},
        {"iThreshF", Variant::double_(32767.5), 6, AtIThreshF},
        {"iThreshF", Variant::string("-32769"), 6, AtIThreshF},
        {"iThreshF", Variant::array(kestrone::VarType::Integer, 0, {}), 13, AtIThreshF},
        {"Port1", Variant::string("x"), 13, AtAPin},
        {"Bit2", Variant::double_(3e9), 6, AtAPin},
        {"sDummyString1", Variant::array(kestrone::VarType::String, 0, {}), 13, AtSDummyString1},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.key);
        Robot robot(host_testing::kThreePins);
        MemoryStore store;
        store.set("iThreshL", Variant::integer(7));
        store.set("iThreshR", Variant::integer(9));
        store.set("iMotorBias", Variant::integer(9));
        store.set(c.key, c.stored);
        EXPECT_EQ(robot.object().ReadProperties(&store), kestrone::basic_error_status(c.error));
        EXPECT_EQ(setting(robot, "iThreshL"), c.stage >= AtIThreshF ? 7 : 200);
        EXPECT_EQ(setting(robot, "iThreshR"), c.stage >= AtSDummyString1 ? 9 : 200);
        EXPECT_EQ(setting(robot, "bUseI2C"), c.stage >= AtSDummyString1 ? 0 : 128);
        EXPECT_EQ(setting(robot, "iMotorBias"), 0);
    }
}

TEST(ReadProperties, ReturnTypeActsAtOnce) {
    for (std::int16_t v : {1, -1, 7, 0}) {
        Robot robot(host_testing::kNoPins);
        MemoryStore store;
        store.set("bReturnInt", Variant::integer(v));
        ASSERT_EQ(robot.object().ReadProperties(&store), kestrone::S_OK);
        EXPECT_EQ(robot.core().sensors.iADCMax, v != 0 ? 1023 : 255) << v;
        std::string text = "%a";
        robot.core().MacroCodeOverride(text);
        EXPECT_EQ(text, std::to_string(v));
    }
}

// A store that fails on one key: its own status comes back, the walk ends there.
class FailingStore final : public kestrone::IKestroneStore {
  public:
    FailingStore(std::string key, HRESULT status) : key_(std::move(key)), status_(status) {}
    HRESULT WriteProperty(const std::string& key, const Variant& value) noexcept override {
        if (key == key_) return status_;
        return inner.WriteProperty(key, value);
    }
    HRESULT ReadProperty(const std::string& key, const Variant& def,
                         Variant* value) noexcept override {
        if (key == key_) return status_;
        return inner.ReadProperty(key, def, value);
    }
    HRESULT QueryInterface(const kestrone::Guid&, void**) noexcept override {
        return kestrone::E_NOINTERFACE;
    }
    std::uint32_t AddRef() noexcept override { return 2; }
    std::uint32_t Release() noexcept override { return 1; }
    MemoryStore inner;

  private:
    std::string key_;
    HRESULT status_;
};

TEST(StoreFailure, EndsEitherWalkWithTheStoresStatus) {
    Robot robot(host_testing::kNoPins);
    FailingStore store("iThreshMic", kestrone::E_FAIL);
    EXPECT_EQ(robot.object().WriteProperties(&store), kestrone::E_FAIL);
    EXPECT_EQ(keys_of(store.inner.entries()).back(), "iThreshR");

    store.inner.set("iThreshR", Variant::integer(1));
    store.inner.set("iThreshLdr", Variant::integer(1));
    EXPECT_EQ(robot.object().ReadProperties(&store), kestrone::E_FAIL);
    EXPECT_EQ(setting(robot, "iThreshR"), 1);
    EXPECT_EQ(setting(robot, "iThreshLdr"), 128);
    EXPECT_EQ(robot.object().ReadProperties(nullptr), kestrone::E_POINTER);
}

TEST(StoredSettings, ComeBackAfterASaveAndALoad) {
    Robot robot(host_testing::kThreePins);
    rovanta::Rovanta& core = robot.core();
    core.LetSetting(*rovanta::find_setting("iThreshL"), Variant::integer(-12));
    core.LetSetting(*rovanta::find_setting("sDummyString1"), Variant::string("x y"));
    core.LetSetting(*rovanta::find_setting("iMotorBias"), Variant::integer(-25));
    MemoryStore store;
    ASSERT_EQ(robot.object().WriteProperties(&store), kestrone::S_OK);

    Robot other(host_testing::kThreePins);
    ASSERT_EQ(other.object().ReadProperties(&store), kestrone::S_OK);
    EXPECT_EQ(other.core().settings.iThreshL, -12);
    EXPECT_EQ(other.core().settings.sDummyString1, "x y");
    EXPECT_EQ(other.core().settings.iMotorBias, -25);
    EXPECT_EQ(other.core().settings.bUseI2C, 128);
}

}  // namespace
