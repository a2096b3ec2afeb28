// The project file: kinds survive, damage is refused whole, and a save killed half way leaves the
// old file as it was.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <fcntl.h>
#include <signal.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <atomic>
#include <cmath>
#include <cstdlib>
#include <filesystem>
#include <thread>

#include "project_file.h"
#include "support/temp_dir.h"

namespace {

using host::StoreEntries;
using kestrone::Variant;
using kestrone::VarType;

StoreEntries every_kind() {
    return {
        {"Port0", Variant::long_(-2147483647 - 1)},
        {"bReturnInt", Variant::integer(-32768)},
        {"empty", Variant()},
        {"single", Variant::single(1263.9409f)},
        {"double", Variant::double_(0.1)},
        {"huge", Variant::double_(-1.7976931348623157e308)},
        {"inf", Variant::double_(INFINITY)},
        {"-inf", Variant::double_(-INFINITY)},
        {"flag", Variant::boolean(true)},
        {"text", Variant::string("line\r\n\"quoted\"\t\x01 é")},
        {"bytes", Variant::string(std::string("\xff\xfe\x00z", 4))},
        {std::string("key\x80", 4), Variant::byte(255)},
        {"levels", Variant::array(VarType::Boolean, 0, {Variant::boolean(true)})},
        {"mixed", Variant::array(VarType::Variant, -3,
                                 {Variant::integer(1), Variant::string("a"),
                                  Variant::array(VarType::Byte, 0, {})})},
    };
}

TEST(ProjectFile, KeepsEveryKindAndTheOrder) {
    testing_support::TempDir dir;
    const std::string path = dir.path() + "/robot.kproj";
    std::string error;
    ASSERT_TRUE(host::save_project(path, every_kind(), &error)) << error;
    const auto loaded = host::load_project(path, &error);
    ASSERT_TRUE(loaded) << error;
    EXPECT_EQ(*loaded, every_kind());
    // NaN is not equal to itself; it still comes back as a Single NaN.
    ASSERT_TRUE(host::save_project(path, {{"nan", Variant::single(NAN)}}, &error));
    const auto nan = host::load_project(path, &error);
    ASSERT_TRUE(nan);
    EXPECT_EQ((*nan)[0].value.type(), VarType::Single);
    EXPECT_TRUE(std::isnan((*nan)[0].value.as_single()));
}

std::string with_store(const std::string& store, const std::string& version = "1") {
    return R"({"format": "kestrone-project", "version": )" + version + R"(, "store": )" + store +
           "}";
}

// Each damaged file is refused with a message that names what is wrong.
TEST(ProjectFile, RefusesDamagedContentWithAReason) {
    const std::string good = host::encode_project({{"iThreshL", Variant::integer(5)}});
    struct Case {
        const char* name;
        std::string bytes;
        const char* says;
    };
    const Case cases[] = {
        {"empty file", "", "damaged or cut short"},
        {"cut short", good.substr(0, good.size() / 2), "damaged or cut short"},
        {"garbage", "\x89PNG\r\n\x1a\n", "damaged or cut short"},
        {"another format", R"({"format": "other", "version": 1, "store": []})",
         "not a Kestrone project file"},
        {"a bare array", "[1, 2]", "not a Kestrone project file"},
        {"a later version", with_store("[]", "2"), "of version 2"},
        {"no version", R"({"format": "kestrone-project", "store": []})", "of version (none)"},
        {"no store", R"({"format": "kestrone-project", "version": 1})", "has no store"},
        {"unknown kind", with_store(R"([{"key": "a", "value": {"kind": "Currency", "value": 1}}])"),
         "unknown kind \"Currency\""},
        {"16-bit overflow",
         with_store(R"([{"key": "a", "value": {"kind": "Integer", "value": 32768}}])"),
         "32768 is not a 16-bit integer"},
        {"a fraction in a Long",
         with_store(R"([{"key": "a", "value": {"kind": "Long", "value": 1.5}}])"),
         "is not a 32-bit integer"},
        {"text for a number",
         with_store(R"([{"key": "a", "value": {"kind": "Integer", "value": "5"}}])"),
         "not a number"},
        {"a double in a Single",
         with_store(R"([{"key": "a", "value": {"kind": "Single", "value": 0.1}}])"),
         "not a 32-bit float"},
        {"duplicate key",
         with_store(
             R"([{"key": "a", "value": {"kind": "Empty"}}, {"key": "a", "value": {"kind": "Empty"}}])"),
         "appears twice"},
        {"no key", with_store(R"([{"value": {"kind": "Empty"}}])"), "has no key"},
        {"mixed typed array",
         with_store(
             R"([{"key": "a", "value": {"kind": "Array", "element": "Long", "lower": 0, "items": [{"kind": "Integer", "value": 1}]}}])"),
         "not of the array's kind Long"},
        {"bounds past 32 bits",
         with_store(
             R"([{"key": "a", "value": {"kind": "Array", "element": "Long", "lower": 2147483647, "items": [{"kind": "Long", "value": 1}, {"kind": "Long", "value": 2}]}}])"),
         "the array's bounds are out of range"},
        {"bad base64", with_store(R"([{"keyBase64": "!!", "value": {"kind": "Empty"}}])"),
         "not valid base64"},
        {"JSON nested without end", with_store(std::string(100000, '[')), "too deeply nested"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        std::string error;
        EXPECT_FALSE(host::decode_project(c.bytes, &error));
        EXPECT_NE(error.find(c.says), std::string::npos) << error;
    }
}

TEST(ProjectFile, RefusesWhatIsNoReadableFile) {
    testing_support::TempDir dir;
    std::string error;
    EXPECT_FALSE(host::load_project(dir.path(), &error));
    EXPECT_NE(error.find("it is a folder"), std::string::npos) << error;
    EXPECT_FALSE(host::load_project(dir.path() + "/missing.kproj", &error));
    EXPECT_NE(error.find("No such file"), std::string::npos) << error;
    EXPECT_NE(error.find("missing.kproj"), std::string::npos) << error;

    const std::string locked = dir.write("locked.kproj", host::encode_project({}));
    ::chmod(locked.c_str(), 0);
    if (::geteuid() != 0) {  // root reads it anyway
        EXPECT_FALSE(host::load_project(locked, &error));
        EXPECT_NE(error.find("Permission denied"), std::string::npos) << error;
    }
    // Saving onto a folder is refused and leaves it alone.
    EXPECT_FALSE(host::save_project(dir.path(), {}, &error));
    EXPECT_NE(error.find("it is a folder"), std::string::npos) << error;
    EXPECT_TRUE(std::filesystem::is_directory(dir.path()));
}

// A save that cannot be made leaves the old file; one that can keeps its permissions and writes
// through a link; none leaves a temporary file behind.
TEST(ProjectFile, AFailedSaveLeavesTheOldFileAndAGoodOneKeepsItsPlace) {
    testing_support::TempDir dir;
    std::string error;
    EXPECT_FALSE(host::save_project(dir.path() + "/sub/robot.kproj", {}, &error));
    EXPECT_NE(error.find("No such file"), std::string::npos) << error;

    const std::string file = dir.path() + "/robot.kproj";
    ASSERT_TRUE(host::save_project(file, {{"a", Variant::integer(1)}}, &error)) << error;
    const std::string before = testing_support::read_file(file);
    ::chmod(file.c_str(), 0444);
    EXPECT_FALSE(host::save_project(file, {{"a", Variant::integer(2)}}, &error));
    EXPECT_THAT(error, testing::HasSubstr("it is read-only"));
    if (::geteuid() != 0) {
        ::chmod(file.c_str(), 0644);
        ::chmod(dir.path().c_str(), 0555);  // no new file can be made beside it
        EXPECT_FALSE(host::save_project(file, {{"a", Variant::integer(2)}}, &error));
        ::chmod(dir.path().c_str(), 0755);
    }
    EXPECT_EQ(testing_support::read_file(file), before);

    ::chmod(file.c_str(), 0640);
    const std::string link = dir.path() + "/link.kproj";
    ASSERT_EQ(::symlink(file.c_str(), link.c_str()), 0);
    ASSERT_TRUE(host::save_project(link, {{"k", Variant::long_(3)}}, &error)) << error;
    struct stat st {};
    ASSERT_EQ(::lstat(link.c_str(), &st), 0);
    EXPECT_TRUE(S_ISLNK(st.st_mode));
    ASSERT_EQ(::stat(file.c_str(), &st), 0);
    EXPECT_EQ(st.st_mode & 0777, 0640u);
    EXPECT_EQ(host::load_project(file, &error)->at(0).value, Variant::long_(3));
    int files = 0;  // the file and the link: no temporary file is left behind
    for (const auto& e : std::filesystem::directory_iterator(dir.path()))
        files += e.is_regular_file() || e.is_symlink();
    EXPECT_EQ(files, 2);
}

// A write that fails part way (here at the file size limit) ends the save without retrying for
// ever; the old file stays.
TEST(ProjectFile, AWriteThatFailsEndsTheSave) {
    testing_support::TempDir dir;
    const std::string file = dir.path() + "/robot.kproj";
    std::string error;
    ASSERT_TRUE(host::save_project(file, {}, &error)) << error;
    const std::string before = testing_support::read_file(file);
    const pid_t child = ::fork();
    ASSERT_GE(child, 0);
    if (child == 0) {
        ::signal(SIGXFSZ, SIG_IGN);
        ::alarm(10);
        const rlimit limit{4096, 4096};
        ::setrlimit(RLIMIT_FSIZE, &limit);
        const StoreEntries big{{"big", Variant::string(std::string(100000, 'x'))}};
        ::_exit(host::save_project(file, big, &error) ? 1 : 0);
    }
    int status = 0;
    ::waitpid(child, &status, 0);
    EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0) << status;
    EXPECT_EQ(testing_support::read_file(file), before);
}

// A writer killed at a random point of a save leaves either the old file or the new one, whole;
// what it leaves beside it is its unfinished new file, which the next save removes.
TEST(ProjectFile, AWriterKilledMidSaveLeavesAWholeFileAndTheNextSaveTidies) {
    testing_support::TempDir dir;
    const std::string file = dir.path() + "/robot.kproj";
    StoreEntries old_store, new_store;
    for (int i = 0; i < 1500; ++i) {
        old_store.push_back({"key" + std::to_string(i), Variant::string(std::string(200, 'o'))});
        new_store.push_back({"key" + std::to_string(i), Variant::long_(i)});
    }
    std::string error;
    ASSERT_TRUE(host::save_project(file, old_store, &error)) << error;
    const std::string old_bytes = testing_support::read_file(file);
    const std::string new_bytes = host::encode_project(new_store);
    // Another project's unfinished file, and a file that only looks like one, stay.
    const std::string other = dir.write("other.kproj.saving-Ab12Cd", "x");
    const std::string lookalike = dir.write("robot.kproj.saving-too-long", "x");

    auto temporaries = [&] {
        std::vector<std::filesystem::path> found;
        for (const auto& e : std::filesystem::directory_iterator(dir.path()))
            if (e.path().filename().string().starts_with("robot.kproj.saving-") &&
                e.path() != lookalike)
                found.push_back(e.path());
        return found;
    };
    std::srand(20261123);
    int caught_writing = 0;
    for (int round = 0; round < 10; ++round) {
        const pid_t child = ::fork();
        ASSERT_GE(child, 0);
        if (child == 0) {
            std::string e;
            for (;;)
                host::save_project(file, new_store, &e);  // until killed
        }
        // Wait until the child's new file exists beside the old one, then kill it at a random
        // moment: while it writes, flushes or renames.
        for (int waited = 0; waited < 200000 && temporaries().empty(); ++waited)
            ::usleep(50);
        ::usleep(static_cast<useconds_t>(std::rand() % 2000));
        ::kill(child, SIGKILL);
        int status = 0;
        ::waitpid(child, &status, 0);
        ASSERT_TRUE(WIFSIGNALED(status));
        const std::string now = testing_support::read_file(file);
        EXPECT_TRUE(now == old_bytes || now == new_bytes) << "round " << round;
        ASSERT_TRUE(host::load_project(file, &error)) << error;
        caught_writing += !temporaries().empty();
        ASSERT_TRUE(host::save_project(file, old_store, &error)) << error;
        EXPECT_TRUE(temporaries().empty()) << "round " << round;
    }
    EXPECT_GT(caught_writing, 0);
    EXPECT_TRUE(std::filesystem::exists(other));
    EXPECT_TRUE(std::filesystem::exists(lookalike));
}

// Whatever a save accepts, a load accepts: what it would refuse is refused before writing.
TEST(ProjectFile, SaveRefusesWhatLoadWouldRefuse) {
    testing_support::TempDir dir;
    const std::string file = dir.path() + "/robot.kproj";
    std::string error;
    ASSERT_TRUE(host::save_project(file, {{"a", Variant::integer(1)}}, &error));
    const std::string before = testing_support::read_file(file);

    auto nested = [](int depth) {
        Variant v = Variant::integer(7);
        for (int i = 0; i < depth; ++i)
            v = Variant::array(VarType::Variant, 0, {v});
        return v;
    };
    ASSERT_TRUE(host::save_project(file, {{"deep", nested(64)}}, &error)) << error;
    ASSERT_TRUE(host::load_project(file, &error)) << error;
    EXPECT_EQ(host::load_project(file, &error)->at(0).value, nested(64));
    ASSERT_TRUE(host::save_project(file, {{"a", Variant::integer(1)}}, &error));

    EXPECT_FALSE(host::save_project(file, {{"deeper", nested(65)}}, &error));
    EXPECT_THAT(error, testing::HasSubstr("\"deeper\" has arrays nested more than 64 deep"));
    std::string json = host::encode_project({{"deeper", nested(65)}});
    EXPECT_FALSE(host::decode_project(json, &error));
    EXPECT_THAT(error, testing::HasSubstr("nested more than 64 deep"));

    // Control characters are written six bytes each: 2000 of them pass 10 000 bytes. (The
    // load's own limit, 64 MB, is the default of a save.)
    const StoreEntries big{{"big", Variant::string(std::string(2000, '\x01'))}};
    EXPECT_FALSE(host::save_project_within(file, big, 10000, &error));
    EXPECT_THAT(error, testing::HasSubstr("more than the 10000 a project file may hold"));
    EXPECT_TRUE(host::save_project_within(file + ".2", big, 20000, &error)) << error;
    EXPECT_EQ(testing_support::read_file(file), before);
}

TEST(ProjectFile, AFifoIsRefusedWithoutWaitingForAWriter) {
    testing_support::TempDir dir;
    const std::string fifo = dir.path() + "/project.kproj";
    ASSERT_EQ(::mkfifo(fifo.c_str(), 0600), 0);
    // Should the load wait for a writer, this one comes after a while: the test then fails
    // instead of hanging.
    std::atomic<bool> released{false};
    std::thread writer([&] {
        for (int i = 0; i < 300 && !released; ++i)
            ::usleep(10000);
        if (released.exchange(true)) return;
        const int fd = ::open(fifo.c_str(), O_WRONLY);
        if (fd >= 0) ::close(fd);
    });
    std::string error;
    const bool loaded = host::load_project(fifo, &error).has_value();
    const bool waited = released.exchange(true);
    writer.join();
    EXPECT_FALSE(waited) << "the load waited for a writer";
    EXPECT_FALSE(loaded);
    EXPECT_THAT(error, testing::HasSubstr("it is not a regular file"));
    EXPECT_FALSE(host::save_project(fifo, {}, &error));
    EXPECT_THAT(error, testing::HasSubstr("it is not a regular file"));
}

}  // namespace
