#include "recorder/recorder.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <utility>

#include "recorder/world.h"

namespace recorder {

Script script;
std::string calls;
bool recording = true;
std::function<void(std::string_view line)> drawingSink;
std::vector<WColour> palette;
std::vector<std::string> messageBoxes;
World world;

// ---- values in a line -----------------------------------------------------------------------------------------------

namespace {

constexpr char HEX_DIGITS[] = "0123456789abcdef";

void putHex(std::string& to, char byte) {
    const auto value = static_cast<unsigned char>(byte);
    to += HEX_DIGITS[value >> 4];
    to += HEX_DIGITS[value & 15];
}

// The letter that stands behind a backslash for this character, 0 if it stands for itself or has none.
char escapeLetter(char character) {
    switch (character) {
        case '\n':
            return 'n';
        case '\r':
            return 'r';
        case '\t':
            return 't';
        case '"':
        case '\\':
            return character;
        default:
            return 0;
    }
}

void putQuoted(std::string& to, char character) {
    const auto code = static_cast<unsigned char>(character);
    if (const char letter = escapeLetter(character)) {
        to += '\\';
        to += letter;
    } else if (code < 32 || code == 127) {
        to += "\\x";
        putHex(to, character);
    } else {
        to += character;
    }
}

}  // namespace

void put(std::string& to, std::string_view text) {
    to += " \"";
    for (const char character : text)
        putQuoted(to, character);
    to += '"';
}

void put(std::string& to, const char* text) {
    if (text) {
        put(to, std::string_view(text));
    } else {
        to += " null";
    }
}

void put(std::string& to, char letter) {
    to += ' ';
    to += letter;
}

void put(std::string& to, Hex hex) {
    if (hex.bytes.empty()) return;
    to += ' ';
    for (const char byte : hex.bytes)
        putHex(to, byte);
}

// There are millions of them in a large polygon, so they are written in place.
void put(std::string& to, std::span<const OUTPoint> points) {
    constexpr size_t longest = sizeof " -2147483648 -2147483648" - 1;
    const size_t before = to.size();
    to.resize(before + points.size() * longest);
    char* at = to.data() + before;
    char* end = to.data() + to.size();
    for (const OUTPoint& point : points) {
        *at++ = ' ';
        at = std::to_chars(at, end, point.x).ptr;
        *at++ = ' ';
        at = std::to_chars(at, end, point.y).ptr;
    }
    to.resize(static_cast<size_t>(at - to.data()));
}

void put(std::string& to, const WColour& colour) {
    put(to, colour.red);
    put(to, colour.green);
    put(to, colour.blue);
}

// Without the text, which ACTBARset brings.
void put(std::string& to, const ACTBARRow& row) {
    put(to, row.pulldown);
    put(to, row.position);
    put(to, row.reserved);
    put(to, row.action);
    put(to, row.enabled);
    put(to, row.itemClass);
}

void put(std::string& to, const HELPLKey& key) {
    put(to, key.kind);
    put(to, key.key);
}

void put(std::string& to, const HELPLButton& button) {
    put(to, button.enabled);
    put(to, button.number);
}

void put(std::string& to, const MSG& message) {
    put(to, message.hwnd);
    put(to, message.message);
    put(to, message.wParam);
    put(to, message.lParam);
}

// ---- what several calls do ------------------------------------------------------------------------------------------

WHandle newHandle(std::string_view operation) {
    ++world.lastHandle;
    world.handles.insert_or_assign(std::string(operation), world.lastHandle);
    return world.lastHandle;
}

uint32_t copyCut(std::string_view text, char* buffer, uint32_t size) {
    if (size == 0) return 0;
    const size_t length = text.copy(buffer, size - 1);
    buffer[length] = '\0';
    return static_cast<uint32_t>(length);
}

void queueMessage(WHandle object, uint32_t message) {
    world.state.messagesPending = 1;
    const auto same = [&](const Queued& queued) { return queued.object == object && queued.message == message; };
    if (std::ranges::any_of(world.queue, same)) return;
    const auto place = message == W_MSG_SIZE ? world.queue.begin() : world.queue.end();
    world.queue.insert(place, {object, message});
}

void queuePaint(WHandle child) {
    if (script.deliverPaint) queueMessage(child, W_MSG_PAINT);
}

void report(const char* title, const char* text) {
    messageBoxes.push_back(std::string(title) + ": " + text);
    if (!script.quiet) std::fprintf(stderr, "%s\n", messageBoxes.back().c_str());
}

void endProcess(int status) {
    // Taken out first: a look that itself ends the process must not come back here.
    if (const auto look = std::exchange(script.atExit, nullptr)) look();
    std::fflush(nullptr);
    std::_Exit(status);
}

// ---- the test's side ------------------------------------------------------------------------------------------------

void reset() {
    script = Script{};
    calls.clear();
    recording = true;
    drawingSink = nullptr;
    palette.clear();
    messageBoxes.clear();
    world = World{};
}

WHandle handleOf(const std::string& operation) {
    const auto found = world.handles.find(operation);
    return found == world.handles.end() ? 0 : found->second;
}

void deliver(WHandle object, uint32_t message, uint32_t first, uint32_t second) {
    if (world.windowProcedure) world.windowProcedure(object, message, first, second);
}

bool sendChunk(std::string_view bytes, uint32_t kind) {
    if (!world.channel) return false;
    world.channel(bytes.data(), bytes.size(), kind);
    return true;
}

}  // namespace recorder
