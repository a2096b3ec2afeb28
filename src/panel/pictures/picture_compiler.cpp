#include "panel/pictures/picture_compiler.h"

#include <fstream>
#include <sstream>

namespace picture_compiler {

namespace {

bool read_file(const std::filesystem::path& path, std::string& text) {
    std::ifstream in(path, std::ios::binary);
    if (!in) return false;
    std::ostringstream buffer;
    buffer << in.rdbuf();
    text = buffer.str();
    return !in.bad();
}

std::string located(const std::filesystem::path& path, int line, const std::string& what) {
    std::string where = path.string();
    if (line > 0) where += ":" + std::to_string(line);
    return where + ": " + what;
}

std::string size_text(int width, int height) {
    return std::to_string(width) + "x" + std::to_string(height);
}

// The array's name: the file's stem, which the table keeps to identifier characters.
std::string array_name(const PictureSource& source) {
    return "pixels_" + std::filesystem::path(source.file).stem().string();
}

void append_pixels(std::string& out, const LoadedPicture& picture) {
    static const char kHex[] = "0123456789abcdef";
    out += "// " + std::string(picture.source->file) + "\n";
    out += "const std::uint8_t " + array_name(*picture.source) + "[] = {\n";
    const std::size_t row_bytes = static_cast<std::size_t>(picture.map.width) * 4;
    for (std::size_t i = 0; i < picture.map.rgba.size(); ++i) {
        const std::uint8_t byte = picture.map.rgba[i];
        out += i % row_bytes == 0 ? "    " : " ";
        out += {'0', 'x', kHex[byte >> 4], kHex[byte & 15], ','};
        if ((i + 1) % row_bytes == 0) out += '\n';
    }
    out += "};\n\n";
}

}  // namespace

LoadResult load_pictures(const std::filesystem::path& folder) {
    LoadResult result;
    for (const PictureSource& source : picture_sources()) {
        const std::filesystem::path path = folder / source.file;
        std::string text;
        if (!read_file(path, text)) {
            result.errors.push_back(located(path, 0, "cannot read the picture"));
            continue;
        }
        PixelMapResult parsed = parse_pixel_map(text);
        if (!parsed.ok()) {
            result.errors.push_back(located(path, parsed.error_line, parsed.error));
            continue;
        }
        const PixelMap& map = parsed.map;
        if (map.width != source.width || map.height != source.height) {
            result.errors.push_back(located(
                path, map.header_line,
                "the picture is " + size_text(map.width, map.height) + ", its role " +
                    std::string(source.role) + " needs " + size_text(source.width, source.height)));
            continue;
        }
        result.pictures.push_back({&source, std::move(parsed.map)});
    }
    return result;
}

std::string compiled_source(const std::vector<LoadedPicture>& pictures) {
    std::string out =
        "// Made at build time from the pictures' pixel maps: edit the maps, not this file.\n"
        "#include <cstdint>\n#include <iterator>\n\n"
        "#include \"panel/pictures/compiled_pictures.h\"\n\n"
        "namespace panel::pictures {\n\nnamespace {\n\n";
    for (const LoadedPicture& picture : pictures)
        append_pixels(out, picture);
    out += "}  // namespace\n\nconst CompiledPicture kCompiledPictures[] = {\n";
    for (const LoadedPicture& picture : pictures) {
        const PictureSource& s = *picture.source;
        out += "    {role_at(PictureRole::" + std::string(s.role) + ", " +
               std::to_string(s.offset) + "), {" + std::to_string(picture.map.width) + ", " +
               std::to_string(picture.map.height) + ", " + array_name(s) + "}},\n";
    }
    out +=
        "};\n\nconst std::size_t kCompiledPictureCount = std::size(kCompiledPictures);\n\n"
        "}  // namespace panel::pictures\n";
    return out;
}

}  // namespace picture_compiler
