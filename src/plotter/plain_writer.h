// The sheet of the second pass: one page as plain text, whole numbers in absolute coordinates.
#pragma once

#include <map>
#include <string_view>
#include <vector>

#include "plotter/palette.h"
#include "plotter/plotter.h"
#include "plotter/sheet.h"

namespace plotter {

class PlainWriter final : public Sheet {
  public:
    struct Page {
        double factor = 1;  // output units a plotter unit
        Box extents;        // as measured, plotter units
        const Palette* palette = nullptr;
        bool coloursChosen = false;
        std::size_t mostBytes = 0;  // of text; nothing comes behind
    };

    PlainWriter(const Page& page, const Sink& sink);

    void begin();
    // All that is left goes out. False when the sink has said stop.
    bool end();
    // Whether the sink has said stop.
    bool isStopped() const { return stopped_; }

    void line(std::span<const Point> points, const Ink& ink) override;
    void area(const Area& rings, const Ink& ink) override;
    void nextPage() override;

  private:
    void setReach();
    // Output units.
    struct Place {
        int32_t x = 0;
        int32_t y = 0;
        friend bool operator==(const Place&, const Place&) = default;
    };

    bool isWritten() const { return !stopped_ && written_ < page_.mostBytes; }
    Place placeOf(Point paper) const;
    void takePen(const Ink& ink);
    void moveTo(Place place);
    void drawTo(Place place);
    void closeChain();
    void fill(const Area& rings);

    void text(std::string_view text);
    void number(int32_t number);
    void pair(Place place);
    void character(char character) { *next_++ = character; }
    void makeRoom();
    void flush();

    Page page_;
    const Sink& sink_;
    Point lowest_, highest_;   // output units: farther out nothing is drawn
    std::size_t written_ = 0;  // bytes that are out
    bool stopped_ = false;
    std::vector<char> buffer_;  // a piece, and room for what is written without asking
    char* next_;

    Ink ink_;                            // that was taken last
    int32_t pen_ = 0;                    // of the output; 0: none yet
    std::map<int32_t, int32_t> widths_;  // by pen, output units
    Place place_;                        // of the pen
    bool placed_ = false;
    int32_t pairs_ = 0;  // of the PD under way; 0: none
};

}  // namespace plotter
