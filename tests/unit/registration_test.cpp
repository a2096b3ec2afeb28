// Self-registration: the record in the host's component folder.
#include <gtest/gtest.h>

#include <csignal>
#include <cstdlib>
#include <filesystem>

#include <sys/resource.h>

#include "host/registration.h"
#include "support/temp_dir.h"

namespace {

// Points the data folder somewhere of the test's own, and puts the environment back after.
class DataHome {
  public:
    explicit DataHome(const char* xdg, const char* home) {
        save("XDG_DATA_HOME", old_xdg_, had_xdg_);
        save("HOME", old_home_, had_home_);
        set("XDG_DATA_HOME", xdg);
        set("HOME", home);
    }
    ~DataHome() {
        set("XDG_DATA_HOME", had_xdg_ ? old_xdg_.c_str() : nullptr);
        set("HOME", had_home_ ? old_home_.c_str() : nullptr);
    }

  private:
    static void save(const char* name, std::string& value, bool& had) {
        const char* v = std::getenv(name);
        had = v != nullptr;
        if (v) value = v;
    }
    static void set(const char* name, const char* value) {
        if (value)
            ::setenv(name, value, 1);
        else
            ::unsetenv(name);
    }
    std::string old_xdg_, old_home_;
    bool had_xdg_ = false, had_home_ = false;
};

TEST(Registration, TheFolderFollowsXdgThenHome) {
    DataHome a("/data/x/", "/home/u");
    EXPECT_EQ(rovanta::component_registry_folder(), "/data/x/kestrone/components");
    DataHome b("relative/not/allowed", "/home/u");
    EXPECT_EQ(rovanta::component_registry_folder(), "/home/u/.local/share/kestrone/components");
    DataHome c(nullptr, "/home/v");
    EXPECT_EQ(rovanta::component_registry_folder(), "/home/v/.local/share/kestrone/components");
}

TEST(Registration, WritesTheRecordAndRemovesOnlyItsOwn) {
    testing_support::TempDir dir;
    DataHome env(dir.path().c_str(), "/nonexistent");
    const std::string folder = dir.path() + "/kestrone/components";
    const std::string file = rovanta::registration_file(folder);
    const std::string module = "/opt/odd \"dir\"\\\nB/KT5_Rovanta.so";

    ASSERT_EQ(rovanta::register_component(module), kestrone::S_OK);
    const std::string record = testing_support::read_file(file);
    EXPECT_NE(record.find("\"name\": \"Rovanta\""), std::string::npos) << record;
    EXPECT_NE(record.find("\"class\": \"{5B1E7A30-2C4D-4E8F-9A61-0D527C13A401}\""),
              std::string::npos);
    EXPECT_NE(record.find(R"("module": "/opt/odd \"dir\"\\\u000aB/KT5_Rovanta.so")"),
              std::string::npos)
        << record;
    EXPECT_NE(record.find("\"version\": \"5.0.3\""), std::string::npos);

    // Another copy's unregistration leaves this record; the module's own removes it.
    EXPECT_EQ(rovanta::unregister_component("/elsewhere/KT5_Rovanta.so"), kestrone::S_FALSE);
    EXPECT_TRUE(std::filesystem::exists(file));
    EXPECT_EQ(rovanta::unregister_component(module), kestrone::S_OK);
    EXPECT_FALSE(std::filesystem::exists(file));
    EXPECT_EQ(rovanta::unregister_component(module), kestrone::S_FALSE);
    // Nothing but the record was ever left in the folder.
    EXPECT_TRUE(std::filesystem::is_empty(folder));
    // A record that names no module is no other copy's: it goes.
    dir.write("kestrone/components/" + file.substr(folder.size() + 1), "{\"name\": \"Rovanta\"}\n");
    EXPECT_EQ(rovanta::unregister_component(module), kestrone::S_OK);
    EXPECT_FALSE(std::filesystem::exists(file));
}

TEST(Registration, FailsWithAStatusWhenTheFolderCannotBeMade) {
    testing_support::TempDir dir;
    const std::string blocker = dir.write("kestrone", "a file where a folder should be");
    DataHome env(dir.path().c_str(), "/nonexistent");
    EXPECT_EQ(rovanta::register_component("/x/KT5_Rovanta.so"), kestrone::SELFREG_E_CLASS);
    EXPECT_EQ(testing_support::read_file(blocker), "a file where a folder should be");
    EXPECT_EQ(rovanta::register_component(""), kestrone::SELFREG_E_CLASS);
}

// On a disk that takes only a few bytes more, the record is refused whole: no part of it stays.
TEST(Registration, AFullDiskLeavesNoPartOfARecord) {
    testing_support::TempDir dir;
    DataHome env(dir.path().c_str(), "/nonexistent");
    const std::string folder = dir.path() + "/kestrone/components";
    const auto register_on_a_full_disk = [&] {
        std::signal(SIGXFSZ, SIG_IGN);
        const rlimit few{16, 16};
        ::setrlimit(RLIMIT_FSIZE, &few);
        const bool refused =
            rovanta::register_component("/x/KT5_Rovanta.so") == kestrone::SELFREG_E_CLASS;
        std::_Exit(refused && std::filesystem::is_empty(folder) ? 0 : 1);
    };
    EXPECT_EXIT(register_on_a_full_disk(), testing::ExitedWithCode(0), "");
}

}  // namespace
