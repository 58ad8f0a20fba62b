// Finding a command by its name: a chained hash table over the first two characters.
#pragma once

#include <cstdint>

#include "hpgl/command_table.h"
#include "hpgl/list.h"

inline constexpr int32_t HPGL_HASH_BUCKETS = 114;

struct HashBucket {
    HPGLList list;  // named "hash"; elements are copies of command table rows
    int32_t count;
};

struct HashTable {
    int32_t size;          // buckets
    int32_t maximumCount;  // the most elements that any bucket holds
    HashBucket* buckets;
};

// The key's first two bytes, the second the higher, modulo the number of buckets; -1 for a null key.
int32_t HPGLhashKey(const char* key, int32_t size);

// Whether a row is what the key asks for. A key of two characters asks for a row by its first two; a longer one for a
// row whose whole name it begins with, so that it may be running text.
bool HPGLcompareCommand(const void* row, const void* key);

// A table of `size` empty buckets; null, after an error line, when memory is lacking.
HashTable* createHashTable(int32_t size);

// Appends a copy of `length` bytes of data to the key's bucket unless one there compares equal, which gives a warning.
// Always 0.
int32_t insertObjectIntoHashTable(HashTable* table, const char* key, const void* data, uint16_t length,
                                  HPGLPrintFunction print, HPGLCompareFunction compare);

// A table with the 93 commands; null when it could not be created.
HashTable* HPGLcreateCommandHashTable();

// The table's row for a key (two characters and a terminator, or running text), or null.
const HPGLCommand* HPGLlookupCommand(HashTable* table, HPGLCompareFunction compare, const char* key);

// Writes buckets and collisions to the trace.
void HPGLhashStatistics(HashTable* table);

void HPGLdestroyHashTable(HashTable* table);
