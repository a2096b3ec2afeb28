// Cutting a block out of the code file's text: the search for whole marker lines must give what
// a reading line by line gives, for any mix of line ends, markers inside lines and blocks that
// repeat or stay open.
#include <gtest/gtest.h>

#include <random>
#include <string>
#include <vector>

#include "core/code_block.h"
#include "platform/text_file.h"

namespace {

const std::string kStart = "/*Macro_Go_Start*/";
const std::string kEnd = "/*Macro_Go_End*/";

// The reading line by line: in a block, the end marker leaves it and any other line is kept;
// outside, the start marker enters it.
rovanta::CutBlock line_by_line(const std::string& file) {
    rovanta::CutBlock block;
    bool in_block = false;
    for (const std::string& line : platform::split_lines(file)) {
        if (in_block) {
            if (line == kEnd) {
                block.end_seen = true;
                in_block = false;
            } else {
                block.text += line + "\n";
            }
        } else if (line == kStart) {
            block.start_seen = true;
            in_block = true;
        }
    }
    return block;
}

void expect_same(const std::string& file) {
    const rovanta::CutBlock cut = rovanta::cut_block(file, kStart, kEnd);
    const rovanta::CutBlock expected = line_by_line(file);
    EXPECT_EQ(cut.text, expected.text) << file;
    EXPECT_EQ(cut.start_seen, expected.start_seen) << file;
    EXPECT_EQ(cut.end_seen, expected.end_seen) << file;
}

TEST(CutBlock, AgreesOnRandomTextsOfMarkersAndLineEnds) {
    // Markers alone on a line, with a blank beside them, two on one line, cut in two, or with
    // text after them; blocks that repeat, stay open or end before they start.
    const std::vector<std::string> pieces{"a",          "",           "int x;",     kStart,
                                          kEnd,         kStart + " ", " " + kStart, " " + kEnd,
                                          "/*Macro_Go", "_End*/"};
    const std::vector<std::string> ends{"\r\n", "\r", "\n", "\n\r"};
    std::mt19937 rng(51423);
    for (int k = 0; k < 6000; ++k) {
        std::string file;
        const int pieces_in_file = static_cast<int>(rng() % 10);
        for (int n = 0; n < pieces_in_file; ++n) {
            file += pieces[rng() % pieces.size()];
            // One piece in four runs on into the next on the same line.
            if ((n + 1 < pieces_in_file || rng() % 2) && rng() % 4)
                file += ends[rng() % ends.size()];
        }
        expect_same(file);
    }
}

}  // namespace
