// The profile reader: line ends, blanks, comments, quotes, first match wins, the buffer.
#include <gtest/gtest.h>

#include <string>

#include "platform/profile_reader.h"
#include "support/temp_dir.h"

namespace {

struct Lookup {
    const char* what;
    std::string text;
    const char* section;
    const char* key;
    const char* fallback;
    std::string expected;
};

TEST(ProfileReader, FindsKeysAsTheWindowsReaderDoes) {
    const Lookup cases[] = {
        {"CR LF lines", "[S]\r\nk=v\r\n", "S", "k", "d", "v"},
        {"CR alone", "[S]\rk=v\rj=w", "S", "j", "d", "w"},
        {"LF alone", "[S]\nk=v\n", "S", "k", "d", "v"},
        {"a run of line ends", "[S]\r\r\n\n\rk=v", "S", "k", "d", "v"},
        {"section and key ignore case", "[settings]\nDESCRIPTION=x", "Settings", "description", "d",
         "x"},
        {"blanks around key and value", "[S]\n \t k \t= \v value \t\n", "S", "k", "d", "value"},
        {"blanks inside a key stay", "[S]\na b=1\n", "S", "a b", "d", "1"},
        {"blanks inside must match", "[S]\na b=1\n", "S", "ab", "d", "d"},
        {"spaces cut from the caller's names", "[S]\nk=1\n", "  S ", " k ", "d", "1"},
        {"index keys with their blank", "[Pins]\n1=LED\n", "Pins", " 1", "d", "LED"},
        {"a comment is never found", "[S]\n;k=1\nk=2\n", "S", "k", "d", "2"},
        {"not even as ;key", "[S]\n;k=1\n", "S", ";k", "d", "d"},
        {"a ; elsewhere is text", "[S]\nk=a;b\n", "S", "k", "d", "a;b"},
        {"# is text", "[S]\n#k=1\n", "S", "#k", "d", "1"},
        {"lines before a section are no entries", "k=1\n[S]\n", "S", "k", "d", "d"},
        {"the first duplicate wins", "[S]\nk=1\nk=2\n", "S", "k", "d", "1"},
        {"only the first section of a name", "[S]\na=1\n[T]\n[s]\nb=2\n", "S", "b", "d", "d"},
        {"a line without = is no entry", "[S]\nk\n", "S", "k", "d", "d"},
        {"double quotes go", "[S]\nk=\"a b\"\n", "S", "k", "d", "a b"},
        {"single quotes go", "[S]\nk='x'\n", "S", "k", "d", "x"},
        {"a lone quote stays", "[S]\nk=\"x\n", "S", "k", "d", "\"x"},
        {"mismatched quotes stay", "[S]\nk=\"x'\n", "S", "k", "d", "\"x'"},
        {"only the outer pair goes", "[S]\nk=\"\"x\"\"\n", "S", "k", "d", "\"x\""},
        {"empty quotes", "[S]\nk=\"\"\n", "S", "k", "d", ""},
        {"key= is empty, not the default", "[S]\nk=\n", "S", "k", "d", ""},
        {"the default loses trailing spaces", "", "S", "k", "dflt   ", "dflt"},
        {"a header without ]", "[S\nk=1\n", "S", "k", "d", "1"},
        {"text after ] is ignored", "[S] trailing\nk=1\n", "S", "k", "d", "1"},
        {"blanks inside the brackets", "[ S \t]\nk=1\n", "S", "k", "d", "1"},
        {"a byte-order mark is part of the line", "\xEF\xBB\xBF[S]\nk=1\n", "S", "k", "d", "d"},
        {"8-bit bytes come back unchanged", "[S]\nk=\xE9\xFF\x01\n", "S", "k", "d", "\xE9\xFF\x01"},
        {"the value may hold =", "[S]\nk=a=b\n", "S", "k", "d", "a=b"},
    };
    for (const Lookup& c : cases)
        EXPECT_EQ(platform::profile_lookup(c.text, c.section, c.key, c.fallback, 255), c.expected)
            << c.what;
}

TEST(ProfileReader, CutsALongValueToTheBuffer) {
    const std::string exact(254, 'a'), longer(300, 'b');
    EXPECT_EQ(platform::profile_lookup("[S]\nk=" + exact, "S", "k", "", 255), exact);
    EXPECT_EQ(platform::profile_lookup("[S]\nk=" + longer, "S", "k", "", 255),
              std::string(254, 'b'));
    EXPECT_EQ(platform::profile_lookup("[S]\nk=abc", "S", "k", "", 1), "");
    EXPECT_EQ(platform::profile_lookup("", "S", "k", std::string(300, 'c'), 255),
              std::string(254, 'c'));
}

TEST(ProfileReader, TreatsAMissingOrUnreadableFileAsMissing) {
    testing_support::TempDir dir;
    EXPECT_EQ(platform::get_private_profile_string("S", "k", "d", 255, dir.path() + "/none.c"),
              "d");
    EXPECT_EQ(platform::get_private_profile_string("S", "k", "d", 255, dir.path()), "d");
    const std::string file = dir.write("x.c", "[S]\nk=1\n");
    EXPECT_EQ(platform::get_private_profile_string("S", "k", "d", 255, file), "1");
}

}  // namespace
