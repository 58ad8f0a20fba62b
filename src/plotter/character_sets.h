// What the codes of a label mean: HP-GL's numbered sets, HP-GL/2's symbol sets, and UTF-8.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace plotter {

// hpgl: the number is one of CS and CA, else one of SD and AD. Numbers that no machine knows are ASCII, with HP's
// Roman-8 above it.
struct SymbolSet {
    bool hpgl = true;
    int32_t number = 0;
    friend bool operator==(const SymbolSet&, const SymbolSet&) = default;
};

// Of ASCII, and where the upper half of a set begins and where its characters do: below are controls.
inline constexpr uint8_t FIRST_PRINTED = 0x20;
inline constexpr uint8_t UPPER_HALF = 0x80;
inline constexpr uint8_t UPPER_PRINTED = 0xA0;

// Characters that DL has made: their code behind this.
inline constexpr char32_t USER_CHARACTERS = 0xF800;

// 0: the set has nothing there. A combining character, or one from HIGH_MARKS on (glyph_tables.h), goes over the one
// before it.
char32_t decode(SymbolSet set, uint8_t code);
// Whether the set's characters have a width each.
bool isProportional(SymbolSet set);
// Whether two-byte codes of the set are Unicode.
bool isUnicode(SymbolSet set);

// How many bytes a sequence of UTF-8 has that begins so, two at least; 0: none begins so.
std::size_t utf8Length(uint8_t first);
// The sequence of two or more bytes that the text begins with: how many, 0 when it is none.
std::size_t readUtf8(std::string_view text, char32_t& character);
// Whether there are bytes beyond ASCII, and all of them are in sequences of UTF-8.
bool isUtf8(std::string_view text);

}  // namespace plotter
