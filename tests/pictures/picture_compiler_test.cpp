// The converter from pixel maps to the module's pixel arrays: what it reads, what it refuses
// and where it says the fault is, and that a damaged map stops the build.
#include <gtest/gtest.h>
#include <sys/wait.h>

#include <cstdlib>
#include <filesystem>
#include <string>
#include <vector>

#include "panel/pictures/compiled_pictures.h"
#include "panel/pictures/picture_compiler.h"
#include "support/temp_dir.h"

namespace {

namespace fs = std::filesystem;
using picture_compiler::parse_pixel_map;

// A map of the header, palette lines and rows given; the header stands on line 3 and the
// palette and rows follow a line each.
std::string map_text(const std::string& header, const std::vector<std::string>& lines) {
    std::string text = "/* XPM */\nstatic const char* t[] = {\n\"" + header + "\",\n";
    for (const std::string& line : lines)
        text += "\"" + line + "\",\n";
    return text + "};\n";
}

std::string read(const fs::path& path) {
    return testing_support::read_file(path.string());
}

TEST(PixelMap, ReadsRowsTopFirstInThePalettesColours) {
    const std::string text =
        "/* XPM */\r\n/**/\r\nstatic const char* t[] = {\r\n\"3 2 3 1\",\r\n"
        "\"a c #12ab3F\", /* mixed case */\r\n\". c #FFFFFF\",\r\n\"# c #000000\",\r\n"
        "/* pixels */\r\n\"a.#\",\r\n  \"#aa\"\r\n  }; \r\n";  // indented, spaces and CRs around
    const auto r = parse_pixel_map(text);
    ASSERT_TRUE(r.ok()) << r.error_line << ": " << r.error;
    EXPECT_EQ(r.map.width, 3);
    EXPECT_EQ(r.map.height, 2);
    EXPECT_EQ(r.map.header_line, 4);  // after an empty comment
    const std::vector<std::uint8_t> expected = {0x12, 0xAB, 0x3F, 255, 255,  255,  255,  255,
                                                0,    0,    0,    255, 0,    0,    0,    255,
                                                0x12, 0xAB, 0x3F, 255, 0x12, 0xAB, 0x3F, 255};
    EXPECT_EQ(r.map.rgba, expected);
    // Keys of several characters, and a space is a key like any other.
    const auto wide =
        parse_pixel_map(map_text("2 1 2 2", {"aa c #010203", "ab c #0A0B0C", "abaa"}));
    ASSERT_TRUE(wide.ok()) << wide.error;
    EXPECT_EQ(wide.map.rgba, (std::vector<std::uint8_t>{10, 11, 12, 255, 1, 2, 3, 255}));
    const auto spaced =
        parse_pixel_map(map_text("3 1 2 1", {"  c #010203", "x\tc  #0A0B0C", " x "}));
    ASSERT_TRUE(spaced.ok()) << spaced.error;
    EXPECT_EQ(spaced.map.rgba,
              (std::vector<std::uint8_t>{1, 2, 3, 255, 10, 11, 12, 255, 1, 2, 3, 255}));
}

TEST(PixelMap, TakesSizesUpToItsLimits) {
    const std::string wide(4096, 'a');
    EXPECT_TRUE(parse_pixel_map(map_text("4096 1 1 1", {"a c #000000", wide})).ok());
    std::vector<std::string> tall = {"a c #000000"};
    tall.resize(4097, "a");
    EXPECT_TRUE(parse_pixel_map(map_text("1 4096 1 1", tall)).ok());
    EXPECT_TRUE(parse_pixel_map(map_text("1 1 1 4", {"abcd c #000000", "abcd"})).ok());

    for (const char* header : {"4097 1 1 1", "1 4097 1 1", "1 1 1025 2", "1 1 1 5"}) {
        const auto r = parse_pixel_map(map_text(header, {"a c #000000", "a"}));
        EXPECT_EQ(r.error, "the header asks for more than a picture may have") << header;
        EXPECT_EQ(r.error_line, 3) << header;
    }
}

TEST(PixelMap, RefusesAFaultNamingItsLine) {
    struct Case {
        std::string text;
        int line;
        std::string error;
    };
    const std::string pal = "a c #000000";
    const Case cases[] = {
        {map_text("3 1 1 1", {pal, "aa"}), 5, "the row is 2 characters long, the width needs 3"},
        {map_text("3 1 1 1", {pal, "aqa"}), 5, "unknown colour key 'q' at column 2"},
        {map_text("2 1 1 2", {"aa c #000000", "aaab"}), 5, "unknown colour key 'ab' at column 3"},
        {map_text("1 1 2 1", {pal, "a c #FFFFFF", "a"}), 5, "colour key 'a' is given twice"},
        {map_text("1 1 1 1", {"a c #12345", "a"}), 4, "a colour must read \"<key> c #RRGGBB\""},
        {map_text("1 1 1 1", {"a m #123456", "a"}), 4, "a colour must read \"<key> c #RRGGBB\""},
        {map_text("1 1 1 1", {"ac #123456", "a"}), 4, "a colour must read \"<key> c #RRGGBB\""},
        {map_text("1 1 1 1", {"a c #123456 s x", "a"}), 4,
         "a colour must read \"<key> c #RRGGBB\""},
        {map_text("1 1 1 1", {"a", "a"}), 4, "a colour must read \"<key> c #RRGGBB\""},
        {map_text("1 2 1 1", {pal, "a"}), 5, "only 1 rows, the header's height is 2"},
        {map_text("1 1 1 1", {pal}), 4, "only 0 rows, the header's height is 1"},
        {map_text("1 1 1 1", {pal, ""}), 5, "the row is 0 characters long, the width needs 1"},
        {map_text("1 1 1 1", {pal, "a", "a"}), 6, "more rows than the header's height of 1"},
        {map_text("1 1 3 1", {pal, "b c #FFFFFF"}), 5, "only 2 colours, the header says 3"},
        {"static const char* t[] = {\n};\n", 0, "the map has no header"},
        {"static const char* t[] = {\n\"1 1 1 1\",\n\"a c #000000\",\n\"a\",\n", 4,
         "the map is not closed by \"};\""},
        {"\"1 1 1 1\",\nstatic const char* t[] = {\n", 1,
         "expected the \"static const char* name[] = {\" line"},
        {"", 0, "expected the \"static const char* name[] = {\" line"},
        {map_text("1 1 1 1", {pal, "a"}) + "\"a\",\n", 7, "unexpected text: \"a\","},
        {"static const char* t[] = {\n\"1 1 1 1\",\nint x;\n", 3, "unexpected text: int x;"},
        {"static const char* t[] = {\n\"1 1 1 1,\n", 2, "the row has no closing quote"},
        {"static const char* t[] = {\n\"1 1 1 1\" x\n", 2, "unexpected text after the row: x"},
        {"static const char* t[] = {\n\"1 1 1 \\1\"\n", 2, "escapes are not allowed in a row"},
    };
    for (const Case& c : cases) {
        const auto r = parse_pixel_map(c.text);
        EXPECT_EQ(r.error, c.error) << c.text;
        EXPECT_EQ(r.error_line, c.line) << c.text;
        EXPECT_TRUE(r.map.rgba.empty()) << c.text;
    }
    for (const char* header : {"3 2 3", "3 x 3 1", "0 2 3 1", "3 2 3 0", "3 2 3 1 1", "3 2 3 1x"}) {
        const auto r = parse_pixel_map(map_text(header, {pal, "aaa", "aaa"}));
        EXPECT_EQ(r.error, "the header must read \"width height colours chars-per-pixel\"")
            << header;
        EXPECT_EQ(r.error_line, 3) << header;
    }
}

// A copy of the pictures' folder to damage.
struct PictureFolder {
    testing_support::TempDir temp;
    fs::path dir = fs::path(temp.path()) / "pictures";
    PictureFolder() { fs::copy(PICTURE_SOURCE_DIR, dir); }
    fs::path operator/(const char* file) const { return dir / file; }
};

TEST(PictureLoading, ReadsEveryPictureOfTheTableAtItsSize) {
    const auto loaded = picture_compiler::load_pictures(PICTURE_SOURCE_DIR);
    EXPECT_TRUE(loaded.errors.empty()) << loaded.errors.front();
    const auto sources = picture_compiler::picture_sources();
    ASSERT_EQ(loaded.pictures.size(), sources.size());
    // What the module carries is exactly what the maps say, picture by picture.
    ASSERT_EQ(panel::pictures::kCompiledPictureCount, sources.size());
    for (std::size_t i = 0; i < sources.size(); ++i) {
        const auto& map = loaded.pictures[i].map;
        const auto& compiled = panel::pictures::kCompiledPictures[i].data;
        EXPECT_EQ(loaded.pictures[i].source, &sources[i]);
        ASSERT_EQ(compiled.width, map.width) << sources[i].file;
        ASSERT_EQ(compiled.height, map.height) << sources[i].file;
        EXPECT_TRUE(std::equal(map.rgba.begin(), map.rgba.end(), compiled.rgba)) << sources[i].file;
    }
}

// The converter as the build runs it; its exit status, with what it wrote to stderr.
int run_compiler(const std::string& args, std::string* errors, const fs::path& scratch) {
    const fs::path err = scratch / "stderr.txt";
    const std::string command =
        "'" + std::string(PICTURE_COMPILER) + "' " + args + " 2>'" + err.string() + "'";
    const int status = std::system(command.c_str());
    *errors = read(err);
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

// Each bad picture named with its file and line; the converter then stops the build with them all
// and writes nothing.
TEST(PictureLoading, NamesEachBadPictureWithItsFileAndLine) {
    PictureFolder copy;
    fs::copy_file(copy / "led_dark.xpm", copy / "led_lit.xpm",
                  fs::copy_options::overwrite_existing);
    fs::remove(copy / "logo.xpm");
    copy.temp.write("pictures/heading_07.xpm",
                    map_text("64 1 1 1", {"a c #000000", std::string(63, 'a')}));
    copy.temp.write("pictures/heading_12.xpm",
                    "static char* t[];\n" + read(copy / "heading_12.xpm"));
    const auto loaded = picture_compiler::load_pictures(copy.dir);
    const std::vector<std::string> expected = {
        (copy / "led_lit.xpm").string() + ":5: the picture is 23x26, its role LedLit needs 23x27",
        (copy / "logo.xpm").string() + ": cannot read the picture",
        (copy / "heading_07.xpm").string() +
            ":5: the row is 63 characters long, the width needs 64",
        (copy / "heading_12.xpm").string() +
            ":1: expected the \"static const char* name[] = {\" line",
    };
    EXPECT_EQ(loaded.errors, expected);
    EXPECT_EQ(loaded.pictures.size(), picture_compiler::picture_sources().size() - 4);
    const fs::path output = fs::path(copy.temp.path()) / "compiled.cpp";
    std::string errors;
    EXPECT_EQ(run_compiler("'" + copy.dir.string() + "' '" + output.string() + "'", &errors,
                           copy.temp.path()),
              1);
    EXPECT_EQ(errors,
              expected[0] + "\n" + expected[1] + "\n" + expected[2] + "\n" + expected[3] + "\n");
    EXPECT_FALSE(fs::exists(output));
}

TEST(PictureCompiler, WritesTheSourceTheBuildCompiles) {
    testing_support::TempDir temp;
    const fs::path output = fs::path(temp.path()) / "compiled.cpp";
    std::string errors;
    EXPECT_EQ(run_compiler("'" + std::string(PICTURE_SOURCE_DIR) + "' '" + output.string() + "'",
                           &errors, temp.path()),
              0);
    EXPECT_EQ(errors, "");
    EXPECT_EQ(read(output), read(COMPILED_PICTURES));
    EXPECT_FALSE(fs::exists(output.string() + ".part"));

    EXPECT_EQ(run_compiler("'" + std::string(PICTURE_SOURCE_DIR) + "'", &errors, temp.path()), 2);
    EXPECT_NE(errors.find("usage:"), std::string::npos);
    const fs::path nowhere = fs::path(temp.path()) / "missing" / "compiled.cpp";
    EXPECT_EQ(run_compiler("'" + std::string(PICTURE_SOURCE_DIR) + "' '" + nowhere.string() + "'",
                           &errors, temp.path()),
              1);
    EXPECT_NE(errors.find("cannot write"), std::string::npos);
}

}  // namespace
