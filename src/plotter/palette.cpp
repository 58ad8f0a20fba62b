#include "plotter/palette.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <set>

namespace plotter {

namespace {

// The viewer's own colours, in the order of its pens from 1 on, again and again.
constexpr std::array<Colour, 15> VIEWER_COLOURS = {{
    {0, 0, 0},
    {0, 0, 255},
    {255, 255, 0},
    {0, 255, 0},
    {255, 0, 255},
    {255, 0, 0},
    {0, 255, 255},
    {128, 128, 128},
    {192, 192, 192},
    {0, 0, 128},
    {128, 128, 0},
    {0, 128, 0},
    {128, 0, 128},
    {128, 0, 0},
    {0, 128, 128},
}};

Colour viewerColour(int32_t pen) {
    if (pen < 1) return {255, 255, 255};
    return VIEWER_COLOURS[static_cast<std::size_t>(pen - 1) % VIEWER_COLOURS.size()];
}

Colour lightened(Colour colour, double shade) {
    const auto mixed = [shade](uint8_t part) {
        return static_cast<uint8_t>(std::lround(255 - (255 - part) * std::clamp(shade, 0.0, 1.0)));
    };
    return {mixed(colour.red), mixed(colour.green), mixed(colour.blue)};
}

// CIE L*a*b*, in which distance is what the eye sees.
struct Lab {
    double l, a, b;
};

double linearLight(uint8_t part) {
    const double value = part / 255.0;
    return value <= 0.04045 ? value / 12.92 : std::pow((value + 0.055) / 1.055, 2.4);
}

Lab labOf(Colour colour) {
    const double r = linearLight(colour.red);
    const double g = linearLight(colour.green);
    const double b = linearLight(colour.blue);
    const auto bent = [](double t) { return t > 0.008856 ? std::cbrt(t) : 7.787 * t + 16.0 / 116.0; };
    const double x = bent((0.4124 * r + 0.3576 * g + 0.1805 * b) / 0.95047);
    const double y = bent(0.2126 * r + 0.7152 * g + 0.0722 * b);
    const double z = bent((0.0193 * r + 0.1192 * g + 0.9505 * b) / 1.08883);
    return {116 * y - 16, 500 * (x - y), 200 * (y - z)};
}

double distance(Lab p, Lab q) {
    return (p.l - q.l) * (p.l - q.l) + (p.a - q.a) * (p.a - q.a) + (p.b - q.b) * (p.b - q.b);
}

Colour colourOf(const PenKey& key) {
    return key.pen != 0 ? viewerColour(key.pen) : key.colour;
}

// Whether a pen may keep its number.
bool isViewers(const PenKey& key) {
    return key.pen != 0 && key.pen <= MOST_COLOURS;
}

struct Choice {
    std::vector<PenKey> kept;
    std::vector<std::pair<PenKey, PenKey>> merged;  // and the one that stands for it
};

// As many as the viewer shows: the most used first, then again and again the one whose ink would suffer most from being
// drawn with the nearest of the others.
Choice chooseKeys(const PenUse& use) {
    struct Candidate {
        PenKey key;
        double amount;
        Lab lab;
        double farness;       // from the nearest kept
        std::size_t nearest;  // its place among the kept
    };
    std::vector<Candidate> candidates;
    for (const auto& [key, amount] : use) {
        candidates.push_back({key, amount, labOf(colourOf(key)), 1e9, 0});
    }
    Choice choice;
    while (!candidates.empty() && choice.kept.size() < MOST_COLOURS) {
        const auto worst =
            std::ranges::max_element(candidates, {}, [](const Candidate& c) { return c.farness * c.amount; });
        const Candidate kept = *worst;
        candidates.erase(worst);
        choice.kept.push_back(kept.key);
        for (Candidate& candidate : candidates) {
            const double farness = distance(candidate.lab, kept.lab);
            if (farness >= candidate.farness) continue;
            candidate.farness = farness;
            candidate.nearest = choice.kept.size() - 1;
        }
    }
    for (const Candidate& candidate : candidates) {
        choice.merged.emplace_back(candidate.key, choice.kept[candidate.nearest]);
    }
    return choice;
}

}  // namespace

PenKey keyOf(const Ink& ink, bool coloursChosen) {
    if (coloursChosen || ink.pen < 0) return {0, lightened(ink.colour, ink.shade)};
    if (ink.pen > 0 && ink.shade >= 1) return {ink.pen, {}};
    return {0, lightened(viewerColour(ink.pen), ink.shade)};
}

Palette::Palette(const PenUse& use) {
    const Choice choice = chooseKeys(use);
    std::vector<PenKey> keys = choice.kept;
    std::sort(keys.begin(), keys.end());

    // Pens keep their numbers where the viewer shows them. As soon as one has a colour of its own all say theirs: a
    // file that gives colours to some pens leaves the others to the plotter.
    std::set<int32_t> taken;
    const bool allSay = !std::ranges::all_of(keys, isViewers);
    for (const PenKey& key : keys) {
        if (!isViewers(key)) continue;
        taken.insert(key.pen);
        numbers_[key] = key.pen;
        pens_.push_back({key.pen, allSay, colourOf(key)});
    }
    int32_t next = 1;
    for (const PenKey& key : keys) {
        if (isViewers(key)) continue;
        while (taken.contains(next)) {
            ++next;
        }
        taken.insert(next);
        numbers_[key] = next;
        pens_.push_back({next, true, colourOf(key)});
    }
    for (const auto& [key, nearest] : choice.merged) {
        numbers_[key] = numbers_[nearest];
    }
}

int32_t Palette::penOf(const PenKey& key) const {
    const auto found = numbers_.find(key);
    return found != numbers_.end() ? found->second : 1;
}

}  // namespace plotter
