// The command table and the hash table over it.
#include "hpgl/command_lookup.h"

#include <algorithm>
#include <sstream>
#include <string>

#include "failing_allocator.h"
#include "picture_text.h"
#include "rows.h"

namespace {

// Name and signature in order of the ids.
constexpr std::string_view COMMANDS =
    "HPGL_DATA: HPGL_FILE:C HPGL_INFO: CO: DF: IN: IP:LLLL IR:RRRR IW:LLLL PG: RO:I RP: SC:RRRRIRR AA:LLRR AR:LLRR "
    "AT:LLLLR BR:LLLLLL BZ:LLLLLL CI:LR PA:LL PD:LL PE:CCC PR:LL PU:LL RT:LLLLR EA:LL EP: ER:LL EW:LRRR FP:I PM:I "
    "RA:LL RR:LL WG:LRRR AD:IRIRIRIRIRIRIR CF:IL CP:RR DI:RR DR:RR DT:CI DV:II ES:RR FI:I FN:I LB:C LO:I SA: SB:I "
    "SD:IRIRIRIRIRIRIR SI:RR SL:R SR:RR SS: TD:I AC:LL FT:IRR LA:IIIIIR LT:IRI PW:RI RF:IIII SM:C SP:I SV:III TR:I "
    "UL:IRRRRRRRRRRRRRRRRRR WU:I BP: MC:I NP:I PC:IIII CS: AS: FS: VS: PT: CT: DL: EC: FR: MG: MT: OH: OI: OP: OS: "
    "PS: QL: ST: VR: CR: DC: DP: OD: ";

TEST(CommandTable, HasEveryCommandInOrder) {
    std::string table;
    int64_t id = 0;
    for (const HPGLCommand& row : HPGLCommandTable) {
        EXPECT_EQ(row.id, id++);
        table += std::string(row.name) + ":" + row.signature + " ";
    }
    EXPECT_EQ(table, COMMANDS);
}

// ---- hash and comparison --------------------------------------------------------------------------------------------

TEST(CommandHash, TakesTwoBytesTheSecondHigher) {
    EXPECT_EQ(HPGLhashKey("PA", 114), ('P' + 256 * 'A') % 114);
    EXPECT_EQ(HPGLhashKey("HPGL_DATA", 114), HPGLhashKey("HP", 114));
    EXPECT_EQ(HPGLhashKey("\377\377", 114), 65535 % 114);
    EXPECT_EQ(HPGLhashKey("PA", 1), 0);
    EXPECT_EQ(HPGLhashKey(nullptr, 114), -1);
}

struct CompareRow : NamedRow {
    const char* row;  // a row's name
    const char* key;
    bool equal;
};

// clang-format off
constexpr CompareRow COMPARISONS[] = {
    {"TwoLetters",          "PA",        "PA",          true},
    {"OtherSecond",         "PA",        "PB",          false},
    {"OtherFirst",          "PA",        "RA",          false},
    {"LowerCase",           "PA",        "pa",          false},
    {"TwoOfALongName",      "HPGL_INFO", "HP",          true},
    {"TextBehindTheName",   "PA",        "PA10,20",     true},
    {"WholeLongName",       "HPGL_INFO", "HPGL_INFO",   true},
    {"TextBehindLongName",  "HPGL_INFO", "HPGL_INFO;",  true},
    {"PartOfALongName",     "HPGL_INFO", "HPGL_INF",    false},
    {"ThreeOfALongName",    "HPGL_INFO", "HPG",         false},
    {"OtherLongName",       "HPGL_INFO", "HPGL_DATA",   false},
};
// clang-format on

class CommandComparison : public testing::TestWithParam<CompareRow> {};

TEST_P(CommandComparison, DependsOnTheKeysLength) {
    const HPGLCommand row = {0, GetParam().row, ""};
    EXPECT_EQ(HPGLcompareCommand(&row, GetParam().key), GetParam().equal);
}
INSTANTIATE_TEST_SUITE_P(Rows, CommandComparison, testing::ValuesIn(COMPARISONS), byRowName);

// ---- look-up --------------------------------------------------------------------------------------------------------

class CommandLookup : public testing::Test {
  protected:
    void TearDown() override { HPGLdestroyHashTable(table); }
    int64_t idOf(const char* key) const {
        const HPGLCommand* row = HPGLlookupCommand(table, HPGLcompareCommand, key);
        return row != nullptr ? row->id : -1;
    }
    const FreshViewer viewer;
    const failing_allocator::Guard allocator;
    HashTable* table = HPGLcreateCommandHashTable();
};

TEST_F(CommandLookup, FindsEveryName) {
    for (const HPGLCommand& row : HPGLCommandTable)
        EXPECT_EQ(idOf(row.name), row.id) << row.name;
}

struct LookupRow : NamedRow {
    const char* key;
    int64_t id;
};

// clang-format off
constexpr LookupRow LOOKUPS[] = {
    {"Upper",        "PA",           19}, {"Lower",       "pa",          -1},
    {"Mixed",        "Pa",           -1}, {"Unknown",     "ZZ",          -1},
    {"Numbers",      "12",           -1}, {"HighBytes",   "\377\376",    -1},
    {"Pseudo",       "HP",           0},  {"Data",        "HPGL_DATA",   0},
    {"File",         "HPGL_FILE:a",  1},  {"Info",        "HPGL_INFO;",  2},
    {"OtherPseudo",  "HPGL_XYZ",     -1}, {"CutPseudo",   "HPGL_",       -1},
    {"RunningText",  "PD1,2;",       20}, {"Nothing",      "\0\0",            -1},
};
// clang-format on

class CommandLookupKey : public CommandLookup, public testing::WithParamInterface<LookupRow> {};

TEST_P(CommandLookupKey, FindsTheRow) {
    EXPECT_EQ(idOf(GetParam().key), GetParam().id);
    EXPECT_EQ(idOf(GetParam().key), GetParam().id) << "the second time";
}
INSTANTIATE_TEST_SUITE_P(Rows, CommandLookupKey, testing::ValuesIn(LOOKUPS), byRowName);

TEST_F(CommandLookup, FindsNothingWithoutTableOrKey) {
    EXPECT_EQ(HPGLlookupCommand(nullptr, HPGLcompareCommand, "PA"), nullptr);
    EXPECT_EQ(HPGLlookupCommand(table, HPGLcompareCommand, nullptr), nullptr);
}

TEST_F(CommandLookup, KeepsCopiesOfRows) {
    const HPGLCommand* row = HPGLlookupCommand(table, HPGLcompareCommand, "PA");
    EXPECT_NE(row, &HPGLCommandTable[19]);
    EXPECT_STREQ(row->signature, "LL");
    const HPGLList& bucket = table->buckets[HPGLhashKey("PA", 114)].list;
    EXPECT_STREQ(bucket.name, "hash");
    EXPECT_EQ(bucket.Actual->size, sizeof(HPGLCommand));
    EXPECT_EQ(bucket.Actual->type, 1);
}

// ---- inserting ------------------------------------------------------------------------------------------------------

// Counts of the buckets, and the maximum.
std::string countsOf(const HashTable& table) {
    std::string counts = std::to_string(table.maximumCount) + ":";
    for (int32_t i = 0; i < table.size; ++i) {
        EXPECT_EQ(table.buckets[i].count, static_cast<int32_t>(table.buckets[i].list.count));
        counts.append(" ").append(std::to_string(table.buckets[i].count));
    }
    return counts;
}

TEST_F(CommandLookup, BeginsEmpty) {
    HashTable* empty = createHashTable(3);
    EXPECT_EQ(countsOf(*empty), "0: 0 0 0");
    EXPECT_STREQ(empty->buckets[2].list.name, "hash");
    HPGLdestroyHashTable(empty);
    HPGLdestroyHashTable(nullptr);
}

TEST_F(CommandLookup, WarnsOfDuplicatesAndKeepsTheFirst) {
    const std::string before = countsOf(*table);
    std::string expected;
    for (const HPGLCommand& row : HPGLCommandTable)
        expected += std::string("WARNING-insertObjectIntoHashTable: duplicate Object:  ") + row.name + ", ignore it\n";
    const std::string warnings = traceOf(1, [&] {
        for (HPGLCommand row : HPGLCommandTable) {
            row.id = 99;
            EXPECT_EQ(insertObjectIntoHashTable(table, row.name, &row, sizeof row, nullptr, HPGLcompareCommand), 0);
        }
    });
    EXPECT_EQ(warnings, expected);
    EXPECT_EQ(std::ranges::count(warnings, '\n'), 93);
    EXPECT_EQ(countsOf(*table), before);
    EXPECT_EQ(idOf("OD"), 92);
}

TEST_F(CommandLookup, CountsAnElementThatMemoryWasLackingFor) {
    for (int allocation = 0; allocation < 2; ++allocation) {
        HashTable* small = createHashTable(1);
        failing_allocator::failAfter(allocation);
        const std::string lines = traceOf(3, [&] {
            EXPECT_EQ(insertObjectIntoHashTable(small, "PA", &HPGLCommandTable[19], sizeof(HPGLCommand), nullptr,
                                                HPGLcompareCommand),
                      0);
        });
        failing_allocator::reset();
        EXPECT_EQ(lines, "");
        EXPECT_EQ(small->buckets[0].count, 1);
        EXPECT_EQ(small->maximumCount, 1);
        EXPECT_EQ(HPGLlookupCommand(small, HPGLcompareCommand, "PA"), nullptr);
        HPGLdestroyHashTable(small);
    }
}

TEST_F(CommandLookup, ReportsWhatItCannotAllocate) {
    const std::string whole =
        "createHashTable: Cant allocate " + std::to_string(sizeof(HashTable)) + " bytes for Hashtable\n";
    const std::string entries =
        "createHashTable: Cant allocate " + std::to_string(114 * sizeof(HashBucket)) + " bytes for Hashtable entries\n";
    for (int allocation = 0; allocation < 2; ++allocation) {
        EXPECT_EQ(traceOf(1,
                          [&] {
                              failing_allocator::failAfter(allocation);
                              EXPECT_EQ(createHashTable(114), nullptr);
                              failing_allocator::reset();
                          }),
                  allocation == 0 ? whole : entries);
    }
}

// ---- statistics -----------------------------------------------------------------------------------------------------

void insert(HashTable* table, std::string_view names) {
    std::istringstream words{std::string(names)};
    const HPGLPrintFunction print = HPGLCommandTable[19].id == 19 ? [](const void*) {} : HPGLPrintFunction{};
    for (std::string name; words >> name;) {
        const auto* row = std::ranges::find(HPGLCommandTable, name, &HPGLCommand::name);
        insertObjectIntoHashTable(table, row->name, row, sizeof *row, print, HPGLcompareCommand);
    }
}

TEST_F(CommandLookup, ListsBucketsAndCollisions) {
    // Second letters weigh 256, even: the first letter alone says which of two buckets.
    HashTable* small = createHashTable(2);
    insert(small, "PA PD PU");
    EXPECT_EQ(traceOf(3, [&] { HPGLhashStatistics(small); }),
              "0.Bucket: Count:  3\n"
              "1.Bucket: Count:  0\n"
              "CollisionStatistics:\n"
              "0.Elements:  1\n"
              "1.Elements:  0\n"
              "2.Elements:  0\n"
              "3.Elements:  1\n"
              "HashTableSize:  2   TotalNoOfCollisions:  2\n"
              "TotalNoOfCollisions:  2\n"
              "TotalNoOfElements:  3\n"
              "\n\n");
    EXPECT_EQ(traceOf(2, [&] { HPGLhashStatistics(small); }), "");
    HPGLdestroyHashTable(small);
}

TEST_F(CommandLookup, ListsAllCommands) {
    const std::string lines = traceOf(3, [&] { HPGLhashStatistics(table); });
    const int32_t pseudo = HPGLhashKey("HP", 114);
    EXPECT_NE(lines.find(std::to_string(pseudo) + ".Bucket: Count:  " + std::to_string(table->buckets[pseudo].count)),
              std::string::npos);
    for (const HPGLCommand& row : HPGLCommandTable) {
        const std::string expected =
            std::string(" CmdName: ") + row.name + ", " + std::to_string(row.id) + ", " + row.signature;
        EXPECT_NE(lines.find(expected), std::string::npos) << expected;
    }
    EXPECT_NE(lines.find("\n113.Bucket: Count:  "), std::string::npos);
    EXPECT_EQ(lines.find("\n114.Bucket: Count:  "), std::string::npos);
    EXPECT_TRUE(lines.ends_with("TotalNoOfElements:  93\n\n\n")) << lines;
}

TEST_F(CommandLookup, WritesNoStatisticsWithoutMemory) {
    EXPECT_EQ(traceOf(3,
                      [&] {
                          failing_allocator::failAfter(0);
                          HPGLhashStatistics(table);
                          failing_allocator::reset();
                      }),
              "");
}

}  // namespace
