// Device contexts: drawing into a window's surface with stock objects. The screen's has metrics only.
#include <QFont>
#include <QFontMetrics>
#include <QGuiApplication>
#include <QPainter>
#include <QPointer>
#include <array>
#include <cstddef>
#include <cstring>
#include <memory>
#include <utility>

#include "platform/class_window.h"
#include "platform/short_coordinate.h"
#include "platform/windows.h"

namespace {

enum class Kind { brush, pen, font };

struct StockObject {
    int index;
    Kind kind;
    QRgb colour;  // of brushes and pens
};

// clang-format off
std::array<StockObject, 4> stockObjects = {{
    {WHITE_BRUSH,    Kind::brush, 0xFFFFFFFF},
    {WHITE_PEN,      Kind::pen,   0xFFFFFFFF},
    {BLACK_PEN,      Kind::pen,   0xFF000000},
    {OEM_FIXED_FONT, Kind::font,  0},
}};
// clang-format on

struct DeviceContext {
    QPointer<ClassWindow> window;  // null for the screen
    std::array<HGDIOBJ, 3> selected = {GetStockObject(WHITE_BRUSH), GetStockObject(BLACK_PEN),
                                       GetStockObject(OEM_FIXED_FONT)};

    HGDIOBJ& slot(Kind kind) { return selected[static_cast<size_t>(kind)]; }
    QColor colour(Kind kind) { return QColor::fromRgb(static_cast<const StockObject*>(slot(kind))->colour); }
};

DeviceContext* contextOf(HDC context) {
    return reinterpret_cast<DeviceContext*>(context);
}

// Null when nothing can be drawn: no context, the screen's, a window that has gone meanwhile or has no inside.
ClassWindow* targetOf(HDC context) {
    ClassWindow* target = context != nullptr ? contextOf(context)->window.data() : nullptr;
    return target != nullptr && !target->surface().isNull() ? target : nullptr;
}

// Within one image, where the two may overlap: the row that would be overwritten first goes first.
void moveRows(QImage& image, const QRect& from, QPoint to) {
    const std::ptrdiff_t bytes = image.depth() / 8;
    const bool upward = to.y() < from.y();
    for (int i = 0; i < from.height(); i++) {
        const int row = upward ? i : from.height() - 1 - i;
        const uchar* source = image.constScanLine(from.y() + row) + from.x() * bytes;
        std::memmove(image.scanLine(to.y() + row) + to.x() * bytes, source, static_cast<size_t>(bytes * from.width()));
    }
}

QFont fixedFont() {
    QFont font("DejaVu Sans Mono", 9);
    font.setStyleHint(QFont::Monospace);
    font.setFixedPitch(true);
    return font;
}

void describe(TEXTMETRICA& metrics, const QFontMetrics& font) {
    metrics = {};
    metrics.tmHeight = font.ascent() + font.descent();
    metrics.tmAscent = font.ascent();
    metrics.tmDescent = font.descent();
    metrics.tmExternalLeading = font.leading();
    metrics.tmAveCharWidth = font.averageCharWidth();
    metrics.tmMaxCharWidth = font.maxWidth();
    metrics.tmWeight = QFont::Normal;
    metrics.tmLastChar = 255;
    metrics.tmDefaultChar = '?';
    metrics.tmBreakChar = ' ';
}

}  // namespace

HGDIOBJ GetStockObject(int index) {
    for (StockObject& object : stockObjects) {
        if (object.index == index) return &object;
    }
    return nullptr;
}

HDC GetDC(HWND window) {
    ClassWindow* target = ClassWindow::find(window);
    if (window != nullptr && target == nullptr) return nullptr;
    auto context = std::make_unique<DeviceContext>();
    context->window = target;
    return reinterpret_cast<HDC>(context.release());
}

int ReleaseDC(HWND /*window*/, HDC context) {
    delete contextOf(context);
    return context != nullptr ? 1 : 0;
}

HGDIOBJ SelectObject(HDC context, HGDIOBJ object) {
    if (context == nullptr || object == nullptr) return nullptr;
    return std::exchange(contextOf(context)->slot(static_cast<const StockObject*>(object)->kind), object);
}

BOOL GetTextMetricsA(HDC context, TEXTMETRICA* metrics) {
    if (context == nullptr || QGuiApplication::instance() == nullptr) return 0;
    describe(*metrics, QFontMetrics(fixedFont()));
    return 1;
}

BOOL BitBlt(HDC to, int x, int y, int width, int height, HDC from, int fromX, int fromY, DWORD operation) {
    ClassWindow* target = targetOf(to);
    ClassWindow* source = targetOf(from);
    if (target == nullptr || target != source || operation != SRCCOPY) return 0;
    const QRect all = target->surface().rect();
    const QPoint way = QPoint(x, y) - QPoint(fromX, fromY);
    const QRect asked(fromX, fromY, shortCoordinate(width), shortCoordinate(height));
    const QRect there = asked.intersected(all).intersected(all.translated(-way));
    moveRows(target->surface(), there, there.topLeft() + way);
    target->update();
    return 1;
}

// Right and bottom lie outside, as they do for Windows.
BOOL Rectangle(HDC context, int left, int top, int right, int bottom) {
    ClassWindow* target = targetOf(context);
    if (target == nullptr) return 0;
    QPainter painter(&target->surface());
    painter.setBrush(contextOf(context)->colour(Kind::brush));
    painter.setPen(contextOf(context)->colour(Kind::pen));
    const QPoint first(shortCoordinate(left), shortCoordinate(top));
    const QPoint last(shortCoordinate(right) - 2, shortCoordinate(bottom) - 2);
    painter.drawRect(QRect(first, last));
    target->update();
    return 1;
}

BOOL TextOutA(HDC context, int x, int y, LPCSTR text, int length) {
    ClassWindow* target = targetOf(context);
    if (target == nullptr) return 0;
    QPainter painter(&target->surface());
    painter.setFont(fixedFont());
    painter.setPen(Qt::black);
    painter.drawText(shortCoordinate(x), shortCoordinate(y) + painter.fontMetrics().ascent(),
                     QString::fromLatin1(text, length));
    target->update();
    return 1;
}
