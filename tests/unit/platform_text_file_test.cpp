// Reading text files line by line under file number 1.
#include <gtest/gtest.h>

#include "platform/basic_error.h"
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
    };
    for (const auto& [text, expected] : cases)
        EXPECT_EQ(platform::split_lines(text), expected);
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

}  // namespace
