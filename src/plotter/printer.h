// What stands around the plotter's language in a file: the job language, the language of page printers and of raster
// plotters, and the device control of plotters on a serial line.
//
// Life of one: begin with a file's bytes. As long as language() is Plotter, whoever has the reader carries out
// instructions and calls step where an escape stands; while it is Printer, it calls step again and again. Positions of
// the cursor, the raster and the captions are kept here, everything else in the machine.
//
// Only what a plot needs of a printer is carried out: pages, the cursor, picture frames, raster, rules, captions,
// macros.
#pragma once

#include <array>
#include <cstddef>
#include <functional>
#include <map>
#include <string_view>
#include <vector>

#include "plotter/captions.h"
#include "plotter/escapes.h"
#include "plotter/job_control.h"
#include "plotter/machine.h"
#include "plotter/printer_page.h"
#include "plotter/raster.h"

namespace plotter {

enum class Language { Printer, Plotter };

// Macros call each other to this depth, as printers do, and run over so many bytes in all: a form on some hundred
// pages.
inline constexpr int MOST_MACRO_DEPTH = 3;
inline constexpr std::size_t MOST_MACRO_BYTES = std::size_t{4} << 20;
// Characters of captions on a page: one of the smallest print has a fifth of it.
inline constexpr std::size_t MOST_CAPTION_CHARACTERS = 100'000;
// Lengths and places on a page, plotter units: 600 inches, longer than any roll is cut.
inline constexpr double MOST_LENGTH = 600 * UNITS_PER_INCH;
// The baseline of the first line, below the top margin, in lines.
inline constexpr double FIRST_LINE = 0.75;
// Palettes that lie on one another, and cursors.
inline constexpr std::size_t MOST_PUSHED = 32;

class Printer {
  public:
    // Carries out the bytes of a macro, in both languages.
    using Runner = std::function<void(std::string_view macro)>;

    // The machine outlives it.
    Printer(Machine& machine, Runner runner);
    Printer(const Printer&) = delete;
    Printer& operator=(const Printer&) = delete;

    // Which language the next byte is in.
    Language language() const { return language_; }
    // Looks at the start of the file and decides in which language it begins.
    void begin(std::string_view bytes);

    // At an escape, or in the printer's language at any byte: carries out what stands there. Answers the offset behind
    // it, which is always larger. Views of `bytes` are kept: macros.
    std::size_t step(std::string_view bytes, std::size_t offset);
    // The file is at its end: what is under way is drawn.
    void finish();

    // Whether pages have a size, and plots a frame; not a pen plotter's open sheet.
    bool isPrinterPage() const { return isPrinterPage_; }
    // Whether the file says how large its page or its frame is, and did not just take the default.
    bool choosesPage() const { return choosesPage_; }
    // Whether there is anything of a printer's in the file: then its plots are in HP-GL/2.
    bool sawEnvelope() const { return sawEnvelope_; }
    // Whether it is meant for a device with colours.
    bool colourPrinter() const { return colourPrinter_; }

  private:
    struct Row {
        char family, group, letter;
        bool keepsRaster;  // may stand between the rows of a raster
        void (*action)(Printer& printer, const EscapeField& field);
    };
    static const Row ROWS[];

    enum Side { LEFT, TOP, RIGHT, BOTTOM };

    // What is reset together, and what a macro that is called gives back. Lengths are plotter units.
    struct Settings {
        PrinterPage page;
        PictureFrame frame;
        Point customPaper;
        bool onSheet = false;                // the page is a plotter's sheet
        Point cursor;                        // logical page
        int direction = 0;                   // of text and cursor, quarter turns counter-clockwise
        std::array<double, 4> margins = {};  // of the logical page, by Side
        double unitsPerInch = 300;           // of ESC*p
        double lineSpacing = UNITS_PER_INCH / 6;
        double columnWidth = UNITS_PER_INCH / 10;
        int lineEnds = 0;  // ESC&k#G
        bool skipsPerforation = true;

        bool underlines = false;
        std::array<CaptionFont, 2> fonts;  // primary and secondary
        std::size_t font = 0;
        int32_t foreground = 1;  // pen of captions and rules
        Point rule;              // its width and height
        double pattern = 0;      // ESC*c#G

        double resolution = 75;   // of raster, dots an inch
        Point source;             // pixels; 0: unsaid
        Point destination;        // 0: unsaid
        bool alongPaper = false;  // ESC*r3F
        bool fromCursor = false;  // the last raster began there
        int compression = 0;
        PixelFormat pixels;
        std::array<double, 3> largest = {255, 255, 255};  // of the primaries of a palette entry
        std::array<double, 3> primaries = {};             // of the next one
        std::vector<Colour> palette = {{255, 255, 255}, {0, 0, 0}};
    };
    struct Saved {
        std::vector<Colour> palette;
        std::map<int32_t, Colour> pens;
    };

    // ---- the stream: printer.cpp ----
    std::size_t stepEscape(std::string_view bytes, std::size_t offset);
    std::size_t stepInPlotter(std::string_view bytes, std::size_t offset);
    void switchDevice(char letter);
    std::size_t stepText(std::string_view bytes, std::size_t offset);
    std::size_t stepBetweenPlots(std::string_view bytes, std::size_t offset);
    void carryOut(const EscapeReader& reader, const EscapeField& field);
    void switchLanguage(const EscapeField& field);
    void twoCharacters(char second);
    std::size_t enterJob(std::string_view bytes, std::size_t offset);
    void chooseLanguage(std::string_view bytes, std::size_t offset);
    void enterPlotter(double how);
    void leavePlotter(double how);
    void resetAll();

    // ---- macros: printer_macros.cpp ----
    std::size_t recordMacro(std::string_view bytes, std::size_t offset);
    void macroControl(double what);
    void runMacro(int id, bool givesBack);

    // ---- pages, cursor, picture frame: printer_layout.cpp ----
    void setPaper(double code);
    void setLandscape(bool landscape);
    void setPageLength(double lines);
    void setTextLength(double lines);
    void setLeftMargin(double column);
    void setRightMargin(double column);
    void chooseSource(double source);
    void changePage();
    void takePage();
    void takeSheet();
    void setDefaultMargins();
    void endPage();

    double lines(double count) const;  // plotter units of so many
    double columns(double count) const;
    double cursorUnits(double count) const;
    // Where text runs in another direction, it and the cursor see the page turned.
    double& margin(Side side);
    Point turnedSize() const;
    Point toLogical(Point turned) const;
    Point turnedCursor() const;
    void setTurnedCursor(Point turned);
    void home();
    void moveX(const EscapeField& field, double units);
    void moveY(const EscapeField& field, double units, double origin);
    void setDirection(double degrees);
    void pushCursor(bool push);

    void changeFrame(double& length, double value);
    void anchorFrame(double value);

    // ---- captions and rules: printer_captions.cpp ----
    void control(char c);
    void returnCarriage();
    void feedLine(double lines);
    void drawText(std::string_view text);
    void drawCharacter(char32_t character);
    void drawLines(const std::vector<Line>& lines);
    Ink captionInk() const;
    void choosePitch(double pitch);
    void chooseFont(CaptionFont& font, char group, const EscapeField& field);
    void fillRule(double how);

    // ---- raster: printer_raster.cpp ----
    void openRaster(bool fromCursor, bool scaled);
    void closeRaster();
    void resetRaster();
    void addRasterRow(const EscapeField& field);
    void skipRasterRows(double count);
    Affine rasterMap(Point origin, bool scaled) const;
    void setPalette(std::vector<Colour> palette);
    void simpleColour(double planes);
    void configureImage(std::string_view data);
    void assignColour(double index);
    void storePalette(bool push);

    Machine& machine_;
    Runner runner_;
    Language language_ = Language::Plotter;
    Language home_ = Language::Plotter;  // after a reset
    Job job_;
    bool isPrinterPage_ = false;
    bool isOff_ = false;  // by device control
    bool choosesPage_ = false;
    bool sawEnvelope_ = false;
    bool colourPrinter_ = false;
    bool entersPlotter_ = false;  // the file says somewhere where its plots begin
    bool isEngraver_ = false;     // its raster is for a laser, in coordinates of its own

    Settings settings_;
    std::vector<Point> cursors_;         // pushed
    std::vector<Saved> palettes_;        // pushed
    std::size_t captionCharacters_ = 0;  // on this page

    Raster raster_;
    Affine rasterToLogical_;  // pixels to the logical page

    std::map<int, std::string_view> macros_;
    int macro_ = 0;
    int overlay_ = -1;
    int depth_ = 0;
    std::size_t macroBytesLeft_ = MOST_MACRO_BYTES;
    bool isRecording_ = false;
    std::size_t recordedFrom_ = 0;
};

}  // namespace plotter
