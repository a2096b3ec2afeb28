// rovanta-picture-compiler FOLDER OUTPUT: reads the pictures' pixel maps from FOLDER and writes
// the C++ source of their pixel arrays to OUTPUT. Any fault in a map fails it, naming the file
// and line, so that the build stops there.
#include <cstdio>
#include <filesystem>
#include <fstream>

#include "panel/pictures/picture_compiler.h"

int main(int argc, char** argv) {
    if (argc != 3) {
        std::fprintf(stderr, "usage: %s FOLDER OUTPUT\n", argv[0]);
        return 2;
    }
    const auto loaded = picture_compiler::load_pictures(argv[1]);
    for (const std::string& error : loaded.errors)
        std::fprintf(stderr, "%s\n", error.c_str());
    if (!loaded.errors.empty()) return 1;

    // Written beside the output and renamed, so that a failed write leaves no half a file.
    const std::filesystem::path output = argv[2];
    std::filesystem::path partial = output;
    partial += ".part";
    {
        std::ofstream out(partial, std::ios::binary | std::ios::trunc);
        out << picture_compiler::compiled_source(loaded.pictures);
        if (!out.flush()) {
            std::fprintf(stderr, "%s: cannot write\n", partial.string().c_str());
            return 1;
        }
    }
    std::error_code ec;
    std::filesystem::rename(partial, output, ec);
    if (ec) {
        std::fprintf(stderr, "%s: cannot write: %s\n", output.string().c_str(),
                     ec.message().c_str());
        return 1;
    }
    return 0;
}
