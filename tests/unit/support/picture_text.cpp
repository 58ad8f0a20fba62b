#include "picture_text.h"

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>

#include "hpgldump_sections.h"
#include "recorder/recorder.h"
#include "render/interpreter.h"
#include "render/primitives.h"
#include "shell/drawing_window.h"
#include "shell/intake.h"
#include "shell/picture_setup.h"
#include "shell/shell_state.h"
#include "trace/trace.h"
#include "trace/trace_slots.h"

namespace {

constexpr WHandle MAIN_OBJECT = 5;
constexpr WHandle DRAWING_CHILD = 7;

template <class Print>
std::string printed(Print print) {
    char* text = nullptr;
    size_t size = 0;
    FILE* stream = open_memstream(&text, &size);
    print(stream);
    std::fclose(stream);
    std::string result(text, size);
    std::free(text);  // NOLINT: the stream's own
    return result;
}

void forgetPicture() {
    HPGLdestroyParser(TheShell.parser);
    TheShell.parser = nullptr;
    if (TheShell.zoom != nullptr) HPGLdestroyZoom(TheShell.zoom);
    TheShell.zoom = nullptr;
}

void forgetViewer() {
    forgetPicture();
    closeTolk();  // and the file that was read last
    HPGLfreeDeviceArrays(&TheShell.display);
    std::free(TheShell.display.Palette);
    TheShell = {};
    TRCForgetEverything();
    recorder::reset();
}

template <class Use>
void forEachBlock(Use use) {
    void* data = nullptr;
    if (!HPGLgotoFirst(TheShell.parser->blocks)) return;
    for (bool more = HPGLgetActualListData(TheShell.parser->blocks, &data, nullptr, nullptr); more;
         more = HPGLgetNextListData(TheShell.parser->blocks, &data, nullptr, nullptr)) {
        use(*static_cast<const CBlock*>(data));
    }
}

// A device pixel is a plotter unit, and (0, 0) the same point on both sides.
void mapPlainly() {
    TheShell.display.DSize = TheShell.display.USize = 1;
    TheShell.display.MaxX = TheShell.display.MaxY = 0;
    TheShell.display.DSizeX = TheShell.display.DSizeY = -HPGL_MAPPING_OFFSET;
}

std::string readBytes(const std::string& name) {
    std::ifstream file(name, std::ios::binary);
    std::stringstream bytes;
    bytes << file.rdbuf();
    return bytes.str();
}

}  // namespace

FreshViewer::FreshViewer() {
    forgetViewer();
    TheShell.display.Window = DRAWING_CHILD;
    TheShell.object = MAIN_OBJECT;
    TheShell.display.FontOwner = MAIN_OBJECT;
    TheShell.display.Application = 1;
}

FreshViewer::~FreshViewer() {
    forgetViewer();
}

TraceCapture::TraceCapture(int level) {
    std::string pattern = (std::filesystem::temp_directory_path() / "traceXXXXXX").string();
    folder_ = mkdtemp(pattern.data());
    file_ = folder_ + "/trace";
    TRCForgetEverything();
    recorder::script.environment["DGTRACE"] = std::to_string(level);
    TRCOpenViewer(file_.c_str());
    headerSize_ = readBytes(file_).size();
}

TraceCapture::~TraceCapture() {
    TRCSlot* slot = TRCFindSlot(HPGLTraceHandle);
    if (slot != nullptr && slot->file > 0) _lclose(slot->file);
    TRCForgetEverything();
    std::filesystem::remove_all(folder_);
}

std::string TraceCapture::text() const {
    std::string text = readBytes(file_).substr(headerSize_);
    std::erase(text, '\r');
    return text;
}

std::string times(int n, std::string_view text) {
    std::string result;
    for (int i = 0; i < n; ++i) {
        result += text;
    }
    return result;
}

int parseChunks(const std::vector<std::string_view>& chunks) {
    forgetPicture();
    TheShell.parser = HPGLinitParser();
    int result = 0;
    for (const std::string_view chunk : chunks) {
        result = HPGLparseCode(TheShell.parser, chunk.data(), static_cast<int64_t>(chunk.size()));
    }
    return result;
}

int parseText(std::string_view text) {
    return parseChunks({text});
}

std::string recordsText() {
    return printed(dumpRecords);
}
std::string hexText() {
    return printed(dumpHex);
}
std::string pictureText() {
    return printed(dumpPicture);
}

std::string shortRecords(std::string_view text) {
    parseText(text);
    std::istringstream lines(recordsText());
    std::string result;
    for (std::string line; std::getline(lines, line);) {
        std::istringstream words(line);
        std::string kind, block, offset, id, rest;
        words >> kind >> block >> offset >> id >> std::ws;
        std::getline(words, rest);
        result += rest + "\n";
    }
    return result;
}

std::string drawingCalls(std::string_view text, int width, int height, int rotationSign) {
    std::string calls;
    parseText(text);
    recorder::script.width = width;
    recorder::script.height = height;
    HPGLsetupPicture(TheShell.parser, &TheShell.display, rotationSign);
    const HPGLGlobal& global = *TheShell.parser->global;
    HPGLqueryDeviceSize(&TheShell.display, &TheShell.display.DSizeX, &TheShell.display.DSizeY);
    HPGLsetScaling(&TheShell.display, global.MinX, global.MinY, global.MaxX, global.MaxY);
    recorder::drawingSink = [&](std::string_view line) { calls += line; };
    HPGLinterpretCompactCode(TheShell.parser, &TheShell.display, rotationSign);
    recorder::drawingSink = nullptr;
    return calls;
}

std::string codeOf(std::string_view text) {
    std::string code;
    parseText(text);
    forEachBlock([&](const CBlock& block) { code.append(block.Data, block.Data + block.Occupied); });
    return code;
}

void setBlocks(const std::vector<std::string>& blocks) {
    forgetPicture();
    TheShell.parser = HPGLinitParser();
    for (const std::string& bytes : blocks) {
        CBlock* block = GetNewCBlock(TheShell.parser->blocks);
        bytes.copy(reinterpret_cast<char*>(block->Data), bytes.size());
        HPGLCBlockAdvance(block, static_cast<int32_t>(bytes.size()));
        HPGLCBlockClearCommand(block);
    }
}

std::string plainPass(int rotationSign) {
    constexpr std::string_view FIRST = "OUTlinecolour 1\nOUTfillcolour 1\n";
    std::string calls;
    mapPlainly();
    for (int32_t pen = 0; pen < HPGL_PENS; ++pen) {
        TheShell.parser->PStatus[pen].paletteIndex = pen;
    }
    recorder::drawingSink = [&](std::string_view line) { calls += line; };
    HPGLinterpretCompactCode(TheShell.parser, &TheShell.display, rotationSign);
    recorder::drawingSink = nullptr;
    return calls.starts_with(FIRST) ? calls.substr(FIRST.size()) : "no first colour: " + calls;
}

std::string plainCalls(std::string_view text, int rotationSign) {
    parseText(text);
    return plainPass(rotationSign);
}

std::string traceOf(int level, const std::function<void()>& action) {
    const TraceCapture trace(level);
    action();
    return trace.text();
}
