#include "hpgl/list.h"

#include <cstdlib>
#include <cstring>

#include "trace/trace.h"

namespace {

HPGLListElement* createElement(const void* data, uint8_t type, uint16_t size, HPGLPrintFunction print,
                               HPGLFreeFunction freeFunction) {
    auto* element = static_cast<HPGLListElement*>(malloc(sizeof(HPGLListElement)));
    if (element == nullptr) return nullptr;
    *element = {};
    element->self = element;
    element->data = malloc(size);
    if (element->data == nullptr) {
        free(element);
        return nullptr;
    }
    if (size > 0) memcpy(element->data, data, size);
    element->size = size;
    element->type = type;
    element->printFunction = print;
    element->freeFunction = freeFunction;
    return element;
}

// Links an element that is in no list behind `before`; null: as the first.
void linkAfter(HPGLList* list, HPGLListElement* before, HPGLListElement* element) {
    HPGLListElement* after = before != nullptr ? before->next : list->first;
    element->previous = before;
    element->next = after;
    (before != nullptr ? before->next : list->first) = element;
    (after != nullptr ? after->previous : list->last) = element;
    ++list->count;
}

void unlink(HPGLList* list, HPGLListElement* element) {
    (element->previous != nullptr ? element->previous->next : list->first) = element->next;
    (element->next != nullptr ? element->next->previous : list->last) = element->previous;
    --list->count;
}

// Cursor and mark leave an element that goes: from the first to the new first, else to the one before.
void moveOff(HPGLListElement** cursor, const HPGLListElement* element) {
    if (*cursor == element) *cursor = element->previous != nullptr ? element->previous : element->next;
}

void freeData(const HPGLListElement* element) {
    if (element->freeFunction != nullptr) {
        element->freeFunction(element->data);
    } else {
        free(element->data);
    }
}

void describe(const HPGLListElement* element, uint8_t* type, uint16_t* size) {
    if (type != nullptr) *type = element->type;
    if (size != nullptr) *size = element->size;
}

bool removeElement(HPGLList* list, HPGLListElement* element, void** data, uint8_t* type, uint16_t* size) {
    describe(element, type, size);
    if (data != nullptr) {
        if (element->data == nullptr) return false;
        *data = element->data;
    } else {
        freeData(element);
    }
    moveOff(&list->Actual, element);
    moveOff(&list->mark, element);
    unlink(list, element);
    free(element->self);
    return true;
}

bool go(HPGLList* list, HPGLListElement* element) {
    if (element == nullptr) return false;
    list->Actual = element;
    return true;
}

bool addAfter(HPGLList* list, HPGLListElement* before, HPGLListElement* element) {
    if (element == nullptr) return false;
    linkAfter(list, before, element);
    if (list->count == 1) list->Actual = element;
    return true;
}

bool hasActual(const HPGLList* list) {
    return list != nullptr && list->Actual != nullptr;
}

}  // namespace

bool HPGLinitList(HPGLList* list, const char* name) {
    if (list == nullptr) return false;
    *list = {};
    if (name == nullptr) name = "UnamedList";
    memcpy(list->name, name, strnlen(name, sizeof list->name));
    return true;
}

bool HPGLappendListElement(HPGLList* list, const void* data, uint8_t type, uint16_t size, HPGLPrintFunction print,
                           HPGLFreeFunction freeFunction) {
    if (list == nullptr) return false;
    return addAfter(list, list->last, createElement(data, type, size, print, freeFunction));
}

bool HPGLprependListElement(HPGLList* list, const void* data, uint8_t type, uint16_t size, HPGLPrintFunction print,
                            HPGLFreeFunction freeFunction) {
    if (list == nullptr) return false;
    return addAfter(list, nullptr, createElement(data, type, size, print, freeFunction));
}

bool HPGLinsertListElement(HPGLList* list, const void* data, uint8_t type, uint16_t size, HPGLPrintFunction print,
                           HPGLFreeFunction freeFunction) {
    if (list == nullptr) return false;
    HPGLListElement* before = list->Actual != nullptr ? list->Actual : list->last;
    HPGLListElement* element = createElement(data, type, size, print, freeFunction);
    return addAfter(list, before, element) && go(list, element);
}

bool HPGLreplaceActualListElement(HPGLList* list, const void* data, uint8_t type, uint16_t size,
                                  HPGLPrintFunction print, HPGLFreeFunction freeFunction) {
    if (!hasActual(list)) return false;
    HPGLListElement* old = list->Actual;
    if (!HPGLinsertListElement(list, data, type, size, print, freeFunction)) return false;
    list->Actual = old;
    return HPGLremoveActualListElement(list, nullptr, nullptr, nullptr);
}

bool HPGLputDataIntoActualListElement(HPGLList* list, const void* data, uint8_t type, uint16_t size) {
    if (list == nullptr) return false;
    if (list->Actual == nullptr) {
        TRCTraceError(HPGLTraceHandle, "HPGLputDataIntoActualListElement: no List->Actual is invalid\n");
        return false;
    }
    if (size > list->Actual->size) {
        TRCTraceError(HPGLTraceHandle, "HPGLputDataIntoActualListElement: Data needs more space than available\n");
        return false;
    }
    if (size > 0) memcpy(list->Actual->data, data, size);
    list->Actual->type = type;
    list->Actual->size = size;
    return true;
}

bool HPGLgetActualListData(HPGLList* list, void** data, uint8_t* type, uint16_t* size) {
    if (!hasActual(list) || list->Actual->data == nullptr) return false;
    *data = list->Actual->data;
    describe(list->Actual, type, size);
    return true;
}

bool HPGLgetNextListData(HPGLList* list, void** data, uint8_t* type, uint16_t* size) {
    return HPGLgotoNext(list) && HPGLgetActualListData(list, data, type, size);
}

bool HPGLgetPrevListData(HPGLList* list, void** data, uint8_t* type, uint16_t* size) {
    return HPGLgotoPrev(list) && HPGLgetActualListData(list, data, type, size);
}

bool HPGLgotoFirst(HPGLList* list) {
    return list != nullptr && go(list, list->first);
}

bool HPGLgotoLast(HPGLList* list) {
    return list != nullptr && go(list, list->last);
}

bool HPGLgotoNext(HPGLList* list) {
    return hasActual(list) && go(list, list->Actual->next);
}

bool HPGLgotoPrev(HPGLList* list) {
    return hasActual(list) && go(list, list->Actual->previous);
}

bool HPGLgotoIndex(HPGLList* list, int32_t n) {
    if (list == nullptr || n < 0 || static_cast<uint32_t>(n) >= list->count) return false;
    HPGLListElement* element = list->first;
    for (; n > 0; --n) {
        element = element->next;
    }
    return go(list, element);
}

bool HPGLsearchList(HPGLList* list, HPGLCompareFunction compare, const void* key) {
    if (hasActual(list) && compare(list->Actual->data, key)) return true;
    if (!HPGLgotoFirst(list)) return false;
    do {
        if (compare(list->Actual->data, key)) return true;
    } while (HPGLgotoNext(list));
    return false;
}

bool HPGLmoveActualToEnd(HPGLList* list) {
    if (!hasActual(list)) return false;
    unlink(list, list->Actual);
    linkAfter(list, list->last, list->Actual);
    return true;
}

bool HPGLmoveActualToFront(HPGLList* list) {
    if (!hasActual(list)) return false;
    unlink(list, list->Actual);
    linkAfter(list, nullptr, list->Actual);
    return true;
}

bool HPGLremoveActualListElement(HPGLList* list, void** data, uint8_t* type, uint16_t* size) {
    return hasActual(list) && removeElement(list, list->Actual, data, type, size);
}

bool HPGLremoveLastListElement(HPGLList* list, void** data, uint8_t* type, uint16_t* size) {
    return list != nullptr && list->last != nullptr && removeElement(list, list->last, data, type, size);
}

bool HPGLclearList(HPGLList* list) {
    if (list == nullptr) return false;
    HPGLgotoFirst(list);
    while (HPGLremoveActualListElement(list, nullptr, nullptr, nullptr)) {
    }
    return true;
}

uint32_t HPGLgetListCount(const HPGLList* list) {
    return list != nullptr ? list->count : 0;
}

uint16_t HPGLgetActualListSize(const HPGLList* list) {
    return hasActual(list) ? list->Actual->size : uint16_t{0};
}

uint8_t HPGLgetActualListType(const HPGLList* list) {
    return hasActual(list) ? list->Actual->type : uint8_t{0};
}

bool HPGLdumpList(HPGLList* list) {
    if (!hasActual(list)) return list != nullptr;
    list->mark = list->Actual;
    HPGLgotoFirst(list);
    do {
        HPGLprintListElement(list);
    } while (HPGLgotoNext(list));
    list->Actual = list->mark;
    return true;
}

bool HPGLprintListElement(HPGLList* list) {
    if (!hasActual(list)) return false;
    const HPGLListElement* element = list->Actual;
    if (element->printFunction != nullptr) {
        element->printFunction(element->data);
        return true;
    }
    // Addresses as far as %d shows them.
    TRCTrace(HPGLTraceHandle, TRC_DETAIL, "ListPnt: %d, DataPnt: %d, SizeOfData: %d\n",
             static_cast<int>(reinterpret_cast<uintptr_t>(element)),
             static_cast<int>(reinterpret_cast<uintptr_t>(element->data)), static_cast<int>(element->size));
    TRCTrace(HPGLTraceHandle, TRC_DETAIL, "             TypeOfData:  %d\n", static_cast<int>(element->type));
    return true;
}
