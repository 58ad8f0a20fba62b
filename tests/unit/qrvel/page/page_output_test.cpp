// The page in the surface's place.
#include <filesystem>

#include "print_fixture.h"
#include "qrvel/window/print_setup.h"

namespace qrvel {
namespace {

using PageOutput = PrintFixture;

bool exists(const std::string& name) {
    return std::filesystem::exists(name);
}

TEST_F(PageOutput, SizesAreToldAtOnce) {
    start({"--print-to", "a.pdf", "a.plt"});
    EXPECT_EQ(outputSize(), "300x200");
    EXPECT_EQ(OUTopendevice(child, 2, 1, "a.pdf"), 1);
    EXPECT_EQ(heard, "size 7600x11080\n");
    heard.clear();
    draw();
    EXPECT_EQ(heard, "");
    EXPECT_FALSE(exists("a.pdf"));
    EXPECT_EQ(OUTclosedevice(child), 1);
    EXPECT_EQ(heard, "size 300x200\n");
    EXPECT_TRUE(ScratchFolder::read("a.pdf").starts_with("%PDF-"));
    EXPECT_EQ(QGuiApplication::overrideCursor(), nullptr);
}

TEST_F(PageOutput, ThePaperIsTheOneChosen) {
    start({"--print-to", "a.pdf", "--page", "100x60mm", "a.plt"});
    OUTopendevice(child, 2, 1, "a.pdf");
    EXPECT_EQ(heard, "size 3520x1920\n");
    OUTclosedevice(child);
}

TEST_F(PageOutput, TheEndOfAPaintEndsNoFile) {
    start({"--print-to", "a.svg", "a.plt"});
    OUTopendevice(child, 2, 2, "a.svg");
    draw();
    draw();
    OUTline(child, 500, 500, 600, 500);
    OUTendpaint(child);
    EXPECT_FALSE(exists("a.svg"));
    OUTclosedevice(child);
    const std::string written = ScratchFolder::read("a.svg");
    std::size_t paths = 0;
    for (std::size_t at = written.find("d=\"M"); at != std::string::npos; at = written.find("d=\"M", at + 1)) {
        ++paths;
    }
    EXPECT_EQ(paths, 1U) << written;
}

TEST_F(PageOutput, TheSurfaceMovesUnderThePage) {
    start({"--print-to", "a.pdf", "a.plt"});
    OUTopendevice(child, 2, 1, "a.pdf");
    Wsetwinpos(child, 0, 0, 200, 100);
    EXPECT_EQ(outputSize(), "7600x11080");
    draw();
    OUTclosedevice(child);
    EXPECT_EQ(outputSize(), "200x100");
}

TEST_F(PageOutput, ALongNameIsTheChosenFiles) {
    const std::string path = std::string(100, 'd') + '/' + std::string(100, 'e');
    std::filesystem::create_directories(path);
    const std::string pattern = path + "/%n.pdf";
    start({"--print-to", pattern.c_str(), "a.plt"});
    application()->run->begun("a.plt", {});
    const std::string handed = name();
    EXPECT_EQ(handed, CHOSEN_FILE);
    EXPECT_EQ(OUTopendevice(child, 2, 1, handed.c_str()), 1);
    draw();
    EXPECT_EQ(OUTclosedevice(child), 1);
    EXPECT_TRUE(exists(path + "/a.pdf"));
}

// Names are bytes; whether they are text is nobody's business.
TEST_F(PageOutput, ANameNeedNotBeText) {
    start({"--print-to", "%n.pdf", "a.plt"});
    for (const char* wanted : {"a\xFF.pdf", "a\xFE.pdf"}) {
        EXPECT_EQ(OUTopendevice(child, 2, 1, wanted), 1);
        draw();
        EXPECT_EQ(OUTclosedevice(child), 1);
        EXPECT_TRUE(exists(wanted));
    }
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator("."), {}), 2);
}

struct BadGoal {
    uint32_t destination;
    uint32_t format;
    const char* name;
    const char* said;
};

constexpr BadGoal BAD_GOALS[] = {
    {1, 0, "no printer", "kelhpgl: cannot print on no printer: there is no such printer\n"},
    {2, 1, "none/a.pdf", "kelhpgl: cannot write none/a.pdf: No such file or directory\n"},
    {2, 1, ".", "kelhpgl: cannot write .: Is a directory\n"},
    {0, 1, "a.pdf", "kelhpgl: There is no such destination or format.\n"},
    {4, 1, "a.pdf", "kelhpgl: There is no such destination or format.\n"},
    {258, 1, "a.pdf", "kelhpgl: There is no such destination or format.\n"},
    {3, 1, nullptr, "kelhpgl: The program that sent the drawing is not there any more, or does not take the page.\n"},
};

TEST_F(PageOutput, WhatCannotBeWrittenIsToldAtTheClose) {
    start({"--print-to", "a.pdf", "a.plt"});
    for (const BadGoal& goal : BAD_GOALS) {
        testing::internal::CaptureStderr();
        EXPECT_EQ(OUTopendevice(child, goal.destination, goal.format, goal.name), 1);
        draw();
        EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
        testing::internal::CaptureStderr();
        EXPECT_EQ(OUTclosedevice(child), 0);
        EXPECT_EQ(testing::internal::GetCapturedStderr(), goal.said);
        EXPECT_EQ(outputSize(), "300x200");
        EXPECT_EQ(QGuiApplication::overrideCursor(), nullptr);
    }
    EXPECT_TRUE(std::filesystem::is_empty("."));
}

TEST_F(PageOutput, AnUnknownFormatIsNoQuestionOfSize) {
    start({"--print-to", "a.pdf", "a.plt"});
    for (const uint32_t format : {0U, 4U, 257U}) {
        testing::internal::CaptureStderr();
        OUTopendevice(child, 2, format, "a.pdf");
        draw();
        EXPECT_EQ(OUTclosedevice(child), 0);
        EXPECT_EQ(testing::internal::GetCapturedStderr().find("too large"), std::string::npos) << format;
    }
    EXPECT_TRUE(std::filesystem::is_empty("."));
}

TEST_F(PageOutput, AnEmptyPageIsWrittenAndTold) {
    start({"--print-to", "a.pdf", "a.plt"});
    testing::internal::CaptureStderr();
    OUTopendevice(child, 2, 1, "a.pdf");
    OUTreset(child);
    OUTendpaint(child);
    EXPECT_EQ(OUTclosedevice(child), 1);
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "kelhpgl: a.pdf: the drawing is empty, the page is white\n");
    EXPECT_TRUE(exists("a.pdf"));
}

TEST_F(PageOutput, WithoutAPageNothingIsClosed) {
    start({"--print-to", "a.pdf", "a.plt"});
    EXPECT_EQ(OUTclosedevice(child), 0);
    OUTopendevice(child, 2, 1, "a.pdf");
    draw();
    EXPECT_EQ(OUTclosedevice(child), 1);
    heard.clear();
    EXPECT_EQ(OUTclosedevice(child), 0);
    EXPECT_EQ(heard, "");
    for (const WHandle handle : {WHandle{0}, setup, WHandle{0xFFFFFFFF}}) {
        EXPECT_EQ(OUTopendevice(handle, 2, 1, "b.pdf"), 0);
        EXPECT_EQ(OUTclosedevice(handle), 0);
    }
    EXPECT_FALSE(exists("b.pdf"));
}

TEST_F(PageOutput, AChildThatHasGonePrintsNothing) {
    start({"--print-to", "a.pdf", "a.plt"});
    OUTopendevice(child, 2, 1, "a.pdf");
    draw();
    Wdestroychild(child);
    EXPECT_EQ(OUTclosedevice(child), 0);
    EXPECT_FALSE(exists("a.pdf"));
}

}  // namespace
}  // namespace qrvel
