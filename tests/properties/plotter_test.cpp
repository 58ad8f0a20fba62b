// What must hold for the plotter whatever is drawn: the same strokes however they are wrapped, and moved by exactly
// what turns, scales and moves the coordinates.
#include <gtest/gtest.h>

#include <random>
#include <string>
#include <utility>

#include "plotter/plot_run.h"
#include "plotter/plotter.h"

namespace {

using plotter::Affine;
using plotter::Line;
using plotter::Point;

bool goOn(std::size_t /*bytesDone*/) {
    return true;
}

// All lines and rings of a file, on all pages.
class Strokes final : public plotter::Sheet {
  public:
    void line(std::span<const Point> points, const plotter::Ink& /*ink*/) override {
        lines.emplace_back(points.begin(), points.end());
    }
    void area(const plotter::Area& rings, const plotter::Ink& /*ink*/) override {
        lines.insert(lines.end(), rings.begin(), rings.end());
    }
    void nextPage() override {}

    std::vector<Line> lines;
};

std::vector<Line> strokesOf(const std::string& plot, bool hpgl2 = true) {
    Strokes strokes;
    plotter::Report report;
    plotter::Traits traits;
    traits.hpgl2 = hpgl2;
    plotter::PlotRun(plot, traits, strokes, report).goOn(plotter::PlotRun::ALL_PAGES, goOn);
    return strokes.lines;
}

std::vector<Line> moved(std::vector<Line> lines, const Affine& map) {
    for (Line& line : lines) {
        for (Point& point : line) {
            point = map(point);
        }
    }
    return lines;
}

void expectSame(const std::vector<Line>& found, const std::vector<Line>& wanted, double slack) {
    ASSERT_EQ(found.size(), wanted.size());
    ASSERT_FALSE(wanted.empty());
    for (std::size_t i = 0; i < wanted.size(); ++i) {
        ASSERT_EQ(found[i].size(), wanted[i].size()) << "line " << i;
        for (std::size_t k = 0; k < wanted[i].size(); ++k) {
            ASSERT_NEAR(found[i][k].x, wanted[i][k].x, slack) << "line " << i << " point " << k;
            ASSERT_NEAR(found[i][k].y, wanted[i][k].y, slack) << "line " << i << " point " << k;
        }
    }
}

// Lines, arcs with chords, figures and polygons in whole numbers; nothing whose size depends on P1 and P2.
std::string randomPlot(unsigned seed) {
    std::mt19937 random(seed);
    const auto below = [&](int most) { return static_cast<int>(random() % static_cast<unsigned>(most)); };
    const auto pair = [&] { return std::to_string(below(2000)) + "," + std::to_string(below(2000)); };
    std::string plot;
    for (int i = 0; i < 40; ++i) {
        switch (below(8)) {
            case 0:
                plot += "PU" + pair() + ";PD" + pair() + "," + pair() + ";PU;";
                break;
            case 1:
                plot += "PA" + pair() + ";PD;PR" + pair() + "," + pair() + ";PA;PU;";
                break;
            case 2:
                plot += "PU" + pair() + ";CI" + std::to_string(1 + below(500)) + ",30;";
                break;
            case 3:
                plot += "PU" + pair() + ";PD;AA" + pair() + "," + std::to_string(1 + below(350)) + ",20;PU;";
                break;
            case 4:
                plot += "PU" + pair() + ";EA" + pair() + ";";
                break;
            case 5:
                plot += "PU" + pair() + ";WG" + std::to_string(1 + below(500)) + ",30,100,15;";
                break;
            case 6:
                plot += "PU" + pair() + ";PM0;PD" + pair() + "," + pair() + ";PM2;FP;EP;";
                break;
            default:
                plot += "PU" + pair() + ";PE7<=GeGeGe_Ge_;PU;";
                break;
        }
    }
    return plot;
}

constexpr unsigned PLOTS = 50;

TEST(PlotterProperties, TurningThePaperTurnsEveryStroke) {
    const Affine turns[] = {{}, {0, -1, 0, 1, 0, 0}, {-1, 0, 0, 0, -1, 0}, {0, 1, 0, -1, 0, 0}};
    for (unsigned seed = 0; seed < PLOTS; ++seed) {
        const std::string plot = randomPlot(seed);
        const std::vector<Line> straight = strokesOf("IN;SP1;" + plot);
        for (int quarter = 1; quarter < 4; ++quarter) {
            const std::string turned = "IN;SP1;RO" + std::to_string(90 * quarter) + ";PA0,0;" + plot;
            expectSame(strokesOf(turned), moved(straight, turns[quarter]), 1e-6);
        }
    }
}

TEST(PlotterProperties, UserUnitsScaleEveryStroke) {
    for (unsigned seed = 0; seed < PLOTS; ++seed) {
        const std::string plot = randomPlot(seed);
        const std::vector<Line> straight = strokesOf("IN;SP1;" + plot);
        const std::string scaled = "IN;SP1;IP100,200,3100,1700;SC0,1000,0,1000;PA0,0;" + plot;
        expectSame(strokesOf(scaled), moved(straight, {3, 0, 100, 0, 1.5, 200}), 1e-6);
        const std::string mirrored = "IN;SP1;IP100,200,3100,1700;SC1000,0,0,1000;PA0,0;" + plot;
        expectSame(strokesOf(mirrored), moved(straight, {-3, 0, 3100, 0, 1.5, 200}), 1e-6);
    }
}

TEST(PlotterProperties, MovingP1MovesEveryStroke) {
    for (unsigned seed = 0; seed < PLOTS; ++seed) {
        const std::string plot = "SC0,1000,0,1000;PA0,0;" + randomPlot(seed);
        const std::vector<Line> here = strokesOf("IN;SP1;IP0,0,1000,1000;" + plot);
        const std::vector<Line> there = strokesOf("IN;SP1;IP0,0,1000,1000;IP700,-300;" + plot);
        expectSame(there, moved(here, {1, 0, 700, 0, 1, -300}), 1e-6);
        const std::vector<Line> byShare = strokesOf("PS7000,3000;IN;SP1;IP0,0,1000,1000;IR10,-10;" + plot);
        expectSame(byShare, moved(here, {1, 0, 700, 0, 1, -300}), 1e-6);
    }
}

TEST(PlotterProperties, EnvelopesChangeNothing) {
    const std::string leave = "\x1b%0A\x1b%0B";
    for (unsigned seed = 0; seed < PLOTS; ++seed) {
        std::mt19937 random(seed);
        const std::string plot = "IN;SP1;" + randomPlot(seed);
        std::string cut;
        for (const char c : plot) {
            cut += c;
            if (c == ';' && random() % 5 == 0) cut += "\x1b.I81;;17:";
        }
        const std::vector<Line> bare = strokesOf(plot);
        expectSame(strokesOf(cut), bare, 0);
        const std::string job =
            "\x1b%-12345X@PJL JOB\r\n@PJL ENTER LANGUAGE=HPGL2\r\n" + plot + "\x1b%-12345X@PJL EOJ\r\n";
        expectSame(strokesOf(job), bare, 0);
        expectSame(strokesOf("\x1b%-1B" + plot + "\x1b%-12345X"), bare, 0);
    }
}

plotter::Sink appendTo(std::string& text) {
    return [&text](std::string_view piece) {
        text += piece;
        return true;
    };
}

std::string plainTextOf(const std::string& plot, std::size_t page = 0) {
    const plotter::Survey survey = plotter::survey(plot, goOn);
    std::string text;
    EXPECT_TRUE(plotter::write(plot, survey, page, appendTo(text), goOn));
    return text;
}

TEST(PlotterProperties, PagesInTurnAreThePagesByThemselves) {
    const std::vector<std::string> ends = {"PG;", "\x1b%0A\f\x1b%0B",
                                           "\x1b%0A" + std::string(90, '\n') + "beyond\x1b%0B",
                                           "\x1b%0A\x1b&f0Y\x1b&f0Xa\f\x1b*c90a9b0P\fb\fc\x1b&f1X\x1b&f2X\x1b%0B"};
    for (unsigned seed = 0; seed < PLOTS; ++seed) {
        std::mt19937 random(seed);
        std::string plot = "\x1b%-1BIN;SP1;";
        for (unsigned page = 0; page < 4; ++page) {
            plot += randomPlot(seed + page) + ends[random() % ends.size()];
        }
        const plotter::Survey survey = plotter::survey(plot, goOn);
        ASSERT_GE(survey.pages.size(), 2U);
        plotter::PageWriter writer(plot, survey);
        for (int i = 0; i < 12; ++i) {
            const std::size_t page = i < 6 ? static_cast<std::size_t>(i) : random() % survey.pages.size();
            std::string inTurn, alone;
            const bool exists = page < survey.pages.size();
            EXPECT_EQ(writer.write(page, appendTo(inTurn), goOn), exists);
            EXPECT_EQ(plotter::write(plot, survey, page, appendTo(alone), goOn), exists);
            EXPECT_EQ(inTurn, alone) << plot;
        }
    }
}

TEST(PlotterProperties, PagesInTurnAreOneRun) {
    std::string plot = "IN;SP1;";
    while (plot.size() < 400'000) {
        plot += "PU0,0;PD100,200,300,400,500,600;PG;";
    }
    const plotter::Survey survey = plotter::survey(plot, goOn);
    ASSERT_EQ(survey.pages.size(), 1000U);
    plotter::PageWriter writer(plot, survey);
    std::size_t last = 0;
    const auto neverBack = [&](std::size_t done) { return std::exchange(last, done) <= done; };
    for (std::size_t page = 0; page < survey.pages.size(); ++page) {
        std::string text;
        EXPECT_TRUE(writer.write(page, appendTo(text), neverBack));
    }
    EXPECT_GT(last, plot.size() / 2);
}

TEST(PlotterProperties, APageThatWasBrokenOffCanBeWrittenAgain) {
    const std::string plot = "IN;SP1;PU0,0;PD9,9;PG;PU0,0;PD90,9;PG;PU0,0;PD9,90;";
    const plotter::Survey survey = plotter::survey(plot, goOn);
    plotter::PageWriter writer(plot, survey);
    const std::string whole = plainTextOf(plot, 1);
    for (const std::size_t page : {1U, 0U, 1U}) {
        EXPECT_FALSE(writer.write(
            page, [](std::string_view) { return false; }, goOn));
    }
    std::string text;
    EXPECT_TRUE(writer.write(1, appendTo(text), goOn));
    EXPECT_EQ(text, whole);
}

TEST(PlotterProperties, WhatIsWrittenIsPlainAndDrawsTheSame) {
    for (unsigned seed = 0; seed < PLOTS; ++seed) {
        const std::string plot = "IN;SP1;" + randomPlot(seed);
        const std::string text = plainTextOf(plot);
        ASSERT_TRUE(plotter::isPlain(text)) << text;
        const double factor = plotter::survey(plot, goOn).pages.front().factor;
        std::vector<Line> wanted;
        for (Line& line : moved(strokesOf(plot), {factor, 0, 0, 0, factor, 0})) {
            wanted.push_back(std::move(line));
        }
        std::size_t points = 0;
        plotter::Box box;
        for (const Line& line : wanted) {
            for (const Point point : line) {
                box.add(point);
                ++points;
            }
        }
        plotter::Box found;
        for (const Line& line : strokesOf(text)) {
            for (const Point point : line) {
                found.add(point);
            }
        }
        EXPECT_GT(points, 0U);
        EXPECT_NEAR(found.low.x, box.low.x, 0.5);
        EXPECT_NEAR(found.low.y, box.low.y, 0.5);
        EXPECT_NEAR(found.high.x, box.high.x, 0.5);
        EXPECT_NEAR(found.high.y, box.high.y, 0.5);
    }
}

TEST(PlotterProperties, APlainFileIsDrawnAsItStands) {
    const std::string plot = "IN;SP1;PU0,0;PD100,0,100,50;PU10,10;PM0;PD20,10,20,20;PM2;FP;PU;SP0;";
    ASSERT_TRUE(plotter::isPlain(plot));
    const double factor = plotter::survey(plot, goOn).pages.front().factor;
    std::vector<Line> again = strokesOf(plainTextOf(plot));
    const std::vector<Line> wanted = moved(strokesOf(plot), {factor, 0, 0, 0, factor, 0});
    expectSame(again, wanted, 0);
}

}  // namespace
