#include "plotter/findings.h"
#include "plotter/plot_run.h"
#include "plotter/survey_sheet.h"
#include "plotter/units.h"

namespace plotter {

namespace {

// The viewer's coordinates: far from where its 32-bit products wrap, and fine enough for any zoom.
constexpr double LONGEST_OUTPUT_SIDE = 131'000;
constexpr int MOST_DOUBLINGS = 12;

// A4 in plotter units, with a little to spare: what is larger was drawn on larger paper.
constexpr double A4_LONG = 11'900;
constexpr double A4_SHORT = 8'420;

double factorFor(const Box& extents) {
    if (extents.empty()) return 1;
    const double side = std::max(extents.width(), extents.height());
    const double reach = std::max(
        {std::abs(extents.low.x), std::abs(extents.low.y), std::abs(extents.high.x), std::abs(extents.high.y)});
    double factor = std::ldexp(1.0, MOST_DOUBLINGS);
    const double least = std::ldexp(1.0, -MOST_DOUBLINGS);
    while (factor > least && (side * factor > LONGEST_OUTPUT_SIDE || reach * factor > FARTHEST)) {
        factor /= 2;
    }
    return factor;
}

bool isLarge(const std::vector<SurveySheet::Page>& pages) {
    return std::ranges::any_of(pages, [](const SurveySheet::Page& page) {
        const double width = page.extents.width();
        const double height = page.extents.height();
        return std::max(width, height) > A4_LONG || std::min(width, height) > A4_SHORT;
    });
}

Traits guess(std::string_view bytes) {
    Traits traits;
    traits.hpgl2 = bytes.find("\x1b%") != std::string_view::npos;
    return traits;
}

// The last page is there only where something was drawn on it.
void dropTrailingPage(std::vector<SurveySheet::Page>& pages) {
    if (pages.size() > 1 && !pages.back().draws) pages.pop_back();
}

}  // namespace

Survey survey(std::string_view file, const Watch& watch) {
    Survey result;
    auto findings = std::make_shared<Findings>();
    findings->prepared = prepareBytes(file);
    const std::string_view bytes = findings->prepared.bytes;

    Traits traits = guess(bytes);
    constexpr int MOST_RUNS = 4;  // each trait is found wrong once at most
    for (int run = 0; run < MOST_RUNS; ++run) {
        SurveySheet sheet;
        Report report;
        PlotRun plot(bytes, traits, sheet, report);
        if (!plot.goOn(PlotRun::ALL_PAGES, watch)) return result;
        RunResult ran = plot.result();
        findings->coloursChosen = ran.coloursChosen;
        result.report = report;
        result.report.setOffset(0);
        if (traits.penZeroDraws) result.report.drawWithPenOne();
        if (sheet.hadTooManyPages()) result.report.meetBound("pages");
        std::vector<SurveySheet::Page> pages = sheet.takePages();
        dropTrailingPage(pages);
        ran.found.large = ran.found.large || (ran.sizeAsked && isLarge(pages));
        findings->traits = traits;
        findings->palettes.clear();
        result.pages.clear();
        for (const SurveySheet::Page& page : pages) {
            result.pages.push_back({page.draws, page.extents, factorFor(page.extents)});
            findings->palettes.emplace_back(ran.coloursChosen ? page.ownColours : page.viewerColours);
        }
        if (ran.found == traits) break;
        traits = ran.found;
    }
    result.whole = true;
    if (!findings->prepared.remark.empty()) result.report.meetBound(findings->prepared.remark);
    result.findings = std::move(findings);
    return result;
}

}  // namespace plotter
