// Printing through the toolkit's operations, called as the viewer calls them.
#pragma once

#include <gtest/gtest.h>

#include <QGuiApplication>
#include <algorithm>
#include <cstring>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "platform/arguments.h"
#include "qrvel/base/application.h"
#include "qrvel/run/window_run.h"
#include "scratch_folder.h"
#include "toolkit/cont.h"
#include "toolkit/out.h"
#include "toolkit/pssetup.h"
#include "toolkit/shl.h"
#include "toolkit/w.h"
#include "toolkit/wclr.h"
#include "toolkit/wi.h"

namespace qrvel {
// What the window procedure hears, with the size that the child's output has then.
inline std::string heard;
inline WHandle drawingChild = 0;

inline std::string outputSize() {
    int32_t width = 0;
    int32_t height = 0;
    OUTquerysize(drawingChild, &width, &height);
    return std::to_string(width) + 'x' + std::to_string(height);
}

inline void hear(WHandle /*object*/, uint32_t message, uint32_t /*first*/, uint32_t /*second*/) {
    heard += (message == W_MSG_SIZE ? "size " + outputSize() : "message " + std::to_string(message)) + '\n';
}

class PrintFixture : public testing::Test {
  protected:
    ~PrintFixture() override {
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

}  // namespace qrvel
