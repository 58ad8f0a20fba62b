// The OUT operations: each finds its child's device, checks what it was handed, and lets the device draw.
#include <QCoreApplication>
#include <span>

#include "qrvel/base/application.h"
#include "qrvel/base/handles.h"
#include "qrvel/base/toolkit_trace.h"
#include "qrvel/output/child.h"
#include "qrvel/output/fonts.h"
#include "toolkit/out.h"

namespace qrvel {

WHandle Child::messageClass() const {
    const auto* inside = handles().find<Container>(container);
    return inside != nullptr ? inside->windowClass : 0;
}

namespace {

// The output of a child; null, with a line in the trace, when there is none.
OutputDevice* outputOf(WHandle child, const char* operation) {
    const auto* found = handles().find<Child>(child, operation);
    if (found == nullptr) return nullptr;
    OutputDevice* output = found->output();
    if (output == nullptr) [[unlikely]] {
        traceLine("%s: %08X has no device\n", operation, child);
    }
    return output;
}

PixelBox boxOf(int32_t x, int32_t y, int32_t width, int32_t height) {
    return PixelBox{.x = x, .y = y, .width = width, .height = height}.normalised();
}

void drawThinPolyline(OutputDevice& output, std::span<const OUTPoint> points) {
    OUTPoint from = points.front();
    for (const OUTPoint to : points.size() > 1 ? points.subspan(1) : points) {
        output.line(from, to);
        from = to;
    }
}

// The number of points of all polygons; -1 when a count is negative.
int64_t sumOf(std::span<const int32_t> counts) {
    int64_t sum = 0;
    for (const int32_t count : counts) {
        if (count < 0) return -1;
        sum += count;
    }
    return sum;
}

// Answers whether somebody will see what is drawn further.
bool refreshWidget(QWidget* widget, ScreenSurface::Refresh refresh) {
    if (widget == nullptr) return true;
    if (refresh == ScreenSurface::Refresh::Soon) {
        widget->update();
        return true;
    }
    widget->repaint();
    // A window that has just been shown, or uncovered, gets its other parts too, and the end may be asked for. What the
    // user does to the picture waits.
    QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents);
    return application() == nullptr || application()->state.quit == 0;
}

}  // namespace

}  // namespace qrvel

using namespace qrvel;

int32_t OUTstdcreate(WHandle child, WHandle /*owner*/, uint32_t /*colours*/, uint32_t /*flags*/,
                     WHandle /*colourTable*/) {
    auto* found = handles().find<Child>(child, __func__);
    if (found == nullptr || found->widget == nullptr) return 0;
    // The table handed over is always the one made last, which is what a device takes by itself.
    found->surface = std::make_unique<ScreenSurface>(
        [widget = found->widget](ScreenSurface::Refresh refresh) { return refreshWidget(widget, refresh); });
    found->view()->setSurface(found->surface.get());
    found->view()->fitSurface();
    return 1;
}

void OUTdestroy(WHandle child) {
    auto* found = handles().find<Child>(child, __func__);
    if (found == nullptr) return;
    if (found->view() != nullptr) found->view()->setSurface(nullptr);
    found->surface.reset();
}

int32_t OUTreset(WHandle child) {
    OutputDevice* output = outputOf(child, __func__);
    if (output == nullptr) return 0;
    output->reset();
    return 1;
}

int32_t OUTendpaint(WHandle child) {
    OutputDevice* output = outputOf(child, __func__);
    if (output == nullptr) return 0;
    output->endPaint();
    return 1;
}

int32_t OUTsetbackground(WHandle child, uint32_t colour) {
    const auto* found = handles().find<Child>(child, __func__);
    if (found == nullptr || !found->surface) return 0;
    found->surface->setBackground(colour);
    return 1;
}

int32_t OUTquerysize(WHandle child, int32_t* width, int32_t* height) {
    const auto* found = handles().find<Child>(child, __func__);
    if (found == nullptr || found->widget == nullptr) return 0;
    const OutputDevice* output = found->output();
    const QSize size = output != nullptr ? output->size() : found->view()->deviceSize();
    *width = size.width();
    *height = size.height();
    return 1;
}

int32_t OUTline(WHandle child, int32_t x1, int32_t y1, int32_t x2, int32_t y2) {
    OutputDevice* output = outputOf(child, __func__);
    if (output == nullptr) return 0;
    output->line({.x = x1, .y = y1}, {.x = x2, .y = y2});
    return 1;
}

int32_t OUTgeomline(WHandle child, const OUTPoint* points, int32_t count, int32_t width) {
    OutputDevice* output = outputOf(child, __func__);
    if (output == nullptr) return 0;
    if (points == nullptr || count < 1) return 1;
    const std::span polyline(points, static_cast<std::size_t>(count));
    if (width > 1) {
        output->wideLine(polyline, width);
    } else {
        drawThinPolyline(*output, polyline);
    }
    return 1;
}

int32_t OUTboxr0(WHandle child, int32_t x, int32_t y, int32_t w, int32_t h) {
    OutputDevice* output = outputOf(child, __func__);
    if (output == nullptr) return 0;
    output->outline(boxOf(x, y, w, h));
    return 1;
}

int32_t OUTboxr1(WHandle child, int32_t x, int32_t y, int32_t w, int32_t h) {
    OutputDevice* output = outputOf(child, __func__);
    if (output == nullptr) return 0;
    output->fill(boxOf(x, y, w, h));
    return 1;
}

// There are no fill attributes beside the colour, so clearing is filling.
int32_t OUTboxr2(WHandle child, int32_t x, int32_t y, int32_t w, int32_t h) {
    return OUTboxr1(child, x, y, w, h);
}

int32_t OUTwinsolidpolygons(WHandle child, const OUTPoint* points, const int32_t* counts, int32_t n) {
    OutputDevice* output = outputOf(child, __func__);
    if (output == nullptr) return 0;
    if (points == nullptr || counts == nullptr || n < 1) return 1;
    const std::span sizes(counts, static_cast<std::size_t>(n));
    const int64_t sum = sumOf(sizes);
    if (sum < 0) return 0;
    output->polygons({points, static_cast<std::size_t>(sum)}, sizes);
    return 1;
}

int32_t OUTtrackbox(WHandle child, int32_t x, int32_t y, int32_t w, int32_t h, uint32_t /*flags*/) {
    OutputDevice* output = outputOf(child, __func__);
    if (output == nullptr) return 0;
    output->trackBox(boxOf(x, y, w, h));
    return 1;
}

int32_t OUTlinecolour(WHandle child, int32_t colour) {
    OutputDevice* output = outputOf(child, __func__);
    if (output == nullptr) return 0;
    output->attributes.lineColour = output->colourAt(colour);
    return 1;
}

int32_t OUTfillcolour(WHandle child, int32_t colour) {
    OutputDevice* output = outputOf(child, __func__);
    if (output == nullptr) return 0;
    output->attributes.fillColour = output->colourAt(colour);
    return 1;
}

int32_t OUTsettext(WHandle child, int32_t /*a*/, int32_t /*b*/, int32_t width, int32_t height, int32_t /*e*/,
                   int32_t /*f*/) {
    OutputDevice* output = outputOf(child, __func__);
    if (output == nullptr) return 0;
    output->attributes.textWidth = width;
    output->attributes.textHeight = height;
    return 1;
}

int32_t OUTchars_len(WHandle child, int32_t x, int32_t y, int32_t length, const char* text, uint32_t /*flags*/) {
    OutputDevice* output = outputOf(child, __func__);
    if (output == nullptr) return 0;
    if (text != nullptr && length > 0) output->text({.x = x, .y = y}, {text, static_cast<std::size_t>(length)});
    return 1;
}

uintptr_t OUTquery(WHandle child, uint32_t kind) {
    if (outputOf(child, __func__) == nullptr) return 0;
    const std::vector<WHandle>& fonts = registeredFonts();
    if (kind == OUT_NUMBER_OF_FONTS) return fonts.size();
    return kind == OUT_FONTS ? reinterpret_cast<uintptr_t>(fonts.data()) : 0;
}
