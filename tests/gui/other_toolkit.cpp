// A toolkit library that the viewer must refuse: one that tells another version or, where OTHER_VERSION is not defined,
// none at all.
#include "toolkit/w.h"

#ifdef OTHER_VERSION
uint64_t Wqueryversion(uint32_t /*kind*/) {
    static_assert(OTHER_VERSION != W_VERSION);
    return OTHER_VERSION;
}
#endif
