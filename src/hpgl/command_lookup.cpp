#include "hpgl/command_lookup.h"

#include <cstdlib>
#include <cstring>

#include "trace/trace.h"

namespace {

void printCommand(const void* row) {
    const auto* command = static_cast<const HPGLCommand*>(row);
    TRCTrace(HPGLTraceHandle, TRC_DETAIL, " CmdName: %s, %d, %s", command->name, static_cast<int>(command->id),
             command->signature);
}

HashBucket* bucketOf(HashTable* table, const char* key) {
    const int32_t index = table != nullptr ? HPGLhashKey(key, table->size) : -1;
    return index >= 0 ? &table->buckets[index] : nullptr;
}

void countByFill(const HashTable* table, int32_t* counts) {
    for (int32_t i = 0; i < table->size; ++i) {
        ++counts[table->buckets[i].count];
    }
}

void writeBuckets(HashTable* table) {
    for (int32_t i = 0; i < table->size; ++i) {
        TRCTrace(HPGLTraceHandle, TRC_DETAIL, "%d.Bucket: Count:  %d", i, table->buckets[i].count);
        HPGLdumpList(&table->buckets[i].list);
        TRCTrace(HPGLTraceHandle, TRC_DETAIL, "\n");
    }
}

void writeCollisions(const HashTable* table, const int32_t* counts) {
    int32_t elements = 0;
    int32_t collisions = 0;
    TRCTrace(HPGLTraceHandle, TRC_DETAIL, "CollisionStatistics:\n");
    for (int32_t k = 0; k <= table->maximumCount; ++k) {
        TRCTrace(HPGLTraceHandle, TRC_DETAIL, "%d.Elements:  %d\n", k, counts[k]);
        elements += k * counts[k];
        if (k > 0) collisions += (k - 1) * counts[k];
    }
    TRCTrace(HPGLTraceHandle, TRC_DETAIL, "HashTableSize:  %d   TotalNoOfCollisions:  %d\n", table->size, collisions);
    TRCTrace(HPGLTraceHandle, TRC_DETAIL, "TotalNoOfCollisions:  %d\n", collisions);
    TRCTrace(HPGLTraceHandle, TRC_DETAIL, "TotalNoOfElements:  %d\n", elements);
    TRCTrace(HPGLTraceHandle, TRC_DETAIL, "\n\n");
}

}  // namespace

int32_t HPGLhashKey(const char* key, int32_t size) {
    if (key == nullptr) return -1;
    const auto b0 = static_cast<uint8_t>(key[0]);
    const auto b1 = static_cast<uint8_t>(key[1]);
    return (b0 + 256 * b1) % size;
}

bool HPGLcompareCommand(const void* row, const void* key) {
    const char* name = static_cast<const HPGLCommand*>(row)->name;
    const char* text = static_cast<const char*>(key);
    const bool longer = text[0] != '\0' && text[1] != '\0' && text[2] != '\0';
    return strncmp(text, name, longer ? strlen(name) : 2) == 0;
}

HashTable* createHashTable(int32_t size) {
    auto* table = static_cast<HashTable*>(malloc(sizeof(HashTable)));
    if (table == nullptr) {
        TRCTraceError(HPGLTraceHandle, "createHashTable: Cant allocate %d bytes for Hashtable\n",
                      static_cast<int>(sizeof(HashTable)));
        return nullptr;
    }
    const size_t bytes = static_cast<size_t>(size) * sizeof(HashBucket);
    *table = {size, 0, static_cast<HashBucket*>(malloc(bytes))};
    if (table->buckets == nullptr) {
        TRCTraceError(HPGLTraceHandle, "createHashTable: Cant allocate %d bytes for Hashtable entries\n",
                      static_cast<int>(bytes));
        free(table);
        return nullptr;
    }
    for (int32_t i = 0; i < size; ++i) {
        HPGLinitList(&table->buckets[i].list, "hash");
        table->buckets[i].count = 0;
    }
    return table;
}

int32_t insertObjectIntoHashTable(HashTable* table, const char* key, const void* data, uint16_t length,
                                  HPGLPrintFunction print, HPGLCompareFunction compare) {
    HashBucket* bucket = bucketOf(table, key);
    if (bucket == nullptr) return 0;
    if (HPGLsearchList(&bucket->list, compare, key)) {
        TRCTraceError(HPGLTraceHandle, "WARNING-insertObjectIntoHashTable: duplicate Object:  %s, ignore it\n", key);
        return 0;
    }
    // An element that memory is lacking for is silently absent, yet counted.
    HPGLappendListElement(&bucket->list, data, 1, length, print, nullptr);
    if (++bucket->count > table->maximumCount) table->maximumCount = bucket->count;
    return 0;
}

HashTable* HPGLcreateCommandHashTable() {
    HashTable* table = createHashTable(HPGL_HASH_BUCKETS);
    for (const HPGLCommand& row : HPGLCommandTable) {
        insertObjectIntoHashTable(table, row.name, &row, sizeof row, printCommand, HPGLcompareCommand);
    }
    return table;
}

const HPGLCommand* HPGLlookupCommand(HashTable* table, HPGLCompareFunction compare, const char* key) {
    HashBucket* bucket = bucketOf(table, key);
    if (bucket == nullptr || !HPGLgotoFirst(&bucket->list)) return nullptr;
    if (!HPGLsearchList(&bucket->list, compare, key)) return nullptr;
    return static_cast<const HPGLCommand*>(bucket->list.Actual->data);
}

void HPGLhashStatistics(HashTable* table) {
    if (table == nullptr || !TRCAdmits(HPGLTraceHandle, TRC_DETAIL)) return;
    const auto kinds = static_cast<size_t>(table->maximumCount) + 1;
    auto* counts = static_cast<int32_t*>(calloc(kinds, sizeof(int32_t)));
    if (counts == nullptr) return;
    countByFill(table, counts);
    writeBuckets(table);
    writeCollisions(table, counts);
    free(counts);
}

void HPGLdestroyHashTable(HashTable* table) {
    if (table == nullptr) return;
    for (int32_t i = 0; i < table->size; ++i) {
        HPGLclearList(&table->buckets[i].list);
    }
    free(table->buckets);
    free(table);
}
