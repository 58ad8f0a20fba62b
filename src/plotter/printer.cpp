#include "plotter/printer.h"

#include <algorithm>
#include <cmath>

#include "plotter/ascii.h"

namespace plotter {

namespace {

char charAt(std::string_view bytes, std::size_t at) {
    return at < bytes.size() ? bytes[at] : '\0';
}

bool startsPlot(std::string_view bytes, std::size_t at) {
    constexpr std::string_view NAMES[] = {"IN", "DF", "BP", "SP", "PU", "PA", "SC", "OP", "IP", "PS"};
    const std::string_view name = bytes.substr(std::min(at, bytes.size()), 2);
    return std::ranges::find(NAMES, name) != std::end(NAMES);
}

// A plot that somebody forgot to enter: two instructions in a row, or one with what belongs to it.
bool looksLikePlot(std::string_view bytes, std::size_t at) {
    at = skipPadding(bytes, at);
    const char next = charAt(bytes, at + 2);
    return startsPlot(bytes, at) && (next == ';' || isDigit(next) || startsPlot(bytes, at + 2));
}

// Whether ESC%0B or the like stands anywhere.
bool hasEntry(std::string_view bytes) {
    constexpr std::string_view START = "\x1b%";
    for (std::size_t at = bytes.find(START); at != std::string_view::npos; at = bytes.find(START, at + 1)) {
        const std::size_t letter = bytes.find_first_not_of("+-0123456789", at + START.size());
        if (charAt(bytes, letter) == 'B') return true;
    }
    return false;
}

double inches(double value) {
    return std::clamp(value * UNITS_PER_INCH, -MOST_LENGTH, MOST_LENGTH);
}
double decipoints(double value) {
    return inches(value / 720);
}

constexpr double MOST_DOTS_PER_INCH = 9600;

}  // namespace

// clang-format off
const Printer::Row Printer::ROWS[] = {
    // pages
    {'&', 'l', 'A', false, [](Printer& p, const EscapeField& f) { p.setPaper(f.value); }},
    {'&', 'l', 'O', false, [](Printer& p, const EscapeField& f) { p.setLandscape(std::fmod(std::abs(f.value), 2) == 1); }},
    {'&', 'l', 'P', false, [](Printer& p, const EscapeField& f) { p.setPageLength(f.value); }},
    {'&', 'l', 'E', false, [](Printer& p, const EscapeField& f) { p.margin(TOP) = p.lines(f.value); p.home(); }},
    {'&', 'l', 'F', false, [](Printer& p, const EscapeField& f) { p.setTextLength(f.value); }},
    {'&', 'l', 'D', false, [](Printer& p, const EscapeField& f) { p.settings_.lineSpacing = inches(1 / std::max(f.value, 1.0)); }},
    {'&', 'l', 'C', false, [](Printer& p, const EscapeField& f) { p.settings_.lineSpacing = inches(f.value / 48); }},
    {'&', 'l', 'H', false, [](Printer& p, const EscapeField& f) { p.chooseSource(f.value); }},
    {'&', 'l', 'L', false, [](Printer& p, const EscapeField& f) { p.settings_.skipsPerforation = f.value != 0; }},
    {'&', 'f', 'I', false, [](Printer& p, const EscapeField& f) { p.settings_.customPaper.x = decipoints(f.value); }},
    {'&', 'f', 'J', false, [](Printer& p, const EscapeField& f) { p.settings_.customPaper.y = decipoints(f.value); }},
    // the cursor
    {'*', 'p', 'X', false, [](Printer& p, const EscapeField& f) { p.moveX(f, p.cursorUnits(f.value)); }},
    {'*', 'p', 'Y', false, [](Printer& p, const EscapeField& f) { p.moveY(f, p.cursorUnits(f.value), 0); }},
    {'&', 'a', 'H', false, [](Printer& p, const EscapeField& f) { p.moveX(f, decipoints(f.value)); }},
    {'&', 'a', 'V', false, [](Printer& p, const EscapeField& f) { p.moveY(f, decipoints(f.value), 0); }},
    {'&', 'a', 'C', false, [](Printer& p, const EscapeField& f) { p.moveX(f, p.columns(f.value)); }},
    {'&', 'a', 'R', false, [](Printer& p, const EscapeField& f) { p.moveY(f, p.lines(f.value), p.lines(FIRST_LINE)); }},
    {'&', 'a', 'L', false, [](Printer& p, const EscapeField& f) { p.setLeftMargin(f.value); }},
    {'&', 'a', 'M', false, [](Printer& p, const EscapeField& f) { p.setRightMargin(f.value); }},
    {'&', 'a', 'P', false, [](Printer& p, const EscapeField& f) { p.setDirection(f.value); }},
    {'&', 'u', 'D', false, [](Printer& p, const EscapeField& f) { p.settings_.unitsPerInch = std::max(f.value, 1.0); }},
    {'&', 'f', 'S', false, [](Printer& p, const EscapeField& f) { p.pushCursor(f.value == 0); }},
    // the picture frame
    {'*', 'c', 'X', false, [](Printer& p, const EscapeField& f) { p.changeFrame(p.settings_.frame.width, decipoints(f.value)); }},
    {'*', 'c', 'Y', false, [](Printer& p, const EscapeField& f) { p.changeFrame(p.settings_.frame.height, decipoints(f.value)); }},
    {'*', 'c', 'K', false, [](Printer& p, const EscapeField& f) { p.changeFrame(p.settings_.frame.plotWidth, inches(f.value)); }},
    {'*', 'c', 'L', false, [](Printer& p, const EscapeField& f) { p.changeFrame(p.settings_.frame.plotHeight, inches(f.value)); }},
    {'*', 'c', 'T', false, [](Printer& p, const EscapeField& f) { p.anchorFrame(f.value); }},
    // captions
    {'&', 'k', 'H', false, [](Printer& p, const EscapeField& f) { p.settings_.columnWidth = inches(f.value / 120); }},
    {'&', 'k', 'G', false, [](Printer& p, const EscapeField& f) { p.settings_.lineEnds = static_cast<int>(std::clamp(f.value, 0.0, 3.0)); }},
    {'&', 'k', 'S', false, [](Printer& p, const EscapeField& f) { p.choosePitch(f.value == 2 ? 16.67 : f.value == 4 ? 12 : 10); }},
    {'&', 'd', 'D', false, [](Printer& p, const EscapeField&) { p.settings_.underlines = true; }},
    {'&', 'd', '@', false, [](Printer& p, const EscapeField&) { p.settings_.underlines = false; }},
    {'&', 'p', 'X', false, [](Printer& p, const EscapeField& f) { p.drawText(f.data); }},
    // rules
    {'*', 'c', 'A', false, [](Printer& p, const EscapeField& f) { p.settings_.rule.x = p.cursorUnits(f.value); }},
    {'*', 'c', 'B', false, [](Printer& p, const EscapeField& f) { p.settings_.rule.y = p.cursorUnits(f.value); }},
    {'*', 'c', 'H', false, [](Printer& p, const EscapeField& f) { p.settings_.rule.x = decipoints(f.value); }},
    {'*', 'c', 'V', false, [](Printer& p, const EscapeField& f) { p.settings_.rule.y = decipoints(f.value); }},
    {'*', 'c', 'G', false, [](Printer& p, const EscapeField& f) { p.settings_.pattern = f.value; }},
    {'*', 'c', 'P', false, [](Printer& p, const EscapeField& f) { p.fillRule(f.value); }},
    // raster
    {'*', 't', 'R', true,  [](Printer& p, const EscapeField& f) { p.settings_.resolution = std::clamp(f.value, 1.0, MOST_DOTS_PER_INCH); }},
    {'*', 't', 'H', true,  [](Printer& p, const EscapeField& f) { p.settings_.destination.x = decipoints(f.value); }},
    {'*', 't', 'V', true,  [](Printer& p, const EscapeField& f) { p.settings_.destination.y = decipoints(f.value); }},
    {'*', 'r', 'S', true,  [](Printer& p, const EscapeField& f) { p.settings_.source.x = std::abs(f.value); }},
    {'*', 'r', 'T', true,  [](Printer& p, const EscapeField& f) { p.settings_.source.y = std::abs(f.value); }},
    {'*', 'r', 'A', true,  [](Printer& p, const EscapeField& f) { p.openRaster(f.value == 1 || f.value == 3, f.value >= 2); }},
    {'*', 'r', 'B', true,  [](Printer& p, const EscapeField&) { p.closeRaster(); }},
    {'*', 'r', 'C', true,  [](Printer& p, const EscapeField&) { p.resetRaster(); }},
    {'*', 'r', 'F', true,  [](Printer& p, const EscapeField& f) { p.settings_.alongPaper = f.value == 3; }},
    {'*', 'r', 'U', true,  [](Printer& p, const EscapeField& f) { p.simpleColour(f.value); }},
    {'*', 'b', 'M', true,  [](Printer& p, const EscapeField& f) { p.settings_.compression = static_cast<int>(std::clamp(f.value, 0.0, 99.0)); }},
    {'*', 'b', 'V', true,  [](Printer& p, const EscapeField& f) { p.addRasterRow(f); }},
    {'*', 'b', 'W', true,  [](Printer& p, const EscapeField& f) { p.addRasterRow(f); }},
    {'*', 'b', 'Y', true,  [](Printer& p, const EscapeField& f) { p.skipRasterRows(f.value); }},
    {'*', 'b', 'X', true,  [](Printer& p, const EscapeField& f) { p.raster_.setLeft(f.value); }},
    // colours
    {'*', 'v', 'S', true,  [](Printer& p, const EscapeField& f) { p.settings_.foreground = static_cast<int32_t>(std::clamp(f.value, 0.0, 32767.0)); }},
    {'*', 'v', 'W', true,  [](Printer& p, const EscapeField& f) { p.configureImage(f.data); }},
    {'*', 'v', 'A', true,  [](Printer& p, const EscapeField& f) { p.settings_.primaries[0] = f.value; }},
    {'*', 'v', 'B', true,  [](Printer& p, const EscapeField& f) { p.settings_.primaries[1] = f.value; }},
    {'*', 'v', 'C', true,  [](Printer& p, const EscapeField& f) { p.settings_.primaries[2] = f.value; }},
    {'*', 'v', 'I', true,  [](Printer& p, const EscapeField& f) { p.assignColour(f.value); }},
    {'*', 'p', 'P', true,  [](Printer& p, const EscapeField& f) { p.storePalette(f.value == 0); }},
    // macros
    {'&', 'f', 'Y', false, [](Printer& p, const EscapeField& f) { p.macro_ = static_cast<int>(std::clamp(f.value, 0.0, 32767.0)); }},
    {'&', 'f', 'X', false, [](Printer& p, const EscapeField& f) { p.macroControl(f.value); }},
};
// clang-format on

Printer::Printer(Machine& machine, Runner runner)
    : machine_(machine),
      runner_(std::move(runner)),
      raster_([this](const Area& area, const Ink& ink) { machine_.drawOnPaper(area, ink); }, machine.report()) {
    takePage();
}

// ---- which language ----

void Printer::begin(std::string_view bytes) {
    raster_.setFileSize(bytes.size());
    entersPlotter_ = hasEntry(bytes);
    chooseLanguage(bytes, 0);
    home_ = language_;
    isPrinterPage_ = language_ == Language::Printer;
}

void Printer::chooseLanguage(std::string_view bytes, std::size_t offset) {
    const std::size_t first = skipPadding(bytes, offset);
    const bool isEscape = charAt(bytes, first) == ESCAPE && charAt(bytes, first + 1) != '.';
    const bool isOver = first == bytes.size() && sawEnvelope_;
    language_ = isEscape || isOver || startsJobLine(bytes, first) ? Language::Printer : Language::Plotter;
}

// Behind the universal exit: what the job lines say, or what follows them.
std::size_t Printer::enterJob(std::string_view bytes, std::size_t offset) {
    sawEnvelope_ = true;
    job_.language = JobLanguage::Unsaid;
    offset = readJobLines(bytes, offset, job_);
    if (job_.language == JobLanguage::Unsaid) {
        chooseLanguage(bytes, offset);
    } else {
        language_ = job_.language == JobLanguage::Plotter ? Language::Plotter : Language::Printer;
    }
    home_ = language_;
    isPrinterPage_ = language_ == Language::Printer;
    if (language_ == Language::Plotter) {
        machine_.noteHpgl2();
        machine_.setFrame({});
    }
    takePage();
    return offset;
}

void Printer::enterPlotter(double how) {
    constexpr double LARGEST = 3;
    if (language_ == Language::Plotter || how > LARGEST) return;
    closeRaster();
    sawEnvelope_ = true;
    language_ = Language::Plotter;
    machine_.noteHpgl2();
    isPrinterPage_ = isPrinterPage_ && how >= 0;
    Frame frame = isPrinterPage_ ? settings_.frame.onPaper(settings_.page) : Frame{};
    frame.clips = choosesPage_;
    machine_.setFrame(frame);
    if (how >= 0 && std::fmod(std::trunc(how), 2) == 1) {
        const Affine back = inverse(machine_.state.coordinates.toPaper());
        machine_.state.position = machine_.state.carriage = back(settings_.page.toPaper(settings_.cursor));
    }
}

void Printer::leavePlotter(double how) {
    language_ = Language::Printer;
    sawEnvelope_ = true;
    if (!isPrinterPage_) takeSheet();
    if (std::fmod(std::trunc(std::abs(how)), 2) == 1) {
        const Point pen = machine_.state.coordinates.toPaper()(machine_.state.position);
        settings_.cursor = settings_.page.fromPaper(pen);
    }
}

void Printer::resetAll() {
    closeRaster();
    endPage();
    settings_ = {};
    cursors_.clear();
    palettes_.clear();
    macros_.clear();
    overlay_ = -1;
    isRecording_ = false;
    takePage();
    machine_.switchOn();
    language_ = home_;
    isPrinterPage_ = home_ == Language::Printer;
}

// ---- the stream ----

std::size_t Printer::step(std::string_view bytes, std::size_t offset) {
    if (isRecording_) return recordMacro(bytes, offset);
    if (charAt(bytes, offset) == ESCAPE) {
        const std::size_t end =
            language_ == Language::Plotter ? stepInPlotter(bytes, offset) : stepEscape(bytes, offset);
        if (language_ == Language::Printer && !entersPlotter_ && depth_ == 0 && looksLikePlot(bytes, end)) {
            enterPlotter(0);
        }
        return end;
    }
    return language_ == Language::Plotter ? offset + 1 : stepText(bytes, offset);
}

void Printer::finish() {
    closeRaster();
    if (isRecording_) machine_.report().endIn(Ending::InBinary);
}

// In the middle of a plot only the ways out of it count; anything else a plotter drops, and what it carries with it.
// Off and on again: another job, for which somebody has put in another sheet.
void Printer::switchDevice(char letter) {
    const bool on = letter == 'Y' || letter == '(';
    const bool off = letter == 'Z' || letter == ')';
    if (on && isOff_) {
        machine_.endPage();
        machine_.switchOn();
    }
    isOff_ = off || (isOff_ && !on);
}

std::size_t Printer::stepInPlotter(std::string_view bytes, std::size_t offset) {
    EscapeReader reader(bytes, offset);
    if (reader.kind() == EscapeReader::Kind::TwoCharacters && reader.family() == 'E') return stepEscape(bytes, offset);
    if (reader.is('%', 0)) return stepEscape(bytes, offset);
    if (reader.kind() == EscapeReader::Kind::DeviceControl) switchDevice(reader.family());
    EscapeField field;
    while (reader.next(field)) {
        if (reader.is('*', 'b') && !field.data.empty()) machine_.report().passOver("ESC*b#W inside of a plot");
    }
    return std::max(reader.end(), offset + 1);
}

std::size_t Printer::stepEscape(std::string_view bytes, std::size_t offset) {
    EscapeReader reader(bytes, offset);
    if (reader.kind() == EscapeReader::Kind::TwoCharacters) {
        twoCharacters(reader.family());
        const bool isReset = reader.family() == 'E';
        return isReset && startsJobLine(bytes, reader.end()) ? enterJob(bytes, reader.end()) : reader.end();
    }
    EscapeField field;
    while (reader.next(field)) {
        if (field.isCut) machine_.report().endIn(Ending::InBinary);
        if (reader.is('%', 0) && field.letter == 'X') {
            home_ = Language::Printer;
            resetAll();
            return enterJob(bytes, reader.end());
        }
        carryOut(reader, field);
        if (isRecording_) {
            recordedFrom_ = reader.end();
            break;
        }
    }
    // Engravers name their own compression in letters.
    constexpr std::string_view ENGRAVERS_METHOD = "LT";
    const bool named = isEngraver_ && reader.is('*', 'b') && bytes.substr(reader.end()).starts_with(ENGRAVERS_METHOD);
    return std::max(reader.end(), offset + 1) + (named ? ENGRAVERS_METHOD.size() : 0);
}

void Printer::twoCharacters(char second) {
    switch (second) {
        case 'E':
            resetAll();
            sawEnvelope_ = true;
            break;
        case '9':
            margin(LEFT) = margin(RIGHT) = 0;
            break;
        case '=':
            closeRaster();
            feedLine(0.5);
            break;
        default:
            break;
    }
}

void Printer::switchLanguage(const EscapeField& field) {
    if (field.letter == 'B') {
        enterPlotter(field.value);
    } else if (field.letter == 'A' && language_ == Language::Plotter) {
        leavePlotter(field.value);
    }
}

void Printer::carryOut(const EscapeReader& reader, const EscapeField& field) {
    if (reader.is('%', 0)) {
        switchLanguage(field);
        return;
    }
    if (reader.family() == '(' || reader.family() == ')') {
        closeRaster();
        chooseFont(settings_.fonts[reader.family() == '(' ? 0 : 1], reader.group(), field);
        return;
    }
    isEngraver_ = isEngraver_ || reader.is('&', 'y') || reader.is('&', 'z');
    const Row* const row = std::ranges::find_if(
        ROWS, [&](const Row& known) { return known.letter == field.letter && reader.is(known.family, known.group); });
    if (row == std::end(ROWS)) return;
    if (!row->keepsRaster) closeRaster();
    row->action(*this, field);
}

std::size_t Printer::stepText(std::string_view bytes, std::size_t offset) {
    const bool beginsLine = offset == 0 || PADDING.find(bytes[offset - 1]) != std::string_view::npos;
    if (beginsLine && bytes[offset] == '@' && startsJobLine(bytes, offset)) return enterJob(bytes, offset);
    if (!isPrinterPage_) return stepBetweenPlots(bytes, offset);
    constexpr char LAST_CONTROL = 0x1f;
    std::size_t end = offset;
    while (end < bytes.size() && static_cast<unsigned char>(bytes[end]) > LAST_CONTROL) {
        ++end;
    }
    closeRaster();
    if (end == offset) {
        control(bytes[offset]);
        return offset + 1;
    }
    drawText(bytes.substr(offset, end - offset));
    return end;
}

// A plotter has no fonts: around its raster stand line ends, or nothing.
std::size_t Printer::stepBetweenPlots(std::string_view bytes, std::size_t offset) {
    if (bytes[offset] == FORM_FEED) endPage();
    return offset + 1;
}

}  // namespace plotter
