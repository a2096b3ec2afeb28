// The arena document against the reader: every shipped arena written back unchanged byte for
// byte, and a random run of edits that reads back as the items a plain list of them describes,
// the untouched lines of the file kept as they stood.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <random>
#include <sstream>

#include "arena_document.h"
#include "arena_shapes.h"
#include "arena_writer.h"

namespace world {

bool operator==(const Segment& a, const Segment& b) {
    return a.a == b.a && a.b == b.b;
}
bool operator==(const Line& a, const Line& b) {
    return a.width == b.width && a.points == b.points;
}
bool operator==(const Light& a, const Light& b) {
    return a.at == b.at && a.intensity == b.intensity;
}
bool operator==(const Zone& a, const Zone& b) {
    return a.name == b.name && a.corner == b.corner && a.width == b.width && a.height == b.height;
}

namespace {

std::vector<std::string> shipped_arenas() {
    std::vector<std::string> texts;
    for (const auto& entry : std::filesystem::directory_iterator(KESTRONE_EXAMPLES))
        if (entry.path().extension() == ".world") {
            std::ifstream in(entry.path(), std::ios::binary);
            std::stringstream text;
            text << in.rdbuf();
            texts.push_back(text.str());
        }
    return texts;
}

std::string with_crlf(std::string text) {
    for (std::size_t at = 0; (at = text.find('\n', at)) != std::string::npos; at += 2)
        text.insert(at, "\r");
    return text;
}

std::vector<std::string> lines_of(const std::string& text) {
    std::vector<std::string> lines;
    std::stringstream in(text);
    for (std::string line; std::getline(in, line);)
        lines.push_back(line);
    return lines;
}

TEST(ArenaDocument, WritesAnOpenedFileBackByteForByte) {
    const auto texts = shipped_arenas();
    ASSERT_GE(texts.size(), 3u);
    for (const std::string& shipped : texts)
        for (const std::string& text : {shipped, with_crlf(shipped), shipped + "wall 5 5 9 9"}) {
            const auto doc = ArenaDocument::read(text);
            ASSERT_TRUE(doc) << text;
            EXPECT_EQ(write_arena(*doc), text);
            // The arena the reader reads, and the heading as written, which a moved start keeps.
            const Arena mine = doc->arena(), read = *read_arena(text).arena;
            EXPECT_TRUE(mine.walls == read.walls && mine.lines == read.lines &&
                        mine.lights == read.lights && mine.zones == read.zones)
                << text;
            EXPECT_EQ(mine.start.heading, read.start.heading) << text;
        }
}

// The items as a plain list, and what of the opened file each came from.
struct Model {
    struct Item {
        Shape shape;
        int source;
        bool touched;
    };
    std::vector<Item> items;
    Start start;
    bool start_touched = false;
};

class Edits {
  public:
    Edits(const ArenaDocument& d, unsigned seed) : doc_(d), random_(seed) {
        model_.start = d.start();
        for (const DocumentItem& item : d.items())
            model_.items.push_back({item.shape, item.source, false});
    }
    // One edit made to both; one the reader would refuse is taken back from both.
    void one() {
        const ArenaDocument doc = doc_;
        const Model model = model_;
        const int kind = pick(0, model_.items.empty() ? 4 : 6);
        if (kind <= 3) {
            doc_.add(shape(kind));
            model_.items.push_back({doc_.items().back().shape, -1, true});
        } else if (kind == 4) {
            model_.start = {point(), pick(-7200, 7200) / 9.0};
            model_.start_touched = true;
            doc_.set_start(model_.start);
        } else {
            const std::size_t i = pick(0, static_cast<int>(model_.items.size()) - 1);
            if (kind == 5) {
                model_.items[i] = {shape(pick(0, 3)), model_.items[i].source, true};
                doc_.replace(i, model_.items[i].shape);
            } else {
                model_.items.erase(model_.items.begin() + i);
                doc_.remove(i);
            }
        }
        if (!arena_problem(doc_).empty()) doc_ = doc, model_ = model, ++refused_;
    }
    const ArenaDocument& doc() const { return doc_; }
    const Model& model() const { return model_; }
    int refused() const { return refused_; }

  private:
    int pick(int low, int high) { return std::uniform_int_distribution(low, high)(random_); }
    Vec point() {
        return {pick(0, static_cast<int>(doc_.width() * 4)) / 4.0,
                pick(0, static_cast<int>(doc_.height() * 4)) / 4.0};
    }
    Shape shape(int kind) {
        if (kind == 0) {
            Line l{pick(1, 80) / 2.0, {point()}};
            for (int n = pick(1, 4); n > 0; --n)
                l.points.push_back(point());
            return l;
        }
        if (kind == 1) return Segment{point(), point()};
        if (kind == 2) return Light{point(), pick(0, 1000) / 1000.0};
        const Vec c = point();
        return Zone{"z" + std::to_string(++zones_), c, std::max(0.5, (doc_.width() - c.x) / 3),
                    std::max(0.5, (doc_.height() - c.y) / 2)};
    }

    ArenaDocument doc_;
    Model model_;
    std::mt19937 random_;
    int zones_ = 0, refused_ = 0;
};

template <class T>
std::vector<T> of_kind(const Model& m) {
    std::vector<T> out;
    for (const auto& item : m.items)
        if (const T* t = std::get_if<T>(&item.shape)) out.push_back(*t);
    return out;
}

TEST(ArenaDocument, EditsReadBackAsTheItemsTheyDescribeKeepingUntouchedLines) {
    unsigned seed = 21;
    std::vector<std::string> texts;
    for (const std::string& shipped : shipped_arenas())  // and one without a last line end
        texts.insert(texts.end(), {shipped, shipped + "wall 5 5 9 9"});
    for (const std::string& text : texts) {
        Edits edits(*ArenaDocument::read(text), ++seed);
        for (int n = 0; n < 150; ++n)
            edits.one();
        EXPECT_LT(edits.refused(), 120);  // most edits are ones the reader takes
        const std::string written = write_arena(edits.doc());
        const ArenaReading back = read_arena(written);
        ASSERT_TRUE(back.arena) << back.error.line << ": " << back.error.text;
        const Model& m = edits.model();
        auto walls = of_kind<Segment>(m);
        walls.insert(walls.begin(), back.arena->walls.begin(), back.arena->walls.begin() + 4);
        EXPECT_EQ(back.arena->walls, walls);
        EXPECT_EQ(edits.doc().arena().walls, walls);  // what the editor draws
        EXPECT_EQ(back.arena->lines, of_kind<Line>(m));
        EXPECT_EQ(back.arena->lights, of_kind<Light>(m));
        EXPECT_EQ(back.arena->zones, of_kind<Zone>(m));
        EXPECT_EQ(back.arena->start.centre, m.start.at);
        EXPECT_EQ(back.arena->start.heading, wrap_angle(radians(m.start.degrees)));
        // The lines of the file that no edit touched, each still there.
        const std::vector<std::string> source = lines_of(text);
        std::vector<bool> keep(source.size(), true);
        for (const auto& item : m.items)
            if (item.touched && item.source >= 0) keep[item.source] = false;
        for (std::size_t i = 0; i < source.size(); ++i)
            if (first_word(source[i]) == "robot") keep[i] = !m.start_touched;
        std::vector<std::string> expected;
        for (std::size_t i = 0; i < source.size(); ++i)
            if (keep[i] && (first_word(source[i]).empty() || first_word(source[i]) == "size" ||
                            first_word(source[i]) == "robot"))
                expected.push_back(source[i]);
        for (const auto& item : m.items)
            if (!item.touched && item.source >= 0) expected.push_back(source[item.source]);
        std::vector<std::string> kept;
        for (const std::string& line : lines_of(written))
            if (std::find(source.begin(), source.end(), line) != source.end()) kept.push_back(line);
        std::sort(expected.begin(), expected.end());
        std::sort(kept.begin(), kept.end());
        EXPECT_EQ(kept, expected);
    }
}

// What the pointer takes: the nearest item within reach, a zone only where nothing else is near.
TEST(ArenaDocument, ThePointerTakesTheNearestItemAndAZoneLast) {
    ArenaDocument d = ArenaDocument::blank(1000, 800);
    d.add(Zone{"z", {100, 100}, 400, 300});                 // 0
    d.add(Line{30, {{150, 200}, {450, 200}, {450, 350}}});  // 1
    d.add(Segment{{300, 120}, {300, 380}});                 // 2
    d.add(Light{{700, 600}, 0.5});                          // 3
    d.add(Zone{"y", {400, 300}, 200, 200});                 // 4, over the first
    // Lines lie under walls, as drawn: on both, the wall.
    const struct {
        Vec at;
        int item;  // -1: none
    } probes[] = {
        {{200, 218}, 1}, {{200, 224}, 0}, {{464, 300}, 1}, {{474, 300}, 4},  {{307, 250}, 2},
        {{309, 250}, 0}, {{300, 214}, 2}, {{742, 600}, 3}, {{749, 600}, -1}, {{700, 652}, -1},
        {{450, 395}, 4}, {{550, 450}, 4}, {{150, 150}, 0}, {{99, 150}, -1},
    };
    for (const auto& p : probes) {
        const auto found = item_at(d, p.at, 8);
        EXPECT_EQ(found ? static_cast<int>(*found) : -1, p.item) << p.at.x << "," << p.at.y;
    }
    const Shape moved_line = moved(d.items()[1].shape, {-50, 25});
    EXPECT_EQ(std::get<Line>(moved_line).points.back(), (Vec{400, 375}));
    EXPECT_EQ(std::get<Zone>(moved(d.items()[0].shape, {5, -7})).corner, (Vec{105, 93}));
    const Segment wall = std::get<Segment>(moved(d.items()[2].shape, {-20, 30}));
    EXPECT_EQ(wall.a + wall.b, (Vec{560, 560}));
}

}  // namespace
}  // namespace world
