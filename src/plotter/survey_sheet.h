// The sheet of the first pass: it measures every page.
#pragma once

#include <vector>

#include "plotter/palette.h"
#include "plotter/sheet.h"

namespace plotter {

// What comes behind so many pages lies on the last: each is kept in memory, and shown or printed by itself.
inline constexpr std::size_t MOST_PAGES = 1000;

class SurveySheet final : public Sheet {
  public:
    // What was drawn on one page. Until the file has been read nobody knows whether it chooses colours, so both are
    // counted.
    struct Page {
        bool draws = false;
        Box extents;  // paper
        PenUse ownColours;
        PenUse viewerColours;
    };

    void line(std::span<const Point> points, const Ink& ink) override;
    void area(const Area& rings, const Ink& ink) override;
    void nextPage() override;

    // All pages, when nothing more comes; the last may be empty.
    std::vector<Page> takePages();
    bool hadTooManyPages() const { return tooMany_; }

  private:
    void use(const Ink& ink, double amount);
    static void count(PenUse& use, PenKey key, double amount);
    void settle();

    std::vector<Page> pages_ = std::vector<Page>(1);
    Ink last_;  // whose ink has not been counted yet
    double amount_ = 0;
    bool tooMany_ = false;
};

}  // namespace plotter
