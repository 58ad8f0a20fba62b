// make_glyphs OUT.cpp FOLDER: writes the strokes of the fonts in that folder, Debian's hershey-fonts-data, as C++ for
// font_data.h. It runs when the plotter is built, so that no font data lies in this tree.
#include <charconv>
#include <cstdint>
#include <fstream>
#include <iostream>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace {

// Where in a font a run of characters lies; '\0' leaves one out. The fonts are encoded each in its own way.
struct Run {
    const char* font;
    std::size_t first;  // record, counted from 0
    std::u32string_view characters;
};

using namespace std::string_view_literals;

// clang-format off
constexpr Run RUNS[] = {
    {"futural",   0,  UR"( !"#$%&'()*+,-./0123456789:;<=>?@ABCDEFGHIJKLMNOPQRSTUVWXYZ[\]^_`abcdefghijklmnopqrstuvwxyz{|}~)"sv},
    {"greeks",    33, U"ΑΒΓΔΕΖΗΘΙΚΛΜΝΞΟΠΡΣΤΥΦΧΨΩ"sv},
    {"greeks",    65, U"αβγδεζηθικλμνξοπρστυφχψω"sv},
    {"mathlow",   1,  U"±∓×\0\0≤≥"sv},
    {"mathlow",   26, U"∏\0\0\0\0≠≡"sv},
    {"mathlow",   62, U"∝∞\0\0√\0⊂∪⊃∩∈→↑←↓∂∇"sv},
    {"mathlow",   80, U"∫\0\0\0\0\0∃\0÷∥⊥\0∠\0∴"sv},
    {"symbolic",  77, U"♠♥♦♣"sv},
    {"japanese",  113, U"アイウエオカキクケコサシスセソタチツテトナニヌネノハヒフヘホマミムメモヤ\0ユ\0ヨラリルレロワ\0\0\0ヲン"sv},
};
// clang-format on

// Bytes stand for coordinates around this one.
constexpr char ORIGIN = 'R';
// The baseline in the fonts, whose y runs down.
constexpr int BASELINE = 9;
constexpr std::size_t COUNT_AT = 5;
constexpr std::size_t PAIRS_AT = 8;

// The records of a font: pairs of bytes. One record may run over several lines.
std::optional<std::vector<std::string>> readRecords(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    std::vector<std::string> records;
    std::string line;
    while (std::getline(file, line)) {
        if (line.size() < PAIRS_AT) continue;
        const std::size_t digits = line.find_first_not_of(' ', COUNT_AT);
        std::size_t pairs = 0;
        std::from_chars(line.data() + digits, line.data() + PAIRS_AT, pairs);
        std::string record = line.substr(PAIRS_AT);
        while (record.size() < 2 * pairs && std::getline(file, line)) {
            record += line;
        }
        if (pairs == 0 || record.size() < 2 * pairs) return std::nullopt;
        record.resize(2 * pairs);
        records.push_back(std::move(record));
    }
    if (records.empty()) return std::nullopt;
    return records;
}

struct Output {
    std::string glyphs;
    std::string coordinates;
    std::size_t numbers = 0;
};

void addNumbers(Output& output, const std::string& record) {
    for (std::size_t at = 2; at < record.size(); at += 2) {
        const bool up = record[at] == ' ' && record[at + 1] == ORIGIN;
        output.coordinates += up ? "PEN_UP" : std::to_string(record[at] - ORIGIN);
        output.coordinates += "," + std::to_string(up ? 0 : BASELINE - (record[at + 1] - ORIGIN)) + ",";
        output.numbers += 2;
    }
    output.coordinates += "\n";
}

void addGlyph(Output& output, char32_t character, const std::string& record) {
    const std::size_t first = output.numbers;
    addNumbers(output, record);
    output.glyphs += "{" + std::to_string(static_cast<uint32_t>(character)) + "," + std::to_string(record[0] - ORIGIN) +
                     "," + std::to_string(record[1] - ORIGIN) + "," + std::to_string(first) + "," +
                     std::to_string(output.numbers - first) + "},\n";
}

using Glyphs = std::map<char32_t, std::string>;

bool addRun(Glyphs& glyphs, const Run& run, const std::string& folder) {
    const std::string path = folder + "/" + run.font + ".jhf";
    const auto records = readRecords(path);
    if (!records || records->size() < run.first + run.characters.size()) {
        std::cerr << "make_glyphs: " << path << " is not the font that it should be\n";
        return false;
    }
    for (std::size_t i = 0; i < run.characters.size(); ++i) {
        if (run.characters[i] != 0) glyphs.emplace(run.characters[i], (*records)[run.first + i]);
    }
    return true;
}

bool writeAll(const char* path, const Glyphs& glyphs) {
    Output output;
    for (const auto& [character, record] : glyphs) {
        addGlyph(output, character, record);
    }
    std::ofstream file(path, std::ios::binary);
    file << "// Written by make_glyphs.\n#include \"plotter/font_data.h\"\n\nnamespace plotter {\n\nnamespace {\n\n"
         << "constexpr FontGlyph GLYPHS[] = {\n"
         << output.glyphs << "};\n\n"
         << "constexpr int8_t COORDINATES[] = {\n"
         << output.coordinates << "};\n\n}  // namespace\n\n"
         << "std::span<const FontGlyph> fontGlyphs() {\n    return GLYPHS;\n}\n\n"
         << "std::span<const int8_t> fontCoordinates() {\n    return COORDINATES;\n}\n\n}  // namespace plotter\n";
    return static_cast<bool>(file.flush());
}

}  // namespace

int main(int count, char** arguments) {
    if (count != 3) {
        std::cerr << "usage: make_glyphs OUT.cpp FOLDER\n";
        return 2;
    }
    Glyphs glyphs;
    for (const Run& run : RUNS) {
        if (!addRun(glyphs, run, arguments[2])) return 1;
    }
    if (!writeAll(arguments[1], glyphs)) {
        std::cerr << "make_glyphs: cannot write " << arguments[1] << "\n";
        return 1;
    }
    return 0;
}
