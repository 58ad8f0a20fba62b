#include "qrvel/page/page_painter.h"

#include <QFontMetricsF>
#include <QPainterPath>
#include <algorithm>
#include <array>
#include <optional>

#include "qrvel/output/label_face.h"

namespace qrvel {

namespace {

constexpr int POINTS_A_PATH = 4096;  // what programs that show the page take in one piece without trouble

// Text is laid out at this size and stretched, units of the painter.
constexpr int LETTER_SIZE = 100;

constexpr QPointF A_HAIR(0.01, 0.0);  // units

class PainterDrawer {
  public:
    PainterDrawer(QPainter& painter, double thinnest)
        : painter_(painter), world_(painter.worldTransform()), thinnest_(thinnest) {
        path_.setFillRule(Qt::OddEvenFill);
        path_.reserve(POINTS_A_PATH + 1);
    }

    void stroke(std::span<const PagePoint> points, int32_t width, uint32_t colour) {
        setPen(QPen(QColor::fromRgb(colour), std::max(thinnest_, 0.0 + width), Qt::SolidLine, Qt::RoundCap,
                    Qt::RoundJoin));
        setBrush(Qt::NoBrush);
        QPointF from;
        for (const PagePoint point : points) {
            const QPointF to(point.x(), point.y());
            if (path_.elementCount() > POINTS_A_PATH) flush();
            if (point.begins()) {
                path_.moveTo(to);
            } else {
                if (path_.isEmpty()) path_.moveTo(from);
                addLine(from, to);
            }
            from = to;
        }
        flush();
    }

    void area(std::span<const PagePoint> points, uint32_t colour) {
        setPen(Qt::NoPen);
        setBrush(QColor::fromRgb(colour));
        for (const PagePoint point : points) {
            if (point.begins()) {
                path_.moveTo(point.x(), point.y());
            } else {
                path_.lineTo(point.x(), point.y());
            }
        }
        flush();
    }

    void text(const PageText& text, uint32_t colour) {
        setPen(QColor::fromRgb(colour));
        painter_.setFont(letters_.font);
        painter_.setWorldTransform(
            QTransform(text.cellWidth / letters_.advance, 0.0, 0.0, -text.height / letters_.capital, text.x, text.y) *
            world_);
        painter_.drawText(QPointF(), shownText(text.bytes));
        painter_.setWorldTransform(world_);
    }

  private:
    struct Letters {
        QFont font;
        double advance;
        double capital;
    };

    static Letters measure() {
        QFont font(QString::fromLatin1(LABEL_FAMILY.data(), qsizetype(LABEL_FAMILY.size())));
        font.setPixelSize(LETTER_SIZE);
        font.setHintingPreference(QFont::PreferNoHinting);
        const QFontMetricsF metrics(font);
        return {.font = font, .advance = metrics.horizontalAdvance('0'), .capital = metrics.capHeight()};
    }

    // What has no picture takes its place all the same, and the soft hyphen is a hyphen like on the screen.
    static QString shownText(std::string_view bytes) {
        constexpr QChar SOFT_HYPHEN(0xAD);
        QString text = QString::fromLatin1(bytes.data(), qsizetype(bytes.size()));
        for (QChar& character : text) {
            if (character == SOFT_HYPHEN) character = '-';
            if (!character.isPrint()) character = ' ';
        }
        return text;
    }

    // A path takes no line of no length, and a dot is one.
    void addLine(QPointF from, QPointF to) {
        const bool begins = path_.elementAt(path_.elementCount() - 1).isMoveTo();
        path_.lineTo(from == to && begins ? to + A_HAIR : to);
    }

    void flush() {
        if (!path_.isEmpty()) painter_.drawPath(path_);
        path_.clear();
        path_.setFillRule(Qt::OddEvenFill);
    }

    // Setting what is set already would be written into the file each time.
    void setPen(const QPen& pen) {
        if (painter_.pen() != pen) painter_.setPen(pen);
    }
    void setBrush(const QBrush& brush) {
        if (painter_.brush() != brush) painter_.setBrush(brush);
    }

    QPainter& painter_;
    QTransform world_;
    double thinnest_;
    QPainterPath path_;
    Letters letters_ = measure();
};

}  // namespace

void paintPage(QPainter& painter, const Recording& recording, const Placement& placement, double unitsPerMillimetre) {
    const double scale = unitsPerMillimetre * placement.unit;
    const QPointF origin = placement.origin * unitsPerMillimetre;
    const double height = placement.paper.height() * unitsPerMillimetre;
    painter.setWorldTransform(QTransform(scale, 0.0, 0.0, -scale, origin.x(), height - origin.y()));
    PainterDrawer drawer(painter, THINNEST_LINE / placement.unit);
    recording.drawOn(drawer);
    if (!recording.overflows()) return;
    // Not clipped: not every device can.
    painter.setWorldTransform(QTransform(unitsPerMillimetre, 0.0, 0.0, -unitsPerMillimetre, 0.0, height));
    for (const QRectF& margin : placement.margins) {
        painter.fillRect(margin, Qt::white);
    }
}

}  // namespace qrvel
