#include "qrvel/window/view_motion.h"

#include <QWidget>
#include <algorithm>
#include <cmath>
#include <utility>

#include "qrvel/base/application.h"
#include "qrvel/output/child.h"
#include "qrvel/window/action_bar.h"
#include "qrvel/window/commands.h"

namespace qrvel {

namespace {

using std::chrono::milliseconds;

constexpr milliseconds REST(500);  // after which another motion begins
constexpr milliseconds FRAME(16);  // no more pictures than are seen
constexpr milliseconds SLOW(100);  // a picture that takes longer waits until the hand rests
constexpr milliseconds HESITATION(150);

// The viewer leaves so many pixels free on each axis, half of them on the left and below.
constexpr double FREE_PIXELS = 4;
constexpr QPointF OFFSET(FREE_PIXELS / 2, FREE_PIXELS / 2);

// One view of a motion is opened from the one before it, with the pixels that were there: beyond, they are too coarse.
constexpr double MOST_IN_ONE = 8;

// Part of the window that the drawing fills at least, wherever it is moved.
constexpr double LEAST_SEEN = 0.5;

double keepBetween(double low, double value, double high) {
    return high < low ? (low + high) / 2 : std::clamp(value, low, high);
}

// The item's message, without what a person's choosing it would break off.
void postItem(uint32_t action) {
    handles().forEach<ActionBar>(
        [&](const ActionBar& bar) { application()->messages.postAction(bar.object, bar.itemKind, action); });
}

}  // namespace

ViewMotion::ViewMotion(WHandle child, QWidget& widget) : child_(child), widget_(widget) {
    sending_.setSingleShot(true);
    rest_.setSingleShot(true);
    QObject::connect(&sending_, &QTimer::timeout, [this] { send(); });
    QObject::connect(&rest_, &QTimer::timeout, [this] { finish(); });
}

void ViewMotion::measure(QSize window) {
    window_ = QSizeF(std::max(window.width() - FREE_PIXELS, 1.0), std::max(window.height() - FREE_PIXELS, 1.0));
}

void ViewMotion::began(bool keepView) {
    const std::vector<Stroke> strokes = keepView ? trail_.strokes() : std::vector<Stroke>();
    forget();
    leastWidth_.reset();
    trail_.begin(window_.toSize());
    drawn_ = trail_.seen();
    for (const Stroke& stroke : strokes) {
        post(stroke);
    }
}

void ViewMotion::post(const Stroke& stroke) const {
    if (application() == nullptr) return;
    application()->messages.postMouse(child_, W_MOUSE_PRESS, stroke.press);
    application()->messages.postMouse(child_, W_MOUSE_RELEASE, stroke.release);
}

void ViewMotion::resized(QSize window) {
    measure(window);
    forget();
    if (!hasPicture()) return;
    trail_.resize(window_.toSize());
    drawn_ = trail_.seen();
}

const ViewRect& ViewMotion::target() {
    if (!target_) target_ = trail_.seen();
    return *target_;
}

void ViewMotion::zoom(double factor, QPointF at) {
    if (!hasPicture()) return;
    const ViewRect from = target();
    const ViewRect& whole = trail_.whole();
    ViewRect to{.left = 0, .bottom = 0, .width = from.width / factor, .height = from.height / factor};
    if (factor > 1 && leastWidth_ && to.width <= *leastWidth_) return;
    if (to.width > whole.width * 0.999) {
        const bool isWhole = trail_.depth() == 0 && !isDue_ && !isUnderWay_;
        forget();
        if (!isWhole) postItem(COMPLETE_PICTURE);
        return;
    }
    const QPointF position = at - OFFSET;
    to.left = from.left + position.x() / window_.width() * (from.width - to.width);
    to.bottom = from.bottom + position.y() / window_.height() * (from.height - to.height);
    if (factor < 1) {  // what comes into view is drawing where there is any
        to.left = keepBetween(whole.left, to.left, whole.left + whole.width - to.width);
        to.bottom = keepBetween(whole.bottom, to.bottom, whole.bottom + whole.height - to.height);
    }
    aimAt(to);
}

void ViewMotion::zoomAtMiddle(double factor) {
    zoom(factor, QPointF(window_.width(), window_.height()) / 2 + OFFSET);
}

void ViewMotion::move(QPointF by) {
    if (!hasPicture()) return;
    ViewRect to = target();
    const ViewRect& whole = trail_.whole();
    to.left -= by.x() / window_.width() * to.width;
    to.bottom -= by.y() / window_.height() * to.height;
    const double least = 1 - LEAST_SEEN;
    to.left = keepBetween(whole.left - least * to.width, to.left, whole.left + whole.width - LEAST_SEEN * to.width);
    to.bottom =
        keepBetween(whole.bottom - least * to.height, to.bottom, whole.bottom + whole.height - LEAST_SEEN * to.height);
    aimAt(to);
}

void ViewMotion::moveByParts(int right, int up) {
    move(QPointF(std::round(window_.width() * right / PARTS), std::round(window_.height() * up / PARTS)));
}

void ViewMotion::aimAt(const ViewRect& view) {
    target_ = view;
    if (std::exchange(isOver_, false) && !isUnderWay_) taken_.reset();  // another motion
    isDue_ = true;
    rest_.start(REST);
    widget_.update();
    schedule();
}

void ViewMotion::schedule() {
    if (isUnderWay_) return;  // the next one follows it
    if (painting_ > SLOW && taken_) return sending_.start(HESITATION);
    if (sending_.isActive()) return;
    const milliseconds pause = std::max(FRAME, 2 * painting_);
    const milliseconds passed(sincePainted_.isValid() ? sincePainted_.elapsed() : pause.count());
    sending_.start(std::max(pause - passed, milliseconds(0)));
}

void ViewMotion::send() {
    if (!isDue_ || isUnderWay_ || !target_ || application() == nullptr) return;
    isDue_ = false;
    const std::optional<Stroke> stroke = trail_.stroke(taken_ ? trail_.before() : trail_.seen(), *target_);
    if (!stroke) {
        target_ = taken_;
        widget_.update();
        return;
    }
    sent_ = *target_;
    isUnderWay_ = true;
    if (taken_) postItem(LAST_ZOOM);
    post(*stroke);
}

std::optional<Stroke> ViewMotion::stroked(const Stroke& stroke, bool opened) {
    const bool isOwn = std::exchange(isUnderWay_, false);
    if (opened) trail_.follow(stroke);
    if (!isOwn) return std::nullopt;
    if (!opened) {
        leastWidth_ = sent_.width;
        if (!isDue_) target_ = taken_;
        widget_.update();
        if (!taken_) return std::nullopt;
        sent_ = *taken_;
        taken_.reset();
        isUnderWay_ = true;
        return trail_.stroke(trail_.seen(), sent_);
    }
    taken_ = sent_;
    awaitsPaint_ = true;
    const Child* child = handles().find<Child>(child_);
    if (child != nullptr && child->surface) child->surface->keepShown();
    const double zoomed = sent_.width / trail_.before().width;
    if (zoomed < 1 / MOST_IN_ONE || zoomed > MOST_IN_ONE) taken_.reset();
    return std::nullopt;
}

void ViewMotion::chosen(uint32_t item) {
    switch (item) {
        case LAST_ZOOM:
            return trail_.back();
        case COMPLETE_PICTURE:
            return trail_.backToWhole();
        case ROTATE:
            return trail_.begin(window_.toSize());
        default:
            return;
    }
}

void ViewMotion::finish() {
    rest_.stop();
    if (isDue_) send();
    if (isUnderWay_ || awaitsPaint_) {
        isOver_ = true;
    } else {
        forget();
    }
}

void ViewMotion::forget() {
    sending_.stop();
    rest_.stop();
    target_.reset();
    taken_.reset();
    isDue_ = isOver_ = isUnderWay_ = awaitsPaint_ = false;
}

void ViewMotion::goForward() {
    finish();
    if (const std::optional<Stroke> stroke = trail_.forward()) post(*stroke);
}

void ViewMotion::painted(milliseconds duration) {
    painting_ = duration;
    sincePainted_.start();
    drawn_ = trail_.seen();
    awaitsPaint_ = false;
    if (isOver_ && !isUnderWay_ && !isDue_) forget();
    if (isDue_) schedule();
}

std::optional<QRectF> ViewMotion::placeOfPicture(QSize window) const {
    if (!target_ || (!isDue_ && !isUnderWay_ && !awaitsPaint_)) return std::nullopt;
    const double scale = window_.width() / target_->width;
    const double zoomed = drawn_.width / target_->width;
    const QPointF corner((drawn_.left - target_->left) * scale, (drawn_.bottom - target_->bottom) * scale);
    const QPointF lowerLeft = corner + OFFSET - OFFSET * zoomed;
    const QSizeF size = QSizeF(window) * zoomed;
    return QRectF(QPointF(lowerLeft.x(), window.height() - lowerLeft.y() - size.height()), size);
}

}  // namespace qrvel
