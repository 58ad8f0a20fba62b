// The toolkit with a run that writes down what it hears, and a data channel into a callback that does the same.
#pragma once

#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QElapsedTimer>
#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "platform/arguments.h"
#include "qrvel/base/application.h"
#include "qrvel/channel/data_channel.h"
#include "scratch_folder.h"
#include "toolkit/wd.h"
#include "toolkit/wi.h"

namespace qrvel {

class LoggedRun final : public Run {
  public:
    explicit LoggedRun(std::string& log) : log_(log) {}

    bool delivered(bool whole) override {
        log_ += whole ? "delivered\n" : "delivered a part\n";
        return paints;
    }
    void failed() override { log_ += "failed\n"; }
    void waiting(const QByteArray& /*file*/, const std::function<Progress()>& /*progress*/,
                 const std::function<void()>& givenUp) override {
        giveUp = givenUp;
    }

    bool paints = true;
    std::function<void()> giveUp;

  private:
    std::string& log_;
};

class ToolkitFixture : public testing::Test {
  protected:
    ~ToolkitFixture() override {
        if (channel() != nullptr) WDstdclose(channel()->handle);
        if (app_ != 0) Wterminate(app_);
    }

    void start(std::vector<const char*> words = {}) {
        words_ = std::move(words);
        words_.insert(words_.begin(), "kelhpgl");
        setPlatformArguments(static_cast<int>(words_.size()), words_.data());
        app_ = WIinitialise(0, nullptr, 1);
        ASSERT_NE(app_, 0U);
        auto made = std::make_unique<LoggedRun>(log);
        run = made.get();
        application()->run = std::move(made);
    }
    // Chunks go into the log.
    void openChannel() {
        logOfChunks = &log;
        inCallback = nullptr;
        ASSERT_NE(WDstdopen(app_, buffer_, 8, takeChunk, 1), 0U);
        log.clear();
    }
    static DataChannel* channel() { return findDataChannel(); }
    // As the main loop does, until there is nothing to do.
    static void runChannel() {
        for (int turn = 0; turn < 100; ++turn) {
            QCoreApplication::processEvents();
            channel()->run();
        }
    }

    // Whether it comes true in a while, as the event loop runs.
    static bool comes(const std::function<bool()>& isThere) {
        QElapsedTimer timer;
        for (timer.start(); !isThere() && !timer.hasExpired(10000);) {
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents, 10);
        }
        return isThere();
    }

    inline static std::function<void()> inCallback;
    std::string log;
    LoggedRun* run = nullptr;  // the application's
    ScratchFolder folder;

  private:
    static void takeChunk(const char* data, uint64_t length, uint32_t kind) {
        *logOfChunks += "chunk " + std::to_string(kind) + ' ' + std::string(data, length) + '\n';
        if (inCallback) inCallback();
    }

    inline static std::string* logOfChunks = nullptr;
    char buffer_[WD_RECEIVE_BUFFER] = {};
    std::vector<const char*> words_;
    WHandle app_ = 0;
};

}  // namespace qrvel
