#include "qrvel/window/view_trail.h"

#include <algorithm>
#include <cmath>

namespace qrvel {

namespace {

bool isWithinReach(const QPointF& point) {
    constexpr double FAR = 1 << 24;
    return std::abs(point.x()) < FAR && std::abs(point.y()) < FAR;
}

}  // namespace

void ViewTrail::begin(QSize window) {
    views_.clear();
    undone_.clear();
    window_ = QSizeF(std::max(window.width(), 1), std::max(window.height(), 1));
    whole_ = {.left = 0, .bottom = 0, .width = window_.width(), .height = window_.height()};
}

// Strokes count the window's pixels: of another window they mean other views. With nothing but the whole picture, its
// new pixels are as good as the old ones.
void ViewTrail::resize(QSize window) {
    if (window == window_.toSize()) return;
    if (views_.empty()) return begin(window);
    window_ = QSizeF(std::max(window.width(), 1), std::max(window.height(), 1));
    undone_.clear();
}

ViewRect ViewTrail::fitted(const ViewRect& view) const {
    const double pixel = std::max(view.width / window_.width(), view.height / window_.height());
    const double width = pixel * window_.width();
    const double height = pixel * window_.height();
    return {.left = view.left + view.width - width,
            .bottom = view.bottom + view.height - height,
            .width = width,
            .height = height};
}

ViewRect ViewTrail::seenAfter(std::size_t leaving) const {
    return fitted(views_.size() <= leaving ? whole_ : views_[views_.size() - 1 - leaving].rect);
}

std::optional<Stroke> ViewTrail::stroke(const ViewRect& from, const ViewRect& to) const {
    const double pixel = from.width / window_.width();
    const QPointF press((to.left - from.left) / pixel, (to.bottom - from.bottom) / pixel);
    const QPointF release = press + QPointF(to.width / pixel, to.height / pixel);
    if (!isWithinReach(press) || !isWithinReach(release)) return std::nullopt;
    const Stroke stroke{.press = press.toPoint(), .release = release.toPoint()};
    if (stroke.press.x() == stroke.release.x() || stroke.press.y() == stroke.release.y()) return std::nullopt;
    return stroke;
}

void ViewTrail::follow(const Stroke& stroke) {
    const ViewRect now = seen();
    const double pixel = now.width / window_.width();
    const auto [left, right] = std::minmax({stroke.press.x(), stroke.release.x()});
    const auto [bottom, top] = std::minmax({stroke.press.y(), stroke.release.y()});
    views_.push_back({.rect = {.left = now.left + left * pixel,
                               .bottom = now.bottom + bottom * pixel,
                               .width = (right - left) * pixel,
                               .height = (top - bottom) * pixel},
                      .stroke = stroke});
    const bool again =
        !undone_.empty() && undone_.back().press == stroke.press && undone_.back().release == stroke.release;
    again ? undone_.pop_back() : undone_.clear();
}

void ViewTrail::back() {
    if (views_.empty()) return;
    undone_.push_back(views_.back().stroke);
    views_.pop_back();
}

void ViewTrail::backToWhole() {
    while (!views_.empty()) {
        back();
    }
}

std::optional<Stroke> ViewTrail::forward() const {
    return undone_.empty() ? std::nullopt : std::optional(undone_.back());
}

std::vector<Stroke> ViewTrail::strokes() const {
    std::vector<Stroke> strokes;
    for (const View& view : views_) {
        strokes.push_back(view.stroke);
    }
    return strokes;
}

}  // namespace qrvel
