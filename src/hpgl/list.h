// A doubly linked list with a cursor, whose elements own copies of their data. Hash buckets, the block list of compact
// code and the zoom stack are such lists.
//
// Life of one: HPGLinitList, the operations, HPGLclearList. A list that is all zero is an empty one.
// Every operation answers false (0) for a null list; the goto operations also when there is nowhere to go, and then
// leave the cursor where it is.
#pragma once

#include <cstdint>

// Frees an element's data; absent, the data is simply freed.
using HPGLFreeFunction = void (*)(void* data);
// Writes an element's data to the trace.
using HPGLPrintFunction = void (*)(const void* data);
// Whether an element's data is what the key asks for.
using HPGLCompareFunction = bool (*)(const void* data, const void* key);

struct HPGLListElement {
    HPGLListElement* self;  // what is freed when the element goes
    void* data;             // the element's own copy
    uint16_t size;          // of the data, bytes
    HPGLListElement* next;
    HPGLListElement* previous;
    HPGLFreeFunction freeFunction;    // or null
    HPGLPrintFunction printFunction;  // or null
    uint8_t type;                     // the list's user chooses; all present users take 1
};

// count is the number of elements; the first has no previous, the last no next; Actual is null or an element.
struct HPGLList {
    char name[32];  // without a terminator when it is that long
    uint32_t count;
    HPGLListElement* Actual;  // the cursor
    HPGLListElement* mark;    // a saved cursor
    HPGLListElement* first;
    HPGLListElement* last;
};

// An empty list; a null name makes it "UnamedList". Does not free what the list held.
bool HPGLinitList(HPGLList* list, const char* name);

// Each copies `size` bytes of data into a new element; false when memory is lacking, and then nothing has changed.
// Append: after the last; the cursor moves only in an empty list. Prepend: before the first; likewise.
bool HPGLappendListElement(HPGLList* list, const void* data, uint8_t type, uint16_t size, HPGLPrintFunction print,
                           HPGLFreeFunction freeFunction);
bool HPGLprependListElement(HPGLList* list, const void* data, uint8_t type, uint16_t size, HPGLPrintFunction print,
                            HPGLFreeFunction freeFunction);
// Insert: right after the cursor; the new element becomes the cursor.
bool HPGLinsertListElement(HPGLList* list, const void* data, uint8_t type, uint16_t size, HPGLPrintFunction print,
                           HPGLFreeFunction freeFunction);
// Replace: inserts behind the cursor's element and removes that one, which leaves the cursor where a removal leaves it.
bool HPGLreplaceActualListElement(HPGLList* list, const void* data, uint8_t type, uint16_t size,
                                  HPGLPrintFunction print, HPGLFreeFunction freeFunction);

// Overwrites the cursor's data in place; false with a trace line when there is no cursor or it holds less than `size`.
bool HPGLputDataIntoActualListElement(HPGLList* list, const void* data, uint8_t type, uint16_t size);

// The cursor's data (the list's own) and, where asked for, its type and size; false without a cursor or data.
bool HPGLgetActualListData(HPGLList* list, void** data, uint8_t* type, uint16_t* size);
// The same after one step of the cursor.
bool HPGLgetNextListData(HPGLList* list, void** data, uint8_t* type, uint16_t* size);
bool HPGLgetPrevListData(HPGLList* list, void** data, uint8_t* type, uint16_t* size);

bool HPGLgotoFirst(HPGLList* list);
bool HPGLgotoLast(HPGLList* list);
bool HPGLgotoNext(HPGLList* list);
bool HPGLgotoPrev(HPGLList* list);
// The n-th element from 0; false for a negative n or when the list ends before.
bool HPGLgotoIndex(HPGLList* list, int32_t n);

// Stays when the cursor matches; otherwise goes to the first element that does. False when none does: the cursor is
// then on the last element.
bool HPGLsearchList(HPGLList* list, HPGLCompareFunction compare, const void* key);

bool HPGLmoveActualToEnd(HPGLList* list);
bool HPGLmoveActualToFront(HPGLList* list);

// Removes an element. Where `data` is asked for, the caller owns it from then on (false, and nothing is removed, if
// there is none); otherwise it is freed. A cursor on the element goes to the one before, from the first to the new
// first.
bool HPGLremoveActualListElement(HPGLList* list, void** data, uint8_t* type, uint16_t* size);
bool HPGLremoveLastListElement(HPGLList* list, void** data, uint8_t* type, uint16_t* size);
bool HPGLclearList(HPGLList* list);

uint32_t HPGLgetListCount(const HPGLList* list);
uint16_t HPGLgetActualListSize(const HPGLList* list);
uint8_t HPGLgetActualListType(const HPGLList* list);

// Prints every element to the trace; the cursor stays.
bool HPGLdumpList(HPGLList* list);
// Prints the cursor's element by its print function, or without one by its addresses.
bool HPGLprintListElement(HPGLList* list);
