// What those who print without a panel have to do with a page.
#pragma once

#include <cstddef>
#include <memory>
#include <vector>

#include "qrvel/page/page_delivery.h"

namespace qrvel {

using PrintedPages = std::vector<std::unique_ptr<PrintedPage>>;

class PageSink {
  public:
    PageSink() = default;
    PageSink(const PageSink&) = delete;
    PageSink& operator=(const PageSink&) = delete;
    virtual ~PageSink() = default;

    // Takes a page that has been drawn, and answers those that are to be delivered now.
    virtual PrintedPages collect(std::unique_ptr<PrintedPage> page) = 0;
    // What those that wait take.
    virtual std::size_t bytesKept() const = 0;
    // Why nothing may be written there; nothing when it may.
    virtual QString refuse(const PageGoal& goal) = 0;
    // What became of those that were to be delivered; not well: it has been said.
    virtual void printed(const PrintedPages& pages, bool well) = 0;
};

// Null, as it is at first: a panel prints.
void setPageSink(PageSink* sink);

}  // namespace qrvel
