// Reading text files line by line under file number 1.
#include <gtest/gtest.h>
#include <sys/stat.h>

#include "platform/basic_error.h"
#include "platform/memory_files.h"
#include "platform/profile_reader.h"
#include "platform/text_file.h"
#include "support/temp_dir.h"

namespace {

using Lines = std::vector<std::string>;

TEST(SplitLines, EndsALineAtCrLfCrOrLf) {
    const std::pair<std::string, Lines> cases[] = {
        {"a\r\nb\r\n", {"a", "b"}},
        {"a\rb\r", {"a", "b"}},
        {"a\nb", {"a", "b"}},
        {"a\r\rb", {"a", "", "b"}},
        {"a\n\r\nb", {"a", "", "b"}},
        {"\r\n", {""}},
        {"", {}},
        {"a\n\rb", {"a", "", "b"}},
        // Lines ended by CR alone, long enough to live on the heap: the search for a LF never
        // finds one and must stay inside the text (the sanitizers check that).
        {std::string(40, 'x') + "\r" + std::string(40, 'y') + "\r" + std::string(40, 'z'),
         {std::string(40, 'x'), std::string(40, 'y'), std::string(40, 'z')}},
    };
    testing_support::TempDir dir;
    // One file number for every case: a shorter file after a longer one shows nothing of it.
    platform::InputFile f;
    for (const auto& [text, expected] : cases) {
        EXPECT_EQ(platform::split_lines(text), expected);
        // Line Input on the file ends its lines the same way.
        f.open(dir.write("lines.c", text));
        Lines read;
        while (!f.at_end())
            read.push_back(f.read_line());
        f.close();
        EXPECT_EQ(read, expected) << text;
    }
}

int open_error(platform::InputFile& f, const std::string& path) {
    try {
        f.open(path);
    } catch (const vb::BasicError& e) {
        return e.number();
    }
    return 0;
}

TEST(InputFile, ReportsTheRuntimeErrors) {
    testing_support::TempDir dir;
    platform::InputFile f;
    EXPECT_EQ(open_error(f, dir.path() + "/missing.c"), vb::kFileNotFound);
    EXPECT_EQ(open_error(f, dir.path()), vb::kPathFileAccessError);
    const std::string file = dir.write("a.c", "one\r\ntwo");
    EXPECT_EQ(open_error(f, file), 0);
    EXPECT_EQ(open_error(f, file), vb::kFileAlreadyOpen);
    EXPECT_EQ(f.read_line(), "one");
    EXPECT_EQ(f.read_line(), "two");
    EXPECT_TRUE(f.at_end());
    EXPECT_THROW(f.read_line(), vb::BasicError);
    f.close();
    EXPECT_EQ(open_error(f, file), 0);
}

// A whole file is read as it stands, however large, and counted; what is no regular file (a
// folder, a FIFO that nobody writes) is refused at once instead of waited on.
TEST(ReadWholeFile, ReadsRegularFilesOnlyAndCountsThem) {
    testing_support::TempDir dir;
    std::string big(300000, 'x');
    big[123457] = '\0';
    const std::uint64_t before = platform::whole_file_reads();
    std::string out = "old";
    ASSERT_TRUE(platform::read_whole_file(dir.write("big.c", big), out));
    EXPECT_EQ(out, big);
    ASSERT_TRUE(platform::read_whole_file(dir.write("empty.c", ""), out));
    EXPECT_EQ(out, "");
    EXPECT_EQ(platform::whole_file_reads(), before + 2);
    const std::string fifo = dir.path() + "/fifo";
    ASSERT_EQ(::mkfifo(fifo.c_str(), 0600), 0);
    EXPECT_FALSE(platform::read_whole_file(fifo, out));
    EXPECT_FALSE(platform::read_whole_file(dir.path(), out));
    EXPECT_FALSE(platform::read_whole_file(dir.path() + "/missing", out));
    EXPECT_EQ(platform::whole_file_reads(), before + 2);
}

// A file served from memory stands in for the disk at its path alone, for every way of reading,
// whatever the disk holds there; served again it changes, and stopped, the disk shows again.
TEST(MemoryFiles, StandInForTheDiskAtTheirPathAlone) {
    testing_support::TempDir dir;
    const std::string on_disk = dir.write("a.c", "[S]\nk=disk\n");
    const std::string missing = dir.path() + "/b.c";
    platform::serve_from_memory(on_disk, "[S]\r\nk=memory\r\nlast");
    platform::serve_from_memory(missing, "[S]\nk=1");
    platform::serve_from_memory(missing, "[S]\nk=2");
    const std::string other = dir.write("c.c", "[S]\nk=other\n");
    const std::uint64_t before = platform::whole_file_reads();
    EXPECT_TRUE(platform::file_exists(missing));
    EXPECT_EQ(platform::get_private_profile_string("S", "k", "", 255, on_disk), "memory");
    EXPECT_EQ(platform::get_private_profile_string("S", "k", "", 255, missing), "2");
    EXPECT_EQ(platform::get_private_profile_string("S", "k", "", 255, other), "other");
    EXPECT_EQ(platform::whole_file_reads(), before + 3);
    platform::InputFile f;
    f.open(on_disk);
    EXPECT_EQ(f.read_line(), "[S]");
    EXPECT_EQ(f.read_all(), "k=memory\r\nlast");
    f.close();
    platform::stop_serving_from_memory();
    EXPECT_EQ(platform::served_file(on_disk), nullptr);
    EXPECT_FALSE(platform::file_exists(missing));
    EXPECT_EQ(platform::get_private_profile_string("S", "k", "", 255, on_disk), "disk");
}

}  // namespace
