#include "data_channel.h"

#include <chrono>
#include <cstring>

#include "application.h"
#include "notices.h"
#include "own_texts.h"
#include "picture_file.h"
#include "plot_recognition.h"
#include "transmission_cutter.h"

namespace qrvel {

namespace {

constexpr std::size_t BUFFER_SIZE = 256;  // bytes of the viewer's receive buffer
constexpr auto TURN = std::chrono::milliseconds(8);
constexpr char STANDARD_INPUT[] = "-";
constexpr int PIECES_BETWEEN_LOOKS = 16;  // at the clock

WHandle openChannel = 0;

}  // namespace

DataChannel* findDataChannel() {
    return handles().find<DataChannel>(openChannel);
}

void DataChannel::start(const QByteArrayList& sources, bool pipedIn) {
    waiting_ = sources;
    pipedIn_ = pipedIn;
    if (pipedIn_) waiting_ += STANDARD_INPUT;
    readNext();
}

void DataChannel::readNext() {
    if (!waiting_.isEmpty()) {
        reader_ = std::make_unique<SourceReader>(waiting_.takeFirst(), [this] { sourceRead(); });
    } else if (!delivered_) {
        endIsDue_ = true;
        chunksAreDue();
    }
}

void DataChannel::sourceRead() {
    const std::unique_ptr<SourceReader> read = std::move(reader_);
    if (!read->failure().isEmpty()) {
        showNotice(ownText(OwnText::CannotRead).arg(QString::fromLocal8Bit(read->name()), read->failure()));
        failPicture();
        readNext();
        return;
    }
    std::unique_ptr<Spool> spool = read->takeSpool();
    if (read->name() != STANDARD_INPUT && !holdsDrawing(spool->bytes())) {
        showNotice(ownText(OwnText::NoDrawing).arg(QString::fromLocal8Bit(read->name())));
        spool = std::make_unique<Spool>();  // an empty picture instead of what its bytes would draw by chance
    }
    // A pipe that somebody left on standard input and that carries nothing is no transmission.
    if (pipedIn_ && spool->bytes().empty()) {
        readNext();
        return;
    }
    spool_ = std::move(spool);
    chunksAreDue();
}

void DataChannel::chunksAreDue() {
    application()->state.messagesPending = 1;
    application()->messages.wake();
}

void DataChannel::send(std::string_view bytes, uint32_t kind) {
    if (!bytes.empty()) std::memcpy(buffer_, bytes.data(), bytes.size());
    callback_(buffer_, bytes.size(), kind);
}

// In a colon transmission the begin chunk is its colon, by which the viewer knows to take one off every piece.
void DataChannel::begin() {
    transmitting_ = true;
    rest_ = spool_->bytes();
    withColons_ = isColonTransmission(rest_);
    const std::size_t colon = withColons_ ? 1 : 0;
    send(rest_.substr(0, colon), WD_CHUNK_BEGIN);
    rest_.remove_prefix(colon);
}

void DataChannel::sendPiece() {
    const std::size_t colon = withColons_ ? 1 : 0;
    const std::size_t length = nextPieceLength(rest_, BUFFER_SIZE - colon);
    buffer_[0] = ':';
    std::memcpy(buffer_ + colon, rest_.data(), length);
    rest_.remove_prefix(length);
    callback_(buffer_, colon + length, WD_CHUNK_FURTHER);
}

void DataChannel::finish() {
    send({}, WD_CHUNK_END);
    transmitting_ = false;
    endIsDue_ = false;
    delivered_ = true;
    spool_.reset();
    readNext();
}

void DataChannel::deliver() {
    if (!hasChunks()) return;
    const auto until = std::chrono::steady_clock::now() + TURN;
    if (!transmitting_ && spool_) begin();
    do {
        for (int i = 0; i < PIECES_BETWEEN_LOOKS && !rest_.empty(); ++i) {
            sendPiece();
        }
    } while (!rest_.empty() && std::chrono::steady_clock::now() < until);
    if (rest_.empty()) finish();
}

}  // namespace qrvel

using namespace qrvel;

WHandle WDstdopen(WHandle app, char* buffer, uint32_t /*kind*/, WDCallback callback, uint32_t /*flag*/) {
    const auto* found = handles().find<Application>(app, __func__);
    if (found == nullptr || buffer == nullptr || callback == nullptr || findDataChannel() != nullptr) return 0;
    auto* channel = handles().make<DataChannel>(buffer, callback);
    if (channel == nullptr) return 0;
    openChannel = channel->handle;
    channel->start(found->options.sources, found->options.pipedIn);
    return openChannel;
}

void WDstdclose(WHandle channel) {
    handles().destroy<DataChannel>(channel, __func__);
}
