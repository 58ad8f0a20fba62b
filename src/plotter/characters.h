// The state of the character group: what labels look like, and where they go. A new one is as after DF and IN.
#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "plotter/budget.h"
#include "plotter/character_sets.h"
#include "plotter/plane.h"

namespace plotter {

// One of the two fonts: CS and SD tell of the standard one, CA and AD of the alternate one. What was not told counts
// as the stick font's.
struct Typeface {
    static constexpr int32_t STICK = 48;

    SymbolSet symbols;
    std::optional<bool> proportional;
    std::optional<double> pitch;   // characters an inch, of a fixed font
    std::optional<double> height;  // points
    int32_t posture = 0;           // 1: italic
    int32_t weight = 0;            // -7 to 7, or 9999
    int32_t number = STICK;
};

// SI, SR and SU; a negative one mirrors.
struct CharacterSize {
    enum class Kind { OfFont, Absolute, Relative };
    Kind kind = Kind::OfFont;
    double width = 0;  // of a capital; Absolute: plotter units, Relative: per cent of P1 to P2
    double height = 0;
};

// DI, DR and DU.
struct TextDirection {
    bool relative = false;  // run and rise are shares of P1 to P2
    double run = 1;
    double rise = 0;
};

struct LabelTerminator {
    static constexpr char ETX = '\3';
    char byte = ETX;
    bool drawn = false;  // DTc,0
};

// How bytes beyond ASCII are read where the set does not say it: CM.
enum class CharacterMode : uint8_t { Hp7, Hp8, Iso7, Iso8 };

// Characters and points that PB and DL may draw beyond what stands in the file: some bytes of it say so a thousand
// times. A drawing of a person's has a hundredth of them.
inline constexpr std::size_t REPLAYED_CHARACTERS = 200'000;
inline constexpr std::size_t USER_POINTS = 4'000'000;

struct Characters {
    Typeface standard;
    Typeface alternate;
    bool alternateSelected = false;  // SA, and SO in a label
    CharacterMode mode = CharacterMode::Hp7;

    CharacterSize size;
    TextDirection direction;
    double slant = 0;       // SL: tangent
    double extraSpace = 0;  // ES: shares of an advance and of a line feed
    double extraLine = 0;
    int origin = 1;  // LO
    int path = 0;    // DV, quarter turns clockwise of the way from one character to the next
    bool feedReversed = false;

    LabelTerminator terminator;
    bool transparent = false;  // TD: control codes are characters
    bool wide = false;         // LM: two bytes a character
    char symbol = 0;           // SM; 0: none
    std::string buffer;        // BL

    std::map<uint8_t, std::vector<Line>> userCharacters;  // DL, on its own grid
    Budget replayed = Budget(REPLAYED_CHARACTERS);
    Budget userPoints = Budget(USER_POINTS);
};

}  // namespace plotter
