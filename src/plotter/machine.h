// The plotter itself: its state, and what it can do to a sheet of paper. The instructions are procedures over it,
// listed in manifest.h; each file of them owns the part of the state that is reset together.
//
// There are three kinds of coordinates, and every point's name or comment says which it is: user units (what SC makes
// of them), plotter units (0.025 mm, after SC; the pen's position is kept in them), and paper (after RO and the picture
// frame of a printer's page; what a Sheet gets).
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <vector>

#include "plotter/characters.h"
#include "plotter/coordinates.h"
#include "plotter/fills.h"
#include "plotter/ink.h"
#include "plotter/line_types.h"
#include "plotter/pens.h"
#include "plotter/plane.h"
#include "plotter/report.h"
#include "plotter/sheet.h"

namespace plotter {

// Points of lines and areas that one file may put on the paper, by its size, and of one polygon: what a few bytes can
// multiply ends somewhere. A text has some ten points a character.
inline constexpr std::size_t POINTS_OF_ANY_FILE = 5'000'000;
inline constexpr std::size_t POINTS_A_BYTE = 10;
inline constexpr std::size_t VERTICES_OF_ANY_FILE = 1'000'000;

// What must be known of a file before its first instruction can be carried out, and is learnt from all of it.
struct Traits {
    bool hpgl2 = false;         // HP-GL/2, not the HP-GL of pen plotters
    bool large = false;         // its drawing is larger than A4, or it says so
    bool penZeroDraws = false;  // everything in it is drawn with no pen: let pen 1 draw that
    double tolerance = 0;       // how far a curve may be from its chords, plotter units; 0: as fine as may be
    friend bool operator==(const Traits&, const Traits&) = default;
};

// A polygon in the making, and the last one made.
struct Polygon {
    struct Vertex {
        Point point;        // plotter units
        bool down = false;  // the edge that ends here is drawn by EP
    };
    std::vector<std::vector<Vertex>> rings;
    Affine made;           // the map to the paper that its plotter units were made for
    bool open = false;     // between PM0 and PM2
    Point position;        // of the pen at PM0
    bool penDown = false;  // there
    std::size_t vertices = 0;
    bool fresh = false;  // nothing has followed PM0 or PM1 yet: a move with the pen up begins elsewhere
};

struct State {
    Coordinates coordinates;
    Pens pens;
    LineTypes lineTypes;
    Fills fills;
    Characters characters;
    Polygon polygon;

    Point position;  // plotter units
    bool penDown = false;
    bool relative = false;          // PR
    bool lost = false;              // a coordinate has left the range: nothing is drawn until the pen is found again
    bool marked = false;            // something has been drawn since the pen came down: lifting it leaves no dot
    Point carriage;                 // where CR in a label returns to, plotter units
    bool chordByDeviation = false;  // CT1
    double tickPositive = 0.5, tickNegative = 0.5;  // TL, per cent of P1 to P2
};

class Machine {
  public:
    // bytes: of the file.
    Machine(const Traits& traits, Sheet& sheet, Report& report, std::size_t bytes);

    // ---- for the printer's language around it ----
    // Where plotter units lie on the paper from now on. A changed frame resets P1, P2 and the window, drops the polygon
    // and takes the pen to P1.
    void setFrame(const Frame& frame);
    // As IN leaves it; page and pen are kept.
    void initialise();
    // As after switching on, with pen 1 in the holder; the page is kept.
    void switchOn();
    // What IN leaves and DF resets as well: scaling, attributes, characters.
    void setDefaults();
    // The page is full. Nothing happens while nothing has been drawn on it, unless forced.
    void endPage(bool evenIfEmpty = false);

    // ---- for the instructions: with the current pen; points are plotter units ----
    // Lines that take the current line type. One point is a dot.
    void drawLine(std::span<const Point> points);
    // The same with a pattern that begins anew, and leaves the one under way as it was.
    void drawOutline(std::span<const Point> points);
    // Lines that are always solid: characters, ticks, symbols.
    void drawSolid(std::span<const Point> points);
    // With the current fill type.
    void drawArea(const Area& area, FillRule rule);
    // The same in these inks, for who knows what is drawn with the current pen: solid, and clipped by the window.
    void drawInWindow(std::span<const Point> points, const Ink& ink);
    void drawInWindow(const Area& area, const Ink& ink);
    // The pen comes down, if it was up: lifting it without having drawn leaves a dot.
    void lowerPen();
    void liftPen();

    // In these inks and paper coordinates, for pictures between the instructions; clipped by nothing.
    void drawOnPaper(std::span<const Point> points, const Ink& ink);
    void drawOnPaper(const Area& area, const Ink& ink);

    // Of the selected pen, and of another.
    Ink ink() const { return inkOf(state.pens.selected); }
    Ink inkOf(int32_t pen) const;
    bool pageIsMarked() const { return pageMarked_; }
    std::size_t pagesEnded() const { return pagesEnded_; }
    // For one Path at a time.
    Line& roomForPath() { return path_; }
    // Whether the polygon may have so many vertices more.
    bool takeVertices(std::size_t count);
    // How much of what may be drawn, or of what a polygon may have, is used, from 0 to 1: curves get coarser towards
    // the end. At 1 nothing more comes.
    double share() const;
    // How far a curve may be from its chords, plotter units.
    double tolerance() const { return traits_.tolerance; }
    void setTolerance(double tolerance) { traits_.tolerance = tolerance; }

    const Traits& traits() const { return traits_; }
    Report& report() { return report_; }

    // What the survey asks afterwards.
    Traits found() const;
    bool coloursChosen() const { return coloursChosen_; }
    bool sizeAsked() const { return sizeAsked_; }
    void noteHpgl2() { found_.hpgl2 = true; }
    void noteColours() { coloursChosen_ = true; }
    void noteSizeAsked() { sizeAsked_ = true; }  // traits().large has been of consequence

    State state;

  private:
    bool takePoints(std::size_t count);
    // Whether the selected pen leaves ink.
    bool penDraws();
    bool isSeen(const Ink& ink) const;
    void putMapped(std::span<const Point> points, const Ink& ink);
    void put(std::span<const Point> points, const Ink& ink);
    void put(const Area& area, const Ink& ink);

    Traits traits_;
    Traits found_;
    bool coloursChosen_ = false;
    bool sizeAsked_ = false;
    Sheet& sheet_;
    Report& report_;
    bool pageMarked_ = false;
    std::size_t pagesEnded_ = 0;
    std::size_t points_;  // that may come on the paper in all
    std::size_t pointsLeft_;
    std::size_t vertices_;  // that a polygon may have
    bool aPenDrew_ = false;
    bool noPenDrew_ = false;  // strokes were lost for want of a pen
    Line onPaper_, path_;     // room that is kept between calls
};

}  // namespace plotter
