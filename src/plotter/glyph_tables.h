// How characters that no font has are made: accented letters out of a letter and a mark, others out of parts of other
// characters or of strokes of their own. Units as in glyphs.h.
#pragma once

#include <span>
#include <string_view>

namespace plotter {

// A character of strokes. Points are "x,y", a blank between them; "|" begins another stroke. Where base is one, the
// strokes are drawn over that character, whose bearings count unless there are others here.
struct StrokesRow {
    char32_t character;
    char32_t base;  // 0: none
    double left, right;
    std::string_view strokes;
};
std::span<const StrokesRow> strokesTable();

// A character made of others, scaled about (0, 0) and then moved. Its bearings are those of all parts together.
struct Part {
    char32_t character = 0;  // 0: none
    double scale = 1;        // -1: turned round
    double x = 0, y = 0;
};
struct PartsRow {
    char32_t character;
    Part parts[3];
};
std::span<const PartsRow> partsTable();

// A letter with a mark: the n-th of letters gives the n-th of accented.
struct MarkRow {
    char32_t mark;  // a combining character, which has strokes of its own in strokesTable
    double rise;    // of the mark over a tall letter
    std::u32string_view letters;
    std::u32string_view accented;
};
std::span<const MarkRow> markTable();

// Characters that look like another.
struct LikeRow {
    std::u32string_view characters;
    std::u32string_view like;
};
std::span<const LikeRow> likeTable();

// What runs from the middle of a cell to its sides, for the characters that forms are made of: '0' nothing, '1' a line,
// '2' two lines; to the left, to the right, up, down.
struct FormRow {
    char32_t character;
    char arms[5];
};
std::span<const FormRow> formTable();

// A character of sets 2 to 4 of HP-GL, a mark that goes over capitals: the combining one behind this.
inline constexpr char32_t HIGH_MARKS = 0xF300;
inline constexpr char32_t COMBINING_MARKS = 0x0300;
// The centred symbols of set 5, A to Z and a to z.
inline constexpr char32_t CENTRED_SYMBOLS = 0xF400;

}  // namespace plotter
