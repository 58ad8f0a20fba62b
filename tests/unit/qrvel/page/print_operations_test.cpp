// Printing through the toolkit's operations, called as the viewer calls them.
#include <gtest/gtest.h>

#include <QGuiApplication>
#include <filesystem>
#include <vector>

#include "platform/arguments.h"
#include "qrvel/base/application.h"
#include "qrvel/run/window_run.h"
#include "qrvel/window/print_setup.h"
#include "scratch_folder.h"
#include "toolkit/cont.h"
#include "toolkit/out.h"
#include "toolkit/pssetup.h"
#include "toolkit/shl.h"
#include "toolkit/w.h"
#include "toolkit/wclr.h"
#include "toolkit/wi.h"

namespace qrvel {
namespace {

// What the window procedure hears, with the size that the child's output has then.
std::string heard;
WHandle drawingChild = 0;

std::string outputSize() {
    int32_t width = 0;
    int32_t height = 0;
    OUTquerysize(drawingChild, &width, &height);
    return std::to_string(width) + 'x' + std::to_string(height);
}

void hear(WHandle /*object*/, uint32_t message, uint32_t /*first*/, uint32_t /*second*/) {
    heard += (message == W_MSG_SIZE ? "size " + outputSize() : "message " + std::to_string(message)) + '\n';
}

bool exists(const std::string& name) {
    return std::filesystem::exists(name);
}

class PrintOperations : public testing::Test {
  protected:
    ~PrintOperations() override {
        if (app_ == 0) return;
        PSSETUPdestroy(setup);
        OUTdestroy(child);
        Wdestroychild(child);
        CONTdestroy(container_);
        SHLdestroy(shell_);
        Wdestroyobject(object_);
        application()->run = std::make_unique<WindowRun>();  // what has failed would end the process
        Wterminate(app_);
    }

    // An application with a child of 300 x 200 pixels, converting with these options.
    void start(std::vector<const char*> options) {
        words_ = std::move(options);
        words_.insert(words_.begin(), "kelhpgl");
        setPlatformArguments(static_cast<int>(words_.size()), words_.data());
        app_ = WIinitialise(0, nullptr, 1);
        const WHandle windowClass = Wregisterclass(app_, hear);
        object_ = Wcreateobject(app_, windowClass, 0, 1);
        shell_ = SHLcreate(app_, &container_, "title", 0, 3728);
        CONTstdcreate(container_, windowClass, 0, 0, 0, 0);
        child = drawingChild = Wcreatechild(app_, container_);
        constexpr WColour COLOURS[] = {{.red = 255, .green = 255, .blue = 255, .reserved = 0}, {}};
        const WHandle table = WCLRcreate(app_, COLOURS, 2);
        OUTstdcreate(child, object_, 256, 0, table);
        Wsetwinpos(child, 0, 0, 300, 200);
        setup = PSSETUPcreate(container_, shell_, 5, 0, 0, 2);
        WIsendmsgs(app_);
        heard.clear();
        ASSERT_NE(setup, 0U);
    }
    void draw() const {
        OUTreset(child);
        OUTline(child, 100, 100, 400, 200);
        OUTendpaint(child);
    }

    // Value 23, with the room that the viewer names; what is behind that must stay as it is.
    std::string name() const {
        char buffer[200];
        std::fill(std::begin(buffer), std::end(buffer), 'x');
        uint32_t size = 127;
        EXPECT_EQ(PSSETUPqueryValue(setup, PSSETUP_NAME, &size, buffer), 1);
        EXPECT_EQ(size, std::strlen(buffer));
        EXPECT_EQ(std::string(buffer + 128, std::end(buffer)), std::string(72, 'x'));
        return buffer;
    }

    WHandle child = 0;
    WHandle setup = 0;
    ScratchFolder folder;

  private:
    std::vector<const char*> words_;
    WHandle app_ = 0;
    WHandle object_ = 0;
    WHandle shell_ = 0;
    WHandle container_ = 0;
};

// ---- what the set-up says -------------------------------------------------------------------------------------------

TEST_F(PrintOperations, TheSetUpNamesAFile) {
    start({"--print-to", "out/a b.svg", "a.plt"});
    uint32_t destination = 99;
    uint32_t format = 99;
    EXPECT_EQ(PSSETUPqueryValue(setup, PSSETUP_DESTINATION, &destination, nullptr), 1);
    EXPECT_EQ(PSSETUPqueryValue(setup, PSSETUP_FORMAT, &format, nullptr), 1);
    EXPECT_EQ(PSSETUPtransDestAndFormatValues(&destination, &format), 1);
    EXPECT_EQ(destination, static_cast<uint32_t>(Destination::File));
    EXPECT_EQ(format, static_cast<uint32_t>(PageFormat::Svg));
    application()->run->begun("a.plt", {});
    EXPECT_EQ(name(), "out/a b.svg");
}

TEST_F(PrintOperations, ANameIsNeverCut) {
    start({"--print-to", "%n.pdf", "a.plt"});
    for (const std::size_t length : {std::size_t{5}, std::size_t{126}, std::size_t{127}}) {
        const std::string wanted = std::string(length - 4, 'n') + ".pdf";
        application()->run->begun(QByteArray::fromStdString(std::string(length - 4, 'n') + ".plt"), {});
        EXPECT_EQ(name(), wanted);
    }
    for (const std::size_t length : {std::size_t{128}, std::size_t{129}, std::size_t{300}, std::size_t{5000}}) {
        application()->run->begun(QByteArray::fromStdString(std::string(length - 4, 'n') + ".plt"), {});
        EXPECT_EQ(name(), CHOSEN_FILE) << length;
    }
}

TEST_F(PrintOperations, ValuesNeedAPlace) {
    start({"--print-to", "a.pdf", "a.plt"});
    application()->run->begun("a.plt", {});
    char buffer[128] = "unchanged";
    uint32_t size = 127;
    EXPECT_EQ(PSSETUPqueryValue(setup, PSSETUP_NAME, nullptr, buffer), 0);
    EXPECT_EQ(PSSETUPqueryValue(setup, PSSETUP_NAME, &size, nullptr), 0);
    EXPECT_EQ(PSSETUPqueryValue(setup, PSSETUP_DESTINATION, nullptr, nullptr), 0);
    EXPECT_EQ(PSSETUPqueryValue(setup, PSSETUP_FORMAT, nullptr, nullptr), 0);
    for (const uint32_t unknown : {0U, 1U, 10U, 13U, 22U, 24U, 0xFFFFFFFFU}) {
        EXPECT_EQ(PSSETUPqueryValue(setup, unknown, &size, buffer), 0) << unknown;
    }
    uint32_t none = 0;
    EXPECT_EQ(PSSETUPqueryValue(setup, PSSETUP_NAME, &none, buffer), 0);
    EXPECT_EQ(size, 127U);
    EXPECT_STREQ(buffer, "unchanged");
}

TEST_F(PrintOperations, AnOldHandleAnswersNothing) {
    start({"--print-to", "a.pdf", "a.plt"});
    const WHandle old = setup;
    PSSETUPdestroy(setup);
    setup = 0;
    char buffer[128] = "unchanged";
    for (const WHandle handle : {old, WHandle{0}, child, WHandle{0xFFFFFFFF}}) {
        uint32_t value = 127;
        EXPECT_EQ(PSSETUPqueryValue(handle, PSSETUP_DESTINATION, &value, nullptr), 0);
        EXPECT_EQ(PSSETUPqueryValue(handle, PSSETUP_NAME, &value, buffer), 0);
        EXPECT_EQ(PSSETUPhide(handle), 0);
        EXPECT_EQ(PSSETUPshow(handle), 0);
        PSSETUPdestroy(handle);
        EXPECT_EQ(value, 127U);
    }
    EXPECT_STREQ(buffer, "unchanged");
}

TEST(PrintValues, BecomeThoseOfTheOutputDevice) {
    struct Row {
        uint32_t destination, format;        // of the panel
        uint32_t outDestination, outFormat;  // of OUTopendevice
    };
    constexpr Row ROWS[] = {{0, 0, 1, 0}, {0, 2, 1, 0}, {1, 0, 2, 1}, {1, 1, 2, 2},
                            {1, 2, 2, 3}, {2, 0, 3, 1}, {2, 2, 3, 3}};
    for (const Row& row : ROWS) {
        uint32_t destination = row.destination;
        uint32_t format = row.format;
        EXPECT_EQ(PSSETUPtransDestAndFormatValues(&destination, &format), 1);
        EXPECT_EQ(destination, row.outDestination);
        EXPECT_EQ(format, row.outFormat);
    }
    uint32_t value = 5;
    EXPECT_EQ(PSSETUPtransDestAndFormatValues(&value, nullptr), 0);
    EXPECT_EQ(PSSETUPtransDestAndFormatValues(nullptr, &value), 0);
    EXPECT_EQ(value, 5U);
}

// ---- the page in the surface's place --------------------------------------------------------------------------------

TEST_F(PrintOperations, SizesAreToldAtOnce) {
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

TEST_F(PrintOperations, ThePaperIsTheOneChosen) {
    start({"--print-to", "a.pdf", "--page", "100x60mm", "a.plt"});
    OUTopendevice(child, 2, 1, "a.pdf");
    EXPECT_EQ(heard, "size 3520x1920\n");
    OUTclosedevice(child);
}

TEST_F(PrintOperations, TheEndOfAPaintEndsNoFile) {
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

TEST_F(PrintOperations, TheSurfaceMovesUnderThePage) {
    start({"--print-to", "a.pdf", "a.plt"});
    OUTopendevice(child, 2, 1, "a.pdf");
    Wsetwinpos(child, 0, 0, 200, 100);
    EXPECT_EQ(outputSize(), "7600x11080");
    draw();
    OUTclosedevice(child);
    EXPECT_EQ(outputSize(), "200x100");
}

TEST_F(PrintOperations, ALongNameIsTheChosenFiles) {
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
TEST_F(PrintOperations, ANameNeedNotBeText) {
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

TEST_F(PrintOperations, WhatCannotBeWrittenIsToldAtTheClose) {
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

TEST_F(PrintOperations, AnUnknownFormatIsNoQuestionOfSize) {
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

TEST_F(PrintOperations, AnEmptyPageIsWrittenAndTold) {
    start({"--print-to", "a.pdf", "a.plt"});
    testing::internal::CaptureStderr();
    OUTopendevice(child, 2, 1, "a.pdf");
    OUTreset(child);
    OUTendpaint(child);
    EXPECT_EQ(OUTclosedevice(child), 1);
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "kelhpgl: a.pdf: the drawing is empty, the page is white\n");
    EXPECT_TRUE(exists("a.pdf"));
}

TEST_F(PrintOperations, WithoutAPageNothingIsClosed) {
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

TEST_F(PrintOperations, AChildThatHasGonePrintsNothing) {
    start({"--print-to", "a.pdf", "a.plt"});
    OUTopendevice(child, 2, 1, "a.pdf");
    draw();
    Wdestroychild(child);
    EXPECT_EQ(OUTclosedevice(child), 0);
    EXPECT_FALSE(exists("a.pdf"));
}

}  // namespace
}  // namespace qrvel
