#include <map>
#include <utility>

#include "plotter/file_bytes.h"
#include "plotter/findings.h"
#include "plotter/plain_writer.h"
#include "plotter/plot_run.h"
#include "plotter/survey_sheet.h"

namespace plotter {

namespace {

// How far a curve may be from its chords, output units.
constexpr double TOLERANCE = 0.25;

// What areas get by being cut can be more than their points say.
std::size_t mostText(std::size_t bytes) {
    constexpr std::size_t BYTES_A_POINT = 13;
    return BYTES_A_POINT * (POINTS_OF_ANY_FILE + POINTS_A_BYTE * bytes);
}

}  // namespace

// The pages in their order: one of them at a time is written. What comes of later ones meanwhile is kept, for an
// instruction can go on over the end of a page, and a printer's macro can draw many.
class PagesInTurn final : public Sheet {
  public:
    // Whether all of that page can still be had.
    bool isAhead(std::size_t page) const { return page >= next_ && whole_; }
    // Whether something of it has been drawn already.
    bool hasBegun(std::size_t page) const { return kept_.contains(page); }
    // That page goes to the writer from now on.
    void give(std::size_t page, PlainWriter* writer);
    void takeBack() { writer_ = nullptr; }

    void line(std::span<const Point> points, const Ink& ink) override;
    void area(const Area& rings, const Ink& ink) override;
    void nextPage() override;

  private:
    struct Drawn {
        Area rings;  // of a line one, its points
        Ink ink;
        bool isArea = false;
    };

    static constexpr std::size_t MOST_KEPT_POINTS = std::size_t{1} << 20;

    bool isWanted() const { return writer_ != nullptr && current_ + 1 == next_; }
    void keep(Drawn drawn);

    std::size_t current_ = 0;
    std::size_t next_ = 0;  // of those that can still be had, if any
    PlainWriter* writer_ = nullptr;
    std::map<std::size_t, std::vector<Drawn>> kept_;
    std::size_t keptPoints_ = 0;
    bool whole_ = true;  // all that had to be kept
};

void PagesInTurn::give(std::size_t page, PlainWriter* writer) {
    writer_ = writer;
    next_ = page + 1;
    for (const Drawn& drawn : kept_[page]) {
        if (drawn.isArea) {
            writer->area(drawn.rings, drawn.ink);
        } else {
            writer->line(drawn.rings.front(), drawn.ink);
        }
    }
    kept_.erase(kept_.begin(), kept_.upper_bound(page));
    if (kept_.empty()) keptPoints_ = 0;
}

void PagesInTurn::keep(Drawn drawn) {
    constexpr std::size_t POINTS_OF_NOTHING = 8;  // what a short line takes beside its points
    for (const Ring& ring : drawn.rings) {
        keptPoints_ += POINTS_OF_NOTHING + ring.size();
    }
    whole_ = whole_ && keptPoints_ <= MOST_KEPT_POINTS;
    if (whole_) kept_[current_].push_back(std::move(drawn));
}

void PagesInTurn::line(std::span<const Point> points, const Ink& ink) {
    if (isWanted()) {
        writer_->line(points, ink);
    } else if (current_ >= next_) {
        keep({{Ring(points.begin(), points.end())}, ink, false});
    }
}

void PagesInTurn::area(const Area& rings, const Ink& ink) {
    if (isWanted()) {
        writer_->area(rings, ink);
    } else if (current_ >= next_) {
        keep({rings, ink, true});
    }
}

void PagesInTurn::nextPage() {
    if (isWanted()) writer_->nextPage();
    if (current_ + 1 < MOST_PAGES) ++current_;
}

// Between two pages it stands still.
class PageWriter::Run {
  public:
    Run(std::string_view bytes, const Traits& traits) : plot_(bytes, traits, pages_, report_) {}

    // What has been drawn of it already must be fine enough: a few output units are far less than is seen.
    bool canWrite(std::size_t page, double factor) const {
        constexpr double COARSER = 16;
        return pages_.isAhead(page) && (!pages_.hasBegun(page) || factor <= COARSER * factor_);
    }

    bool goOn(std::size_t page, double factor, PlainWriter& writer, const Watch& watch) {
        factor_ = factor;
        pages_.give(page, &writer);
        plot_.setTolerance(TOLERANCE / factor);
        const std::size_t until = page + 1 == MOST_PAGES ? PlotRun::ALL_PAGES : page + 1;
        const bool whole = plot_.goOn(until, [&](std::size_t done) { return watch(done) && !writer.isStopped(); });
        pages_.takeBack();
        return whole;
    }

  private:
    PagesInTurn pages_;
    Report report_;  // the survey's says the same
    PlotRun plot_;
    double factor_ = 0;  // output units a plotter unit, of the page that was written last
};

PageWriter::PageWriter(std::string_view file, const Survey& survey) : file_(file), survey_(survey) {}

PageWriter::~PageWriter() = default;

bool PageWriter::write(std::size_t page, const Sink& sink, const Watch& watch) {
    if (!survey_.whole || page >= survey_.pages.size()) return false;
    const Findings& findings = *survey_.findings;
    const std::string_view bytes = findings.prepared.owned ? findings.prepared.bytes : prepareBytes(file_).bytes;
    const PageSurvey& measured = survey_.pages[page];
    std::unique_ptr<Run> run = std::move(run_);  // gone when it is broken off by an exception
    if (run == nullptr || !run->canWrite(page, measured.factor)) run = std::make_unique<Run>(bytes, findings.traits);
    PlainWriter writer(
        {measured.factor, measured.extents, &findings.palettes[page], findings.coloursChosen, mostText(bytes.size())},
        sink);
    writer.begin();
    const bool whole = run->goOn(page, measured.factor, writer, watch);
    run_ = std::move(run);
    return writer.end() && whole;
}

bool write(std::string_view file, const Survey& survey, std::size_t page, const Sink& sink, const Watch& watch) {
    return PageWriter(file, survey).write(page, sink, watch);
}

}  // namespace plotter
