#include "plotter/report.h"

#include <algorithm>

namespace plotter {

namespace {

// Kinds that are told apart; a hostile file makes no table longer.
constexpr std::size_t MOST_KINDS = 1000;

}  // namespace

void Report::note(Table& table, std::string_view what, std::size_t offset) {
    const auto at = table.find(what);
    if (at != table.end()) {
        ++at->second.count;
    } else if (table.size() < MOST_KINDS) {
        table.emplace(what, Entry{std::string(what), 1, offset});
    }
}

std::vector<Report::Entry> Report::inOrder(const Table& table) {
    std::vector<Entry> entries;
    entries.reserve(table.size());
    for (const auto& [what, entry] : table) {
        entries.push_back(entry);
    }
    std::ranges::stable_sort(entries, {}, &Entry::offset);
    return entries;
}

}  // namespace plotter
