// The list with a cursor.
#include "list.h"

#include <cstdlib>
#include <cstring>
#include <functional>
#include <string>

#include "failing_allocator.h"
#include "picture_text.h"
#include "rows.h"
#include "trace.h"

namespace {

std::string freed;
std::string printed;

void freeLetter(void* data) {
    freed += *static_cast<char*>(data);
    free(data);
}
void printLetter(const void* data) {
    printed += *static_cast<const char*>(data);
}
bool isLetter(const void* data, const void* key) {
    return *static_cast<const char*>(data) == *static_cast<const char*>(key);
}

bool append(HPGLList* list, char letter) {
    return HPGLappendListElement(list, &letter, 1, 1, printLetter, freeLetter);
}

char letterOf(const HPGLListElement* element) {
    return element != nullptr ? *static_cast<const char*>(element->data) : '-';
}

// The elements from the first, the cursor's in brackets; checks what must hold of every list.
std::string shown(const HPGLList& list) {
    std::string text;
    uint32_t count = 0;
    const HPGLListElement* previous = nullptr;
    for (const HPGLListElement* element = list.first; element != nullptr; element = element->next) {
        EXPECT_EQ(element->previous, previous);
        EXPECT_EQ(element->self, element);
        text += element == list.Actual ? std::string("[") + letterOf(element) + "]" : std::string(1, letterOf(element));
        previous = element;
        ++count;
    }
    EXPECT_EQ(list.last, previous);
    EXPECT_EQ(list.count, count);
    return text;
}

class List : public testing::Test {
  protected:
    void SetUp() override {
        freed.clear();
        printed.clear();
        HPGLinitList(&list, "letters");
    }
    void TearDown() override { HPGLclearList(&list); }
    void fill(const char* letters, int32_t cursor) {
        HPGLclearList(&list);
        freed.clear();
        for (; *letters != '\0'; ++letters)
            append(&list, *letters);
        HPGLgotoIndex(&list, cursor);
    }
    const FreshViewer viewer;
    const failing_allocator::Guard allocator;
    HPGLList list;
};

// ---- one operation: the list before, with the cursor's index, and after ---------------------------------------------

struct OperationRow {
    const char* name;
    const char* before;
    int32_t cursor;
    bool (*operation)(HPGLList*);
    bool answer;
    const char* after;
    const char* freed;
};

constexpr char NEW = 'n';

bool appendNew(HPGLList* list) {
    return append(list, NEW);
}
bool prependNew(HPGLList* list) {
    return HPGLprependListElement(list, &NEW, 1, 1, printLetter, freeLetter);
}
bool insertNew(HPGLList* list) {
    return HPGLinsertListElement(list, &NEW, 1, 1, printLetter, freeLetter);
}
bool replaceWithNew(HPGLList* list) {
    return HPGLreplaceActualListElement(list, &NEW, 1, 1, printLetter, freeLetter);
}
bool putNew(HPGLList* list) {
    return HPGLputDataIntoActualListElement(list, &NEW, 1, 1);
}
bool removeActual(HPGLList* list) {
    return HPGLremoveActualListElement(list, nullptr, nullptr, nullptr);
}
bool removeLast(HPGLList* list) {
    return HPGLremoveLastListElement(list, nullptr, nullptr, nullptr);
}
template <char Letter>
bool search(HPGLList* list) {
    const char key = Letter;
    return HPGLsearchList(list, isLetter, &key);
}
template <int32_t Index>
bool gotoIndex(HPGLList* list) {
    return HPGLgotoIndex(list, Index);
}
bool next(HPGLList* list) {
    void* data = nullptr;
    return HPGLgetNextListData(list, &data, nullptr, nullptr) && data == list->Actual->data;
}
bool previous(HPGLList* list) {
    void* data = nullptr;
    return HPGLgetPrevListData(list, &data, nullptr, nullptr) && data == list->Actual->data;
}
bool actual(HPGLList* list) {
    void* data = nullptr;
    return HPGLgetActualListData(list, &data, nullptr, nullptr) && data == list->Actual->data;
}

// clang-format off
constexpr OperationRow OPERATIONS[] = {
    {"AppendToEmpty",       "",     0, appendNew,            true,  "[n]",    ""},
    {"AppendKeepsCursor",   "ab",   0, appendNew,            true,  "[a]bn",  ""},
    {"AppendAtLast",        "ab",   1, appendNew,            true,  "a[b]n",  ""},
    {"PrependToEmpty",      "",     0, prependNew,           true,  "[n]",    ""},
    {"PrependKeepsCursor",  "ab",   1, prependNew,           true,  "na[b]",  ""},
    {"InsertIntoEmpty",     "",     0, insertNew,            true,  "[n]",    ""},
    {"InsertInside",        "abc",  0, insertNew,            true,  "a[n]bc", ""},
    {"InsertAtLast",        "abc",  2, insertNew,            true,  "abc[n]", ""},
    {"ReplaceFirst",        "abc",  0, replaceWithNew,       true,  "[n]bc",  "a"},
    {"ReplaceInside",       "abc",  1, replaceWithNew,       true,  "[a]nc",  "b"},
    {"ReplaceLast",         "abc",  2, replaceWithNew,       true,  "a[b]n",  "c"},
    {"ReplaceOnly",         "a",    0, replaceWithNew,       true,  "[n]",    "a"},
    {"Put",                 "abc",  1, putNew,               true,  "a[n]c",  ""},
    {"RemoveOnly",          "a",    0, removeActual,         true,  "",       "a"},
    {"RemoveFirst",         "abc",  0, removeActual,         true,  "[b]c",   "a"},
    {"RemoveInside",        "abc",  1, removeActual,         true,  "[a]c",   "b"},
    {"RemoveAtEnd",         "abc",  2, removeActual,         true,  "a[b]",   "c"},
    {"RemoveFromEmpty",     "",     0, removeActual,         false, "",       ""},
    {"RemoveLastOfMany",    "abc",  0, removeLast,           true,  "[a]b",   "c"},
    {"RemoveLastAtCursor",  "abc",  2, removeLast,           true,  "a[b]",   "c"},
    {"RemoveLastOnly",      "a",    0, removeLast,           true,  "",       "a"},
    {"RemoveLastFromEmpty", "",     0, removeLast,           false, "",       ""},
    {"GotoFirst",           "abc",  1, HPGLgotoFirst,        true,  "[a]bc",  ""},
    {"GotoFirstOfEmpty",    "",     0, HPGLgotoFirst,        false, "",       ""},
    {"GotoLast",            "abc",  1, HPGLgotoLast,         true,  "ab[c]",  ""},
    {"GotoLastOfEmpty",     "",     0, HPGLgotoLast,         false, "",       ""},
    {"GotoNext",            "abc",  1, HPGLgotoNext,         true,  "ab[c]",  ""},
    {"GotoNextAtEnd",       "abc",  2, HPGLgotoNext,         false, "ab[c]",  ""},
    {"GotoPrev",            "abc",  1, HPGLgotoPrev,         true,  "[a]bc",  ""},
    {"GotoPrevAtFront",     "abc",  0, HPGLgotoPrev,         false, "[a]bc",  ""},
    {"GotoIndexFirst",      "abc",  1, gotoIndex<0>,         true,  "[a]bc",  ""},
    {"GotoIndexLast",       "abc",  1, gotoIndex<2>,         true,  "ab[c]",  ""},
    {"GotoIndexBehind",     "abc",  1, gotoIndex<3>,         false, "a[b]c",  ""},
    {"GotoIndexNegative",   "abc",  1, gotoIndex<-1>,        false, "a[b]c",  ""},
    {"GotoIndexOfEmpty",    "",     0, gotoIndex<0>,         false, "",       ""},
    {"SearchAtCursor",      "aba",  2, search<'a'>,          true,  "ab[a]",  ""},
    {"SearchFromFront",     "aba",  1, search<'a'>,          true,  "[a]ba",  ""},
    {"SearchForward",       "abc",  0, search<'c'>,          true,  "ab[c]",  ""},
    {"SearchInVain",        "abc",  0, search<'x'>,          false, "ab[c]",  ""},
    {"SearchEmpty",         "",     0, search<'x'>,          false, "",       ""},
    {"MoveToEnd",           "abc",  0, HPGLmoveActualToEnd,  true,  "bc[a]",  ""},
    {"MoveInsideToEnd",     "abc",  1, HPGLmoveActualToEnd,  true,  "ac[b]",  ""},
    {"MoveLastToEnd",       "abc",  2, HPGLmoveActualToEnd,  true,  "ab[c]",  ""},
    {"MoveOnlyToEnd",       "a",    0, HPGLmoveActualToEnd,  true,  "[a]",    ""},
    {"MoveToEndOfEmpty",    "",     0, HPGLmoveActualToEnd,  false, "",       ""},
    {"MoveToFront",         "abc",  2, HPGLmoveActualToFront,true,  "[c]ab",  ""},
    {"MoveInsideToFront",   "abc",  1, HPGLmoveActualToFront,true,  "[b]ac",  ""},
    {"MoveFirstToFront",    "abc",  0, HPGLmoveActualToFront,true,  "[a]bc",  ""},
    {"MoveOnlyToFront",     "a",    0, HPGLmoveActualToFront,true,  "[a]",    ""},
    {"MoveToFrontOfEmpty",  "",     0, HPGLmoveActualToFront,false, "",       ""},
    {"Next",                "abc",  1, next,                 true,  "ab[c]",  ""},
    {"NextAtEnd",           "abc",  2, next,                 false, "ab[c]",  ""},
    {"Previous",            "abc",  1, previous,             true,  "[a]bc",  ""},
    {"PreviousAtFront",     "abc",  0, previous,             false, "[a]bc",  ""},
    {"Actual",              "abc",  1, actual,               true,  "a[b]c",  ""},
    {"ActualOfEmpty",       "",     0, actual,               false, "",       ""},
    {"Clear",               "abc",  0, HPGLclearList,        true,  "",       "abc"},
    {"ClearEmpty",          "",     0, HPGLclearList,        true,  "",       ""},
};
// clang-format on

class ListOperation : public List, public testing::WithParamInterface<OperationRow> {};

TEST_P(ListOperation, ChangesListAndCursor) {
    const OperationRow& row = GetParam();
    fill(row.before, row.cursor);
    EXPECT_EQ(row.operation(&list), row.answer);
    EXPECT_EQ(shown(list), row.after);
    EXPECT_EQ(freed, row.freed);
    if (list.count == 0) {
        EXPECT_EQ(list.Actual, nullptr);
        EXPECT_EQ(list.mark, nullptr);
    }
}

TEST_P(ListOperation, AnswersFalseForNoList) {
    EXPECT_FALSE(GetParam().operation(nullptr));
}
INSTANTIATE_TEST_SUITE_P(Rows, ListOperation, testing::ValuesIn(OPERATIONS), byRowName);

// ---- what an element is ---------------------------------------------------------------------------------------------

struct NameRow {
    const char* name;
    const char* given;
    const char* kept;
};

// clang-format off
constexpr NameRow NAMES[] = {
    {"Short",       "cb",                                 "cb"},
    {"None",        nullptr,                              "UnamedList"},
    {"Empty",       "",                                   ""},
    {"ThirtyTwo",   "abcdefghijklmnopqrstuvwxyz012345",   "abcdefghijklmnopqrstuvwxyz012345"},
    {"ThirtyThree", "abcdefghijklmnopqrstuvwxyz0123456",  "abcdefghijklmnopqrstuvwxyz012345"},
};
// clang-format on

class ListName : public List, public testing::WithParamInterface<NameRow> {};

TEST_P(ListName, HasThirtyTwoCharacters) {
    EXPECT_TRUE(HPGLinitList(&list, GetParam().given));
    EXPECT_EQ(std::string(list.name, strnlen(list.name, 32)), GetParam().kept);
    EXPECT_EQ(shown(list), "");
    EXPECT_EQ(list.Actual, nullptr);
}
INSTANTIATE_TEST_SUITE_P(Rows, ListName, testing::ValuesIn(NAMES), byRowName);

TEST_F(List, KeepsACopy) {
    char data[] = "copied";
    HPGLappendListElement(&list, data, 5, sizeof data, nullptr, nullptr);
    data[0] = 'x';
    void* copy = nullptr;
    uint8_t type = 0;
    uint16_t size = 0;
    ASSERT_TRUE(HPGLgetActualListData(&list, &copy, &type, &size));
    EXPECT_STREQ(static_cast<char*>(copy), "copied");
    EXPECT_EQ(type, 5);
    EXPECT_EQ(size, 7);
    EXPECT_EQ(HPGLgetActualListType(&list), 5);
    EXPECT_EQ(HPGLgetActualListSize(&list), 7);
    EXPECT_EQ(HPGLgetListCount(&list), 1u);
}

TEST_F(List, KeepsTheLargestElement) {
    const std::string data(65535, 'x');
    EXPECT_TRUE(HPGLappendListElement(&list, data.data(), 1, 65535, nullptr, nullptr));
    EXPECT_EQ(HPGLgetActualListSize(&list), 65535);
}

TEST_F(List, CountsNothingWithoutAList) {
    EXPECT_FALSE(HPGLinitList(nullptr, "name"));
    EXPECT_EQ(HPGLgetListCount(nullptr), 0u);
    EXPECT_EQ(HPGLgetActualListSize(nullptr), 0);
    EXPECT_EQ(HPGLgetActualListType(nullptr), 0);
    EXPECT_FALSE(HPGLdumpList(nullptr));
    EXPECT_FALSE(HPGLprintListElement(nullptr));
}

TEST_F(List, HandsDataOut) {
    fill("abc", 1);
    void* data = nullptr;
    uint8_t type = 0;
    uint16_t size = 0;
    ASSERT_TRUE(HPGLremoveActualListElement(&list, &data, &type, &size));
    EXPECT_EQ(*static_cast<char*>(data), 'b');
    EXPECT_EQ(type, 1);
    EXPECT_EQ(size, 1);
    free(data);
    ASSERT_TRUE(HPGLremoveLastListElement(&list, &data, &type, &size));
    EXPECT_EQ(*static_cast<char*>(data), 'c');
    free(data);
    EXPECT_EQ(freed, "");
    EXPECT_EQ(shown(list), "[a]");
}

TEST_F(List, KeepsAnElementThatHasNoDataToHandOut) {
    fill("ab", 0);
    free(list.first->data);
    list.first->data = nullptr;
    void* data = nullptr;
    EXPECT_FALSE(HPGLgetActualListData(&list, &data, nullptr, nullptr));
    EXPECT_FALSE(HPGLremoveActualListElement(&list, &data, nullptr, nullptr));
    EXPECT_EQ(list.count, 2u);
    list.first->data = malloc(1);
    memcpy(list.first->data, "a", 1);
}

TEST_F(List, ClearsWhateverTheCursor) {
    fill("abcd", 2);
    EXPECT_TRUE(HPGLclearList(&list));
    EXPECT_EQ(freed.size(), 4u);
    for (const char letter : {'a', 'b', 'c', 'd'})
        EXPECT_NE(freed.find(letter), std::string::npos);
}

// ---- putting --------------------------------------------------------------------------------------------------------

TEST_F(List, PutsSmallerDataInPlace) {
    HPGLappendListElement(&list, "12345", 1, 5, nullptr, nullptr);
    const void* place = list.first->data;
    EXPECT_TRUE(HPGLputDataIntoActualListElement(&list, "ab", 7, 2));
    EXPECT_EQ(list.first->data, place);
    EXPECT_EQ(memcmp(place, "ab345", 5), 0);
    EXPECT_EQ(HPGLgetActualListSize(&list), 2);
    EXPECT_EQ(HPGLgetActualListType(&list), 7);
    // Its size is what was put last.
    EXPECT_FALSE(HPGLputDataIntoActualListElement(&list, "abc", 7, 3));
}

TEST_F(List, ReportsWhatCannotBePut) {
    EXPECT_EQ(traceOf(1, [&] { EXPECT_FALSE(HPGLputDataIntoActualListElement(&list, "ab", 7, 2)); }),
              "HPGLputDataIntoActualListElement: no List->Actual is invalid\n");
    fill("a", 0);
    EXPECT_EQ(traceOf(1, [&] { EXPECT_FALSE(HPGLputDataIntoActualListElement(&list, "bc", 7, 2)); }),
              "HPGLputDataIntoActualListElement: Data needs more space than available\n");
    EXPECT_EQ(shown(list), "[a]");
    EXPECT_EQ(HPGLgetActualListType(&list), 1);
}

// ---- printing -------------------------------------------------------------------------------------------------------

TEST_F(List, PrintsEveryElementAndKeepsTheCursor) {
    fill("abc", 1);
    EXPECT_TRUE(HPGLdumpList(&list));
    EXPECT_EQ(printed, "abc");
    EXPECT_EQ(shown(list), "a[b]c");
    printed.clear();
    EXPECT_TRUE(HPGLprintListElement(&list));
    EXPECT_EQ(printed, "b");
}

TEST_F(List, PrintsNothingWithoutElementsOrCursor) {
    HPGLdumpList(&list);
    EXPECT_FALSE(HPGLprintListElement(&list));
    fill("abc", 1);
    list.Actual = nullptr;
    HPGLdumpList(&list);
    EXPECT_EQ(printed, "");
    EXPECT_EQ(list.Actual, nullptr);
}

TEST_F(List, PrintsAddressesWithoutAPrintFunction) {
    HPGLappendListElement(&list, "12345", 3, 5, nullptr, nullptr);
    const auto shortened = [](const void* address) {
        return std::to_string(static_cast<int32_t>(reinterpret_cast<uintptr_t>(address)));
    };
    const std::string expected = "ListPnt: " + shortened(list.first) + ", DataPnt: " + shortened(list.first->data) +
                                 ", SizeOfData: 5\n             TypeOfData:  3\n";
    EXPECT_EQ(traceOf(3, [&] { HPGLdumpList(&list); }), expected);
    EXPECT_EQ(traceOf(2, [&] { HPGLdumpList(&list); }), "");
}

TEST_F(List, MovesTheMarkOffARemovedElement) {
    fill("abc", 1);
    HPGLdumpList(&list);  // saves the cursor
    removeActual(&list);
    EXPECT_EQ(letterOf(list.mark), 'a');
    removeActual(&list);
    EXPECT_EQ(letterOf(list.mark), 'c');
    removeActual(&list);
    EXPECT_EQ(list.mark, nullptr);
}

// ---- no memory ------------------------------------------------------------------------------------------------------

TEST_F(List, StaysAsItWasWithoutMemory) {
    for (bool (*add)(HPGLList*) : {appendNew, prependNew, insertNew, replaceWithNew}) {
        for (int allocation = 0; allocation < 2; ++allocation) {
            fill("ab", 0);
            failing_allocator::failAfter(allocation);
            EXPECT_FALSE(add(&list));
            failing_allocator::reset();
            EXPECT_EQ(shown(list), "[a]b");
            EXPECT_EQ(freed, "");
        }
    }
}

}  // namespace
