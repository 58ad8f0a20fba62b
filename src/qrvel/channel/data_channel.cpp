#include "qrvel/channel/data_channel.h"

#include <unistd.h>

#include <algorithm>
#include <csignal>
#include <utility>

#include "qrvel/base/application.h"
#include "qrvel/base/own_texts.h"
#include "qrvel/channel/neighbour_files.h"

namespace qrvel {

namespace {

using std::chrono::milliseconds;

constexpr milliseconds SILENCE{5000};
constexpr milliseconds BETWEEN_LOOKS_AT_SOCKET{1000};
constexpr milliseconds BETWEEN_LOOKS_AT_FILES{250};

WHandle openChannel = 0;

// What is shown when there is nothing to show.
class EmptyPicture final : public Speaker {
  public:
    explicit EmptyPicture(DataChannel& channel) : channel_(channel) {}

    void takeTurn() override { channel_.transmit(Transmission::endAlone()); }
    void giveUp() override {}
    bool hasNothing() const override { return true; }
    qint64 bytesDone() const override { return 0; }
    qint64 bytesInAll() const override { return 0; }
    void shown() override { channel_.leave(*this); }
    void refused(const QString& /*reason*/) override { channel_.leave(*this); }

  private:
    DataChannel& channel_;
};

}  // namespace

DataChannel* findDataChannel() {
    return handles().find<DataChannel>(openChannel);
}

DataChannel::DataChannel(const Receiver& receiver, milliseconds silence) : receiver_(receiver) {
    std::signal(SIGPIPE, SIG_IGN);  // a host that has gone is no reason to end
    std::signal(SIGXFSZ, SIG_IGN);  // nor is a file that may not grow
    silence_.setSingleShot(true);
    silence_.setInterval(silence);
    QObject::connect(&silence_, &QTimer::timeout, [this] { showEmptyWindow(); });
}

bool DataChannel::start(const Options& options) {
    if (options.watch) {
        watch_ = std::make_unique<FileWatch>(BETWEEN_LOOKS_AT_FILES,
                                             [this](const QByteArray& changed) { openAgain(changed); });
    }
    manner_ = {.asIs = options.asIs, .page = options.page};
    for (const QByteArray& source : options.sources) {
        open(source);
    }
    if (options.pipedIn) add(std::make_unique<FileSource>(*this, STANDARD_INPUT, manner_, true));
    if (options.frames) addHost(STDIN_FILENO, STDOUT_FILENO);
    if (options.channelDescriptor >= 0) addHost(options.channelDescriptor, options.channelDescriptor);
    if (!options.channelName.isEmpty()) {
        server_ = std::make_unique<HostServer>(BETWEEN_LOOKS_AT_SOCKET,
                                               [this](int descriptor) { addHost(descriptor, descriptor); });
        if (!server_->listen(options.channelName)) return false;
    }
    waitForSpeakers();
    return true;
}

void DataChannel::open(const QByteArray& fileName) {
    if (fileName != STANDARD_INPUT) {
        if (watch_) watch_->add(fileName);
        if (std::find(files_.begin(), files_.end(), fileName) == files_.end()) files_.push_back(fileName);
    }
    add(std::make_unique<FileSource>(*this, fileName, manner_));
}

// The user goes on looking at the page that was shown of it, as long as there is such a page.
void DataChannel::openAgain(const QByteArray& fileName) {
    FileManner manner = manner_;
    if (picture_.shown.file == fileName) manner.page = picture_.shown.page.number;
    manner.again = true;
    add(std::make_unique<FileSource>(*this, fileName, manner));
}

void DataChannel::addHost(int input, int output, const HostPatience& patience) {
    auto host = std::make_unique<HostConnection>(*this, input, output, patience);
    if (HostConnection::number() > MOST_HOSTS) {
        host->turnAway("too many hosts");
        return;
    }
    host->listen();
    speakers_.push_back(std::move(host));
}

void DataChannel::add(std::unique_ptr<Speaker> speaker) {
    speakers_.push_back(std::move(speaker));
    ask(*speakers_.back());
}

// ---- turns ----------------------------------------------------------------------------------------------------------

void DataChannel::ask(Speaker& speaker) {
    line_.push_back(&speaker);
    application()->messages.workIsDue();
}

void DataChannel::goOn(Speaker& speaker) {
    line_.push_front(&speaker);
    application()->messages.workIsDue();
}

void DataChannel::giveTurn() {
    state_ = State::Collecting;
    turn_ = line_.front();
    line_.pop_front();
    application()->run->waiting(
        turn_->fileName(), [this] { return progress(); }, [this] { giveUp(); });
    turn_->takeTurn();
}

void DataChannel::endTurn() {
    if (state_ != State::AwaitingPaint) state_ = State::Idle;
    turn_ = nullptr;
    delivery_.reset();
    application()->run->waited();
    givenUp_ = false;
    waitForSpeakers();
    application()->messages.workIsDue();
}

// Transmissions that add to the picture before are bounded together with it.
void DataChannel::transmit(std::unique_ptr<Transmission> transmission) {
    if (transmission->begins() || !receiver_.addsTo) pictureBytes_ = 0;
    pictureBytes_ += static_cast<qint64>(transmission->size());
    if (pictureBytes_ > Spool::mostBytes()) {
        Speaker* speaker = turn_;
        endTurn();
        speaker->refused(Spool::tooMuch());
        return;
    }
    named_.begin(turn_ != nullptr ? turn_->folder() : std::nullopt);
    delivery_ = std::make_unique<Delivery>(receiver_, std::move(transmission));
    state_ = State::Delivering;
    application()->messages.workIsDue();
}

void DataChannel::pass(const Speaker& speaker) {
    if (turn_ == &speaker) endTurn();
}

// Others may leave while the viewer reads a file that is named; it is in the midst of a delivery then.
void DataChannel::leave(Speaker& speaker) {
    if (isHandingOver_) {
        leaving_.push_back(&speaker);
        return;
    }
    pass(speaker);
    std::erase(line_, &speaker);
    if (picture_.of == &speaker) picture_.of = nullptr;
    const auto owned = std::find_if(speakers_.begin(), speakers_.end(), [&](const std::unique_ptr<Speaker>& candidate) {
        return candidate.get() == &speaker;
    });
    if (owned == speakers_.end()) return;
    gone_.push_back(std::move(*owned));
    speakers_.erase(owned);
    waitForSpeakers();
    application()->messages.workIsDue();
}

// When nobody is left, or nobody says anything, the user is to see something all the same.
void DataChannel::waitForSpeakers() {
    if (speakers_.empty()) application()->run->end();
    if (delivered_ || application()->run->prints()) return;
    if (server_ == nullptr && speakers_.empty()) {
        showEmptyWindow();
    } else if (!silence_.isActive()) {
        silence_.start();
    }
}

void DataChannel::showEmptyWindow() {
    if (!delivered_ && state_ == State::Idle && line_.empty()) add(std::make_unique<EmptyPicture>(*this));
}

// ---- what is handed over --------------------------------------------------------------------------------------------

Progress DataChannel::progress() const {
    if (isHandingOver_ && named_.isReading()) return {.done = named_.bytesRead(), .all = named_.bytesInAll()};
    if (delivery_)
        return {.done = static_cast<qint64>(delivery_->done()), .all = static_cast<qint64>(delivery_->size())};
    if (turn_ != nullptr) return {.done = turn_->bytesDone(), .all = turn_->bytesInAll()};
    return {};
}

// Called from the panel, so what the viewer must hear of it waits for the main loop.
void DataChannel::giveUp() {
    if (isHandingOver_) {
        named_.breakOff();
        return;
    }
    givenUp_ = true;
    application()->messages.workIsDue();
}

bool DataChannel::hasWork() const {
    if (!gone_.empty() || givenUp_) return true;
    return state_ == State::Idle ? !line_.empty() : state_ == State::Delivering;
}

void DataChannel::run() {
    gone_.clear();
    switch (state_) {
        case State::Idle:
            if (!line_.empty()) giveTurn();
            break;
        case State::Collecting:
            if (std::exchange(givenUp_, false)) turn_->giveUp();
            break;
        case State::Delivering:
            deliver();
            break;
        case State::AwaitingPaint:
            if (application()->messages.isEmpty() && application()->run->isLost()) pictureIsOut();
            break;
    }
}

void DataChannel::deliver() {
    isHandingOver_ = true;
    givenUp_ ? delivery_->cutShort() : delivery_->run(std::chrono::steady_clock::now() + TURN);
    isHandingOver_ = false;
    if (std::exchange(givenUp_, false)) {
        cut_ = "given up by the user";
    } else {
        cut_ = named_.problem();
    }
    if (delivery_->isOver()) delivery_->hasBegun() ? finish() : settle();
    for (Speaker* speaker : std::exchange(leaving_, {})) {
        leave(*speaker);
    }
}

// The viewer has got the end. What it has drawn by its next paint is the picture.
void DataChannel::finish() {
    delivered_ = true;
    if (picture_.of != nullptr && picture_.of != turn_) picture_.of->replaced();
    picture_ = turn_ != nullptr ? Picture{turn_, shownNext(*turn_)} : Picture{};
    application()->run->shows(picture_.shown);
    delivery_.reset();
    application()->run->waited();
    state_ = State::AwaitingPaint;
    if (!application()->run->delivered(cut_.isEmpty())) pictureIsOut();
}

void DataChannel::pictureIsOut() {
    if (state_ == State::AwaitingPaint) settle();
}

ShownPicture DataChannel::shownNext(const Speaker& speaker) const {
    ShownPicture next{.file = speaker.fileName(), .page = speaker.page(), .isNone = speaker.hasNothing()};
    next.again =
        speaker.readsAgain() && next.file == picture_.shown.file && next.page.number == picture_.shown.page.number;
    return next;
}

void DataChannel::readAgain() {
    if (!pictureName().isEmpty()) openAgain(pictureName());
}

void DataChannel::turnFile(int by) {
    const QByteArray next = neighbourOf(pictureName(), files_, by);
    if (!next.isEmpty()) add(std::make_unique<FileSource>(*this, next, manner_));
}

void DataChannel::turnPage(int by) {
    if (picture_.of != nullptr) picture_.of->turnPage(by);
}

bool DataChannel::sendPage(std::string_view format, std::string_view bytes) {
    if (!takesPages()) return false;
    picture_.of->takePage(format, bytes);
    return true;
}

void DataChannel::settle() {
    state_ = State::Idle;
    Speaker* speaker = turn_;
    const QString cut = std::exchange(cut_, {});
    endTurn();
    if (speaker == nullptr) return;  // it has left meanwhile
    if (cut.isEmpty()) {
        speaker->shown();
    } else {
        speaker->refused(cut);
    }
}

}  // namespace qrvel

using namespace qrvel;

WHandle WDstdopen(WHandle app, char* buffer, uint32_t /*kind*/, WDCallback callback, uint32_t /*flag*/) {
    const auto* found = handles().find<Application>(app, __func__);
    if (found == nullptr || buffer == nullptr || callback == nullptr || findDataChannel() != nullptr) return 0;
    auto* channel = handles().make<DataChannel>(Receiver{.buffer = buffer, .callback = callback}, SILENCE);
    if (channel == nullptr) return 0;
    openChannel = channel->handle;
    if (channel->start(found->options)) return openChannel;
    handles().destroy<DataChannel>(openChannel, __func__);
    return 0;
}

void WDstdclose(WHandle channel) {
    handles().destroy<DataChannel>(channel, __func__);
}
