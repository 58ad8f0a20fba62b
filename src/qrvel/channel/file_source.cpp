#include "file_source.h"

#include <utility>

#include "conversion.h"
#include "data_channel.h"
#include "notices.h"
#include "own_texts.h"
#include "picture_file.h"
#include "plot_recognition.h"

namespace qrvel {

FileSource::FileSource(DataChannel& channel, QByteArray name, bool mayBeEmpty)
    : channel_(channel), name_(std::move(name)), mayBeEmpty_(mayBeEmpty) {}

void FileSource::takeTurn() {
    if (Conversion* running = conversion()) running->reading(name_);
    reader_ = std::make_unique<SourceReader>(name_, [this] { isRead(); });
}

void FileSource::isRead() {
    const std::unique_ptr<SourceReader> read = std::move(reader_);
    if (!read->failure().isEmpty()) {
        showNotice(ownText(OwnText::CannotRead).arg(QString::fromLocal8Bit(name_), read->failure()));
        failPicture();
        if (Conversion* running = conversion()) running->fail();
        channel_.leave(*this);
        return;
    }
    std::unique_ptr<Spool> spool = read->takeSpool();
    if (name_ != STANDARD_INPUT && !holdsDrawing(spool->bytes())) {
        showNotice(ownText(OwnText::NoDrawing).arg(QString::fromLocal8Bit(name_)));
        spool = std::make_unique<Spool>();  // an empty picture instead of what its bytes would draw by chance
    }
    Conversion* running = conversion();
    const bool nothing = mayBeEmpty_ && spool->bytes().empty();
    if (nothing || (running != nullptr && !running->begin(name_))) {
        channel_.leave(*this);
    } else {
        channel_.transmit(std::make_unique<Transmission>(std::move(spool), Transmission::Form::Plain));
    }
}

void FileSource::giveUp() {
    reader_.reset();
    channel_.leave(*this);
}

void FileSource::shown() {
    channel_.leave(*this);
}

void FileSource::refused(const QString& reason) {
    sayLine(QString::fromLocal8Bit(name_) + ": " + reason);
    if (Conversion* running = conversion()) running->fail();
    channel_.leave(*this);
}

}  // namespace qrvel
