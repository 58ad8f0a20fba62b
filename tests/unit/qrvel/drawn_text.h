// What a page has kept, as text: a line a step, " | " between strokes or polygons.
//
//     stroke WIDTH RRGGBB: x,y x,y | x,y x,y
//     area RRGGBB: x,y x,y x,y
//     text RRGGBB: x,y cell WIDTH high HEIGHT "bytes"
#pragma once

#include <cstdio>
#include <span>
#include <string>

#include "qrvel/page/recording.h"

namespace qrvel {

class TextDrawer {
  public:
    void stroke(std::span<const PagePoint> points, int32_t width, uint32_t colour) {
        text_ += "stroke " + std::to_string(width) + ' ' + rgb(colour) + ':';
        addPoints(points);
    }
    void area(std::span<const PagePoint> points, uint32_t colour) {
        text_ += "area " + rgb(colour) + ':';
        addPoints(points);
    }
    void text(const PageText& text, uint32_t colour) {
        char line[100];
        std::snprintf(line, sizeof line, "text %s: %g,%g cell %g high %g \"", rgb(colour).c_str(), text.x, text.y,
                      text.cellWidth, text.height);
        text_.append(line).append(text.bytes).append("\"\n");
    }
    const std::string& drawn() const { return text_; }

  private:
    static std::string rgb(uint32_t colour) {
        char text[7];
        std::snprintf(text, sizeof text, "%06X", colour & 0xFFFFFFU);
        return text;
    }
    void addPoints(std::span<const PagePoint> points) {
        bool first = true;
        for (const PagePoint point : points) {
            text_ += point.begins() && !first ? " | " : " ";
            text_ += std::to_string(point.x()) + ',' + std::to_string(point.y());
            first = false;
        }
        text_ += '\n';
    }

    std::string text_;
};

inline std::string drawnText(const Recording& recording) {
    TextDrawer drawer;
    recording.drawOn(drawer);
    return drawer.drawn();
}

}  // namespace qrvel
