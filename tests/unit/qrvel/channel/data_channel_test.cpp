// Whose turn it is, and what the viewer gets of it.
#include "qrvel/channel/data_channel.h"

#include <sys/socket.h>
#include <unistd.h>

#include <chrono>
#include <thread>

#include "toolkit_fixture.h"

namespace qrvel {
namespace {

class FakeSpeaker final : public Speaker {
  public:
    FakeSpeaker(std::string name, std::string& log) : name_(std::move(name)), log_(log) {}

    void takeTurn() override {
        log_ += name_ + " has the turn\n";
        if (!text.empty()) transmit();
    }
    void transmit() {
        auto spool = std::make_unique<Spool>();
        spool->append(text.data(), static_cast<qint64>(text.size()));
        spool->finish();
        findDataChannel()->transmit(std::make_unique<Transmission>(std::move(spool), Transmission::Form::Plain));
    }
    void giveUp() override {
        log_ += name_ + " gives up\n";
        findDataChannel()->pass(*this);
    }
    qint64 bytesDone() const override { return 0; }
    qint64 bytesInAll() const override { return 0; }
    void shown() override { log_ += name_ + " is shown\n"; }
    void refused(const QString& reason) override { log_ += name_ + " is refused: " + reason.toStdString() + '\n'; }
    void replaced() override { log_ += name_ + " is replaced\n"; }

    std::string text = "IN;";

  private:
    std::string name_;
    std::string& log_;
};

class Turns : public ToolkitFixture {
  protected:
    // The empty picture that there is without any source is out.
    void open() {
        start();
        openChannel();
        runChannel();
        channel()->pictureIsOut();
        log.clear();
    }

    FakeSpeaker a{"a", log};
    FakeSpeaker b{"b", log};
};

TEST_F(Turns, WithoutAnySourceThereIsAnEndChunkAlone) {
    start();
    openChannel();
    runChannel();
    EXPECT_EQ(log, "chunk 2 \ndelivered\n");
    EXPECT_TRUE(channel()->isShowing());
    channel()->pictureIsOut();
    EXPECT_FALSE(channel()->isShowing());
    EXPECT_TRUE(channel()->hasDelivered());
}

TEST_F(Turns, TheNextWaitsForThePaint) {
    open();
    channel()->ask(a);
    channel()->ask(b);
    runChannel();
    EXPECT_EQ(log, "a has the turn\nchunk 1 \nchunk 0 IN;\nchunk 2 \ndelivered\n");
    log.clear();
    channel()->pictureIsOut();
    EXPECT_EQ(log, "a is shown\n");
    log.clear();
    runChannel();
    EXPECT_EQ(log, "b has the turn\nchunk 1 \nchunk 0 IN;\nchunk 2 \na is replaced\ndelivered\n");
}

TEST_F(Turns, WhatNobodyPaintsIsOutAtOnce) {
    open();
    run->paints = false;
    channel()->ask(a);
    runChannel();
    EXPECT_EQ(log, "a has the turn\nchunk 1 \nchunk 0 IN;\nchunk 2 \ndelivered\na is shown\n");
}

TEST_F(Turns, GivingUpReachesWhoeverCollects) {
    open();
    a.text.clear();
    channel()->ask(a);
    runChannel();
    run->giveUp();
    EXPECT_EQ(log, "a has the turn\n");  // not from inside the panel
    EXPECT_TRUE(channel()->hasWork());
    runChannel();
    EXPECT_EQ(log, "a has the turn\na gives up\n");
    EXPECT_FALSE(channel()->hasWork());
}

TEST_F(Turns, GivingUpADeliveryEndsItWithAnEndChunk) {
    open();
    a.text.assign(100'000, ';');
    inCallback = [] { std::this_thread::sleep_for(TURN); };
    channel()->ask(a);
    channel()->run();
    channel()->run();
    ASSERT_TRUE(channel()->isTransmitting());
    run->giveUp();
    runChannel();
    EXPECT_TRUE(log.ends_with("chunk 2 \ndelivered a part\n"));
    channel()->pictureIsOut();
    EXPECT_TRUE(log.ends_with("a is refused: given up by the user\n"));
    EXPECT_LT(log.size(), a.text.size());
}

// One that hosts may find, and to which none has said anything.
TEST_F(ToolkitFixture, AChannelOnWhichAllAreSilentHasAnEmptyPicture) {
    start();
    int ends[2] = {};
    ASSERT_EQ(socketpair(AF_UNIX, SOCK_STREAM, 0, ends), 0);
    char buffer[WD_RECEIVE_BUFFER] = {};
    DataChannel silent({.buffer = buffer, .callback = nullptr}, std::chrono::milliseconds(5));
    silent.addHost(ends[0], ends[0]);
    EXPECT_TRUE(silent.start({}));
    EXPECT_FALSE(silent.hasWork());
    EXPECT_TRUE(comes([&] { return silent.hasWork(); }));
    close(ends[1]);
}

TEST_F(Turns, WhoeverLeavesBeforeThePaintHearsNothing) {
    open();
    channel()->ask(a);
    channel()->ask(b);
    runChannel();
    channel()->leave(a);
    log.clear();
    runChannel();
    EXPECT_EQ(log, "");  // its picture is still to be painted
    channel()->pictureIsOut();
    runChannel();
    EXPECT_TRUE(log.starts_with("b has the turn\n")) << log;
}

TEST_F(Turns, LeavingInsideTheCallbackWaitsForItsEnd) {
    open();
    channel()->ask(a);
    inCallback = [this] { channel()->leave(b); };
    channel()->ask(b);
    runChannel();
    channel()->pictureIsOut();
    runChannel();
    EXPECT_EQ(log.find("b has the turn"), std::string::npos);
    EXPECT_NE(log.find("a is shown"), std::string::npos);
}

}  // namespace
}  // namespace qrvel
