// The project file: kinds survive, damage is refused whole, and a save killed half way leaves the
// old file as it was.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <fcntl.h>
#include <signal.h>
#include <sys/file.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <atomic>
#include <cmath>
#include <cstdlib>
#include <filesystem>
#include <random>
#include <thread>

#include "float_text.h"
#include "project_file.h"
#include "support/random_values.h"
#include "support/temp_dir.h"

namespace {

using host::StoreEntries;
using kestrone::Variant;
using kestrone::VarType;

// Any value comes back bit for bit (a negative zero, a NaN's payload), keys of any bytes, in their
// order; a typed array's kind is written once, its elements bare.
TEST(ProjectFile, EveryValueComesBackBitForBit) {
    const std::uint32_t seed = std::random_device{}();
    testing_support::RandomValues values(seed, true);
    testing_support::TempDir dir;
    const std::string path = dir.path() + "/robot.kproj";
    for (int round = 0; round < 200; ++round) {
        StoreEntries store;
        for (int i = 0; i < 10; ++i)
            store.push_back({std::to_string(i) + (i % 3 ? "" : "\xff"), values.value()});
        std::string error;
        std::optional<StoreEntries> back;  // one round in ten through a file on disk
        if (round % 10)
            back = host::decode_project(host::encode_project(store), &error);
        else if (host::save_project(path, store, &error))
            back = host::load_project(path, &error);
        ASSERT_TRUE(back) << error << " (seed " << seed << ")";
        ASSERT_EQ(back->size(), store.size());
        for (std::size_t i = 0; i < store.size(); ++i)
            ASSERT_TRUE(testing_support::same_bits((*back)[i].value, store[i].value) &&
                        (*back)[i].key == store[i].key)
                << host::encode_project({store[i]}) << " (seed " << seed << ")";
    }
    std::vector<Variant> longs(10000, Variant::long_(-2147483647 - 1));
    const std::string many =
        host::encode_project({{"a", Variant::array(VarType::Long, 0, std::move(longs))}});
    EXPECT_LT(many.size(), 10000u * 13 + 200) << "a Long element takes 13 bytes at most";
}

std::string with_store(const std::string& store, const std::string& version = "1") {
    return R"({"format": "kestrone-project", "version": )" + version + R"(, "store": )" + store +
           "}";
}

// Files of the first version: every element with its kind, infinities and NaN by name.
TEST(ProjectFile, ReadsTheFirstVersion) {
    std::string error;
    const auto old = host::decode_project(
        with_store(R"([{"key": "a", "value": {"kind": "Array", "element": "Single", "lower": 1,
        "items": [{"kind": "Single", "value": "NaN"}, {"kind": "Single", "value": 1.5}]}},
        {"key": "b", "value": {"kind": "Double", "value": "-Infinity"}}])"),
        &error);
    ASSERT_TRUE(old) << error;
    EXPECT_EQ(console::float_text(old->at(0).value.as_array().items.at(0).as_single()), "nan");
    EXPECT_EQ(old->at(0).value.as_array().items.at(1), Variant::single(1.5f));
    EXPECT_EQ(old->at(1).value, Variant::double_(-INFINITY));
}

// A key is written as text exactly when it is well-formed UTF-8; any other is written as Base64.
// Code points at the edges of each length and of the excluded ranges, encoded by the textbook rule
// (which also makes surrogates and points past U+10FFFF, the ill-formed ones).
TEST(ProjectFile, WritesWellFormedTextAsTextOnly) {
    const auto utf8 = [](std::uint32_t c) {
        std::string s;
        const auto add = [&](std::uint32_t b) { s += static_cast<char>(b); };
        if (c < 0x80) {
            add(c);
        } else if (c < 0x800) {
            add(0xC0 | c >> 6), add(0x80 | (c & 0x3F));
        } else if (c < 0x10000) {
            add(0xE0 | c >> 12), add(0x80 | (c >> 6 & 0x3F)), add(0x80 | (c & 0x3F));
        } else {
            add(0xF0 | c >> 18), add(0x80 | (c >> 12 & 0x3F));
            add(0x80 | (c >> 6 & 0x3F)), add(0x80 | (c & 0x3F));
        }
        return s;
    };
    const std::uint32_t points[] = {0x7F,     0x80,     0x7FF,    0x800,   0xD7FF,
                                    0xD800,   0xDFFF,   0xE000,   0xFFFF,  0x10000,
                                    0x10F000, 0x10FFFF, 0x110000, 0x13FFFF};
    for (const std::uint32_t c : points) {
        const bool well_formed = c < 0xD800 || (c > 0xDFFF && c <= 0x10FFFF);
        const std::string file = host::encode_project({{"k" + utf8(c), Variant::integer(1)}});
        EXPECT_EQ(file.find("\"keyBase64\"") == std::string::npos, well_formed) << std::hex << c;
    }
    EXPECT_NE(host::encode_project({{"\xE0\x9F\xBF", Variant::integer(1)}}).find("keyBase64"),
              std::string::npos)
        << "an overlong form";
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
        {"a later version", with_store("[]", "3"), "of version 3"},
        {"a version between", with_store("[]", "1.5"), "of version 1.5"},
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

TEST(ProjectFile, AFailedSaveLeavesTheOldFile) {
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
    ::chmod(file.c_str(), 0644);
    if (::geteuid() != 0) {
        ::chmod(dir.path().c_str(), 0555);  // no new file can be made beside it
        EXPECT_FALSE(host::save_project(file, {{"a", Variant::integer(2)}}, &error));
        ::chmod(dir.path().c_str(), 0755);
    }
    EXPECT_EQ(testing_support::read_file(file), before);
    // The disk fills while the new file is written: the save fails, the old file stays.
    const pid_t child = ::fork();
    ASSERT_GE(child, 0);
    if (child == 0) {
        ::signal(SIGXFSZ, SIG_IGN);
        ::alarm(10);  // a save that retries a failing write for ever
        const rlimit full{4096, 4096};
        ::setrlimit(RLIMIT_FSIZE, &full);
        const StoreEntries big{{"a", Variant::string(std::string(10000, 'x'))}};
        std::string e;
        std::_Exit(host::save_project(file, big, &e) ? 1 : e.ends_with("File too large") ? 0 : 2);
    }
    int status = -1;
    ::waitpid(child, &status, 0);
    EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0) << status;
    EXPECT_EQ(testing_support::read_file(file), before);
}

TEST(ProjectFile, KeepsThePermissionsAndFollowsALink) {
    testing_support::TempDir dir;
    const std::string file = dir.path() + "/robot.kproj";
    std::string error;
    ASSERT_TRUE(host::save_project(file, {}, &error));
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
    int files = 0;  // the file and the link: saves leave no temporary file behind
    for (const auto& e : std::filesystem::directory_iterator(dir.path()))
        files += e.is_regular_file() || e.is_symlink();
    EXPECT_EQ(files, 2);
    // A link that leads to no file is refused by a save as by a load, and stays a link.
    const std::string loop = dir.path() + "/loop.kproj", other = dir.path() + "/other.kproj";
    const std::string dangling = dir.path() + "/dangling.kproj";
    ASSERT_EQ(::symlink(other.c_str(), loop.c_str()), 0);
    ASSERT_EQ(::symlink(loop.c_str(), other.c_str()), 0);
    ASSERT_EQ(::symlink("missing.kproj", dangling.c_str()), 0);
    for (const auto& [path, says] :
         {std::pair<std::string, std::string>{loop, "a symbolic link that leads round in a loop"},
          {dangling, "a symbolic link to missing.kproj, which does not exist"}}) {
        EXPECT_FALSE(host::save_project(path, {}, &error));
        EXPECT_THAT(error, testing::HasSubstr(says));
        EXPECT_FALSE(host::load_project(path, &error));
        EXPECT_THAT(error, testing::HasSubstr(says));
        ASSERT_EQ(::lstat(path.c_str(), &st), 0);
        EXPECT_TRUE(S_ISLNK(st.st_mode)) << path;
    }
    EXPECT_FALSE(std::filesystem::exists(dir.path() + "/missing.kproj"));
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
    // A save still at work holds its new file locked: that one stays.
    const std::string busy = dir.write("robot.kproj.saving-Busy12", "x");
    const int held = ::open(busy.c_str(), O_RDONLY);
    ASSERT_EQ(::flock(held, LOCK_EX), 0);
    ASSERT_TRUE(host::save_project(file, old_store, &error)) << error;
    EXPECT_TRUE(std::filesystem::exists(busy));
    ::close(held);
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
    EXPECT_THAT(error, testing::HasSubstr("more than the 10000 it may hold"));
    EXPECT_TRUE(host::save_project_within(file + ".2", big, 20000, &error)) << error;
    EXPECT_EQ(testing_support::read_file(file), before);
    // An entry is judged with the rest of the store: a new key adds to it, a key set again
    // replaces its value.
    const host::StoreEntry small{"big", Variant::integer(1)}, more{"more", big[0].value};
    EXPECT_EQ(host::why_not_saveable(big, &small, 12200), "");
    EXPECT_THAT(host::why_not_saveable(big, &more, 24000),
                testing::HasSubstr("more than the 24000"));
    EXPECT_EQ(host::why_not_saveable(big, nullptr, 12200), "");
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
