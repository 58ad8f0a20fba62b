// What a few bytes can multiply ends somewhere, and the report says so.
#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <string>

#include "plotter/machine.h"
#include "plotter/plotter.h"
#include "plotter/survey_sheet.h"

namespace plotter {
namespace {

bool goOn(std::size_t /*bytesDone*/) {
    return true;
}

std::string repeated(std::string text, std::string_view unit, std::size_t times) {
    for (std::size_t i = 0; i < times; ++i) {
        text += unit;
    }
    return text;
}

bool meets(const Survey& survey, std::string_view bound) {
    return std::ranges::any_of(survey.report.bounds(),
                               [bound](const Report::Entry& entry) { return entry.what == bound; });
}

std::size_t sizeOfText(const std::string& plot, const Survey& survey) {
    std::size_t size = 0;
    const auto sink = [&size](std::string_view piece) {
        size += piece.size();
        return true;
    };
    EXPECT_TRUE(write(plot, survey, 0, sink, goOn));
    return size;
}

// An arc's corners as it was measured are too far away; of the more that are drawn some are not.
TEST(Bounds, WhatWasTooFarToBeMeasuredIsNotFarAway) {
    const std::string plot = "PA500,500;PD0,0;AR10,16777217,20;AR099,10737418230,9;PD1,1;";
    const Survey measured = survey(plot, goOn);
    ASSERT_EQ(measured.pages.size(), 1U);
    const PageSurvey& page = measured.pages.front();
    std::string text;
    const auto sink = [&text](std::string_view piece) {
        text += piece;
        return true;
    };
    ASSERT_TRUE(write(plot, measured, 0, sink, goOn));
    const double most = 1.2 * page.factor *
                        std::max({std::abs(page.extents.low.x), std::abs(page.extents.low.y), page.extents.high.x,
                                  page.extents.high.y, 1.0});
    for (std::size_t at = 0; (at = text.find_first_of("0123456789", at)) != std::string::npos;) {
        const std::size_t end = text.find_first_not_of("0123456789", at);
        EXPECT_LE(std::stod(text.substr(at, end - at)), most) << text.substr(at, 20);
        at = end;
    }
}

// A polygon of 2000 corners, filled again and again: the points of any file are used up after 1250 times, for it must
// be cut for the viewer.
TEST(Bounds, PointsOnThePaperEnd) {
    std::string plot = "IN;SP1;PU0,0;PM0;PD";
    for (int i = 0; i < 2000; ++i) {
        plot += std::to_string(i * 7919 % 5000) + "," + std::to_string(i * 104729 % 5000) + ",";
    }
    plot += "0,0;PM2;";
    const std::string few = repeated(plot, "FP", 100);
    EXPECT_FALSE(meets(survey(few, goOn), "points on the paper"));
    const std::string many = repeated(plot, "FP", 3000);
    const Survey found = survey(many, goOn);
    EXPECT_TRUE(meets(found, "points on the paper"));
    EXPECT_LE(sizeOfText(many, found), 13 * (POINTS_OF_ANY_FILE + POINTS_A_BYTE * many.size()) + 100'000);
}

// Curves get coarser before anything is left out.
TEST(Bounds, CirclesAreAllDrawn) {
    const std::string plot = repeated("IN;SP1;", "CI900;", 200'000);
    const Survey found = survey(plot, goOn);
    EXPECT_FALSE(meets(found, "points on the paper"));
    EXPECT_LT(sizeOfText(plot, found), 200'000'000U);
}

TEST(Bounds, CornersOfAPolygonEnd) {
    const std::string plot = repeated("IN;SP1;PU0,0;PM0;", "CI900;", 200'000);
    EXPECT_TRUE(meets(survey(plot, goOn), "points of a polygon"));
}

// None of them may look for its end in all that comes behind.
TEST(Bounds, EncodedLinesWithoutALineEndTakeNoLongerTheMoreThereAre) {
    const auto began = std::chrono::steady_clock::now();
    EXPECT_TRUE(survey(repeated("IN;SP1;", "PE;", 2'000'000), goOn).whole);
    EXPECT_LT(std::chrono::steady_clock::now() - began, std::chrono::seconds(20));
}

TEST(Bounds, ThePagesBehindTheLastAreOnIt) {
    const std::string plot = repeated("IN;SP1;", "PU0,0;PD9,9;PG;", MOST_PAGES + 10);
    const Survey found = survey(plot, goOn);
    EXPECT_EQ(found.pages.size(), MOST_PAGES);
    EXPECT_TRUE(meets(found, "pages"));
    std::string text;
    const auto sink = [&text](std::string_view piece) {
        text += piece;
        return true;
    };
    ASSERT_TRUE(write(plot, found, MOST_PAGES - 1, sink, goOn));
    EXPECT_EQ(std::ranges::count(text, 'D'), 11);
}

TEST(Bounds, APageThatIsNotThereIsNotWritten) {
    const std::string plot = "IN;SP1;PU0,0;PD9,9;";
    const auto sink = [](std::string_view /*piece*/) { return true; };
    EXPECT_FALSE(write(plot, survey(plot, goOn), 1, sink, goOn));
}

TEST(Bounds, TheWatchStopsBothPasses) {
    const std::string plot = repeated("IN;SP1;", "PU0,0;PD9.5,9;", 100'000);
    EXPECT_FALSE(survey(plot, [](std::size_t done) { return done < 200'000; }).whole);
    const Survey found = survey(plot, goOn);
    std::size_t size = 0;
    const auto sink = [&size](std::string_view piece) {
        size += piece.size();
        return true;
    };
    EXPECT_FALSE(write(plot, found, 0, sink, [](std::size_t done) { return done < 200'000; }));
    EXPECT_FALSE(write(
        plot, found, 0, [](std::string_view /*piece*/) { return false; }, goOn));
}

}  // namespace
}  // namespace plotter
