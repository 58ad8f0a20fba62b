// The rows with the real toolkit: paints of the drawing window at 1600 x 1000, on Qt's offscreen platform.
#include <benchmark/benchmark.h>

#include <QApplication>
#include <QFile>
#include <QFontDatabase>
#include <QFontMetricsF>
#include <QPainter>
#include <algorithm>
#include <cstdlib>
#include <string>
#include <utility>
#include <vector>

#include "plots.h"
#include "render/primitives.h"
#include "rows.h"
#include "screen.h"
#include "shell/shell_state.h"

namespace {

constexpr int WIDTH = 1600;
constexpr int HEIGHT = 1000;
constexpr int64_t LINES = 1'000'000;
constexpr double PIXEL_IN_MILLIMETRES = 0.25;  // ten plotter units
constexpr uint32_t BLACK = 0xFF000000;

Screen& screen() {
    static Screen made(WIDTH, HEIGHT);
    return made;
}

// Pixels from the upper left corner.
struct Line {
    int32_t x1, y1, x2, y2;
};

Line onScreen(int32_t x1, int32_t y1, int32_t x2, int32_t y2) {
    const auto x = [](int32_t units) { return HPGLmapX(&TheShell.display, units); };
    const auto y = [](int32_t units) { return HEIGHT - 1 - HPGLmapY(&TheShell.display, units); };
    return {x(x1), y(y1), x(x2), y(y2)};
}

// What the strokes of a picture come to in the present view.
std::vector<Line> linesOf(const Picture& picture) {
    std::vector<Line> lines;
    int32_t x = 0;
    int32_t y = 0;
    picture.forEachRecord([&](const CompactCodeRecord& record) {
        if (record.id != CMD_PU && record.id != CMD_PD) return;
        const uint8_t* at = record.params;
        for (int32_t i = 0; i < record.count / 2; ++i, at += 8) {
            const int32_t toX = HPGLreadL(at);
            const int32_t toY = HPGLreadL(at + 4);
            if (record.id == CMD_PD) lines.push_back(onScreen(x, y, toX, toY));
            x = toX;
            y = toY;
        }
    });
    return lines;
}

bool isVisible(const Line& line) {
    return std::max(line.x1, line.x2) >= 0 && std::min(line.x1, line.x2) < WIDTH && std::max(line.y1, line.y2) >= 0 &&
           std::min(line.y1, line.y2) < HEIGHT;
}

// 255 for a black pixel, 0 for a white one, all together.
int64_t inkOf(const QImage& image) {
    int64_t ink = 0;
    for (int y = 0; y < image.height(); ++y) {
        const auto* row = reinterpret_cast<const QRgb*>(image.constScanLine(y));
        for (int x = 0; x < image.width(); ++x) {
            ink += 255 - qGray(row[x]);
        }
    }
    return ink;
}

// ---- thin lines -----------------------------------------------------------------------------------------------------

// Bresenham's loop, straight into the scan lines. A line that is not wholly inside is left out: the plot has none.
class BareLines {
  public:
    explicit BareLines(QImage& image)
        : pixels_(reinterpret_cast<uint32_t*>(image.bits())), stride_(image.bytesPerLine() / 4) {}

    void draw(const Line& line) const {
        if (!isInside(line.x1, line.y1) || !isInside(line.x2, line.y2)) return;
        int32_t length = std::abs(line.x2 - line.x1);
        int32_t rise = std::abs(line.y2 - line.y1);
        std::ptrdiff_t ahead = line.x2 > line.x1 ? 1 : -1;
        std::ptrdiff_t aside = line.y2 > line.y1 ? stride_ : -stride_;
        if (length < rise) {
            std::swap(length, rise);
            std::swap(ahead, aside);
        }
        uint32_t* pixel = pixels_ + line.y1 * stride_ + line.x1;
        int32_t rest = length / 2;
        for (int32_t i = 0; i <= length; ++i) {
            *pixel = BLACK;
            pixel += ahead;
            rest -= rise;
            if (rest >= 0) continue;
            rest += length;
            pixel += aside;
        }
    }

  private:
    static bool isInside(int32_t x, int32_t y) {
        return static_cast<uint32_t>(x) < WIDTH && static_cast<uint32_t>(y) < HEIGHT;
    }

    uint32_t* pixels_;
    std::ptrdiff_t stride_;
};

class ThinLines : public Contest {
  public:
    ThinLines() { screen().show(picture_); }

    std::string check() override {
        lines_ = linesOf(picture_);
        std::string problem = compare("lines", LINES + 2, static_cast<int64_t>(lines_.size()));
        if (problem.empty()) problem = compare("visible lines", LINES + 2, std::ranges::count_if(lines_, isVisible));
        yardstick();
        if (problem.empty()) problem = compareAbout("ink", inkOf(image_), inkOf(screen().painted()), 0.01);
        return problem;
    }
    void ours() override { screen().paint(); }
    void yardstick() override {
        const BareLines bare(image_);
        for (const Line& line : lines_) {
            bare.draw(line);
        }
        benchmark::ClobberMemory();
    }

  private:
    Picture picture_{strokes(LINES, 0.0).text};
    std::vector<Line> lines_;
    QImage image_ = screen().empty();
};

// A tenth of the sheet on each axis.
class FewVisible : public Contest {
  public:
    std::string check() override {
        screen().show(picture_);
        zoom();
        return compareAbout("visible lines", LINES / 100, std::ranges::count_if(linesOf(picture_), isVisible), 0.2);
    }
    void ours() override {
        zoom();
        screen().paint();
    }
    void yardstick() override {
        screen().view(0, 0, SHEET_WIDTH, SHEET_HEIGHT);
        screen().paint();
    }

  private:
    static void zoom() {
        constexpr int32_t LEFT = SHEET_WIDTH * 45 / 100;
        constexpr int32_t BOTTOM = SHEET_HEIGHT * 45 / 100;
        screen().view(LEFT, BOTTOM, LEFT + SHEET_WIDTH / 10, BOTTOM + SHEET_HEIGHT / 10);
    }
    Picture picture_{strokes(LINES, 0.0).text};
};

// ---- wide lines -----------------------------------------------------------------------------------------------------

class WideLines : public Contest {
  public:
    WideLines() { screen().show(picture_); }

    std::string check() override {
        lines_ = linesOf(picture_);
        std::string problem = compare("lines", LINES + 2, static_cast<int64_t>(lines_.size()));
        if (problem.empty()) problem = compare("width", WIDE, HPGLmapLength(&TheShell.display, WIDE * 10));
        yardstick();
        if (problem.empty()) problem = compareAbout("ink", inkOf(image_), inkOf(screen().painted()), 0.02);
        return problem;
    }
    void ours() override { screen().paint(); }
    void yardstick() override {
        QPainter painter(&image_);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setPen(QPen(Qt::black, WIDE, Qt::SolidLine, Qt::RoundCap));
        painter.translate(0.5, 0.5);
        for (const Line& line : lines_) {
            painter.drawLine(line.x1, line.y1, line.x2, line.y2);
        }
    }

  private:
    static constexpr int32_t WIDE = 3;
    Picture picture_{strokes(LINES, WIDE* PIXEL_IN_MILLIMETRES).text};
    std::vector<Line> lines_;
    QImage image_ = screen().empty();
};

// ---- labels ---------------------------------------------------------------------------------------------------------

struct Label {
    QPoint baseline;
    QString text;
};

class Labels : public Contest {
  public:
    Labels() { screen().show(picture_); }

    std::string check() override {
        collect();
        std::string problem = compare("labels", COUNT, static_cast<int64_t>(labels_.size()));
        yardstick();
        if (problem.empty()) problem = compareAbout("ink", inkOf(image_), inkOf(screen().painted()), 0.1);
        return problem;
    }
    void ours() override { screen().paint(); }
    void yardstick() override {
        QPainter painter(&image_);
        painter.setFont(font_);
        for (const Label& label : labels_) {
            painter.setTransform({stretchX_, 0.0, 0.0, stretchY_, label.baseline.x() + 0.0, label.baseline.y() + 1.0});
            painter.drawText(0, 0, label.text);
        }
    }

  private:
    static constexpr int64_t COUNT = 100'000;
    static constexpr int CHARACTER_WIDTH = 8;
    static constexpr int CAPITAL_HEIGHT = 12;

    void collect() {
        int32_t x = 0;
        int32_t y = 0;
        picture_.forEachRecord([&](const CompactCodeRecord& record) {
            if (record.id == CMD_PU && record.count >= 2) {
                x = HPGLreadL(record.params);
                y = HPGLreadL(record.params + 4);
            } else if (record.id == CMD_LB) {
                const Line place = onScreen(x, y, x, y);
                labels_.push_back({{place.x1, place.y1},
                                   QString::fromLatin1(reinterpret_cast<const char*>(record.params), record.count)});
            }
        });
        font_.setPixelSize(CAPITAL_HEIGHT * 4 / 3);
        const QFontMetricsF metrics(font_);
        stretchX_ = CHARACTER_WIDTH / metrics.horizontalAdvance('M');
        stretchY_ = CAPITAL_HEIGHT / metrics.capHeight();
    }

    Picture picture_{labels(COUNT).text};
    std::vector<Label> labels_;
    QFont font_{"DejaVu Sans Mono"};
    double stretchX_ = 1.0, stretchY_ = 1.0;
    QImage image_ = screen().empty();
};

// ---- what a pass costs at least -------------------------------------------------------------------------------------

class FixedCost : public Contest {
  public:
    FixedCost() { screen().show(picture_); }

    std::string check() override {
        addFamilies();
        return compare("font families", FAMILIES, QFontDatabase::families().size());
    }
    void ours() override { screen().paint(); }

  private:
    static constexpr int FAMILIES = 300;

    // Copies of the label face under other names, as many as the machine lacks.
    static void addFamilies() {
        constexpr char FILE[] = "/usr/share/fonts/truetype/dejavu/DejaVuSansMono.ttf";
        QFile file(FILE);
        if (!file.open(QFile::ReadOnly)) return;
        const QByteArray face = file.readAll();
        for (int i = 0; QFontDatabase::families().size() < FAMILIES && i < FAMILIES; ++i) {
            QFontDatabase::addApplicationFontFromData(renamed(face, QString("%1").arg(i, 4, 10, QChar('0'))));
        }
    }
    // "DejaVu Sans Mono" with other letters for the last four, in both encodings of the names' table.
    static QByteArray renamed(QByteArray face, const QString& last) {
        const auto wide = [](const QString& text) {
            QByteArray bytes;
            for (const QChar letter : text) {
                bytes.append('\0').append(letter.toLatin1());
            }
            return bytes;
        };
        const QString name = "DejaVu Sans ";
        face.replace((name + "Mono").toLatin1(), (name + last).toLatin1());
        return face.replace(wide(name + "Mono"), wide(name + last));
    }

    Picture picture_{"IN;"};
};

// clang-format off
constexpr Row ROWS[] = {
    {"paint 1 million short thin lines",            "bare integer line loop",   1.5,     make<ThinLines>},
    {"the same with 1 % visible",                   "all visible",              0.5,     make<FewVisible>},
    {"paint 1 million short lines of width 3",      "QPainter, line by line",   1.0 / 3, make<WideLines>},
    {"paint 100,000 labels",                        "QPainter, stretched text", 3.0,     make<Labels>},
    {"empty paint, 300 families",                   nullptr,                    1.0,     make<FixedCost>},
};
// clang-format on

}  // namespace

int main(int argc, char** argv) {
    return runRows(argc, argv, ROWS);
}
