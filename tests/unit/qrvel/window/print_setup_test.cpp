// What the print set-up says to the viewer.
#include "qrvel/window/print_setup.h"

#include "print_fixture.h"

namespace qrvel {
namespace {

using PrintSetUp = PrintFixture;

TEST_F(PrintSetUp, NamesAFile) {
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

TEST_F(PrintSetUp, ANameIsNeverCut) {
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

TEST_F(PrintSetUp, ValuesNeedAPlace) {
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

TEST_F(PrintSetUp, AnOldHandleAnswersNothing) {
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

}  // namespace
}  // namespace qrvel
