// The list with a cursor.
#include "hpgl/list.h"

#include <cstdlib>
#include <cstring>
#include <functional>
#include <string>

#include "failing_allocator.h"
#include "picture_text.h"
#include "rows.h"
#include "trace/trace.h"

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

struct OperationRow : NamedRow {
    const char* before;
    bool (*operation)(HPGLList*);
    int32_t cursor;
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
    {"AppendToEmpty",       "",     appendNew,            0, true,  "[n]",    ""},
    {"AppendKeepsCursor",   "ab",   appendNew,            0, true,  "[a]bn",  ""},
    {"AppendAtLast",        "ab",   appendNew,            1, true,  "a[b]n",  ""},
    {"PrependToEmpty",      "",     prependNew,           0, true,  "[n]",    ""},
    {"PrependKeepsCursor",  "ab",   prependNew,           1, true,  "na[b]",  ""},
    {"InsertIntoEmpty",     "",     insertNew,            0, true,  "[n]",    ""},
    {"InsertInside",        "abc",  insertNew,            0, true,  "a[n]bc", ""},
    {"InsertAtLast",        "abc",  insertNew,            2, true,  "abc[n]", ""},
    {"ReplaceFirst",        "abc",  replaceWithNew,       0, true,  "[n]bc",  "a"},
    {"ReplaceInside",       "abc",  replaceWithNew,       1, true,  "[a]nc",  "b"},
    {"ReplaceLast",         "abc",  replaceWithNew,       2, true,  "a[b]n",  "c"},
    {"ReplaceOnly",         "a",    replaceWithNew,       0, true,  "[n]",    "a"},
    {"Put",                 "abc",  putNew,               1, true,  "a[n]c",  ""},
    {"RemoveOnly",          "a",    removeActual,         0, true,  "",       "a"},
    {"RemoveFirst",         "abc",  removeActual,         0, true,  "[b]c",   "a"},
    {"RemoveInside",        "abc",  removeActual,         1, true,  "[a]c",   "b"},
    {"RemoveAtEnd",         "abc",  removeActual,         2, true,  "a[b]",   "c"},
    {"RemoveFromEmpty",     "",     removeActual,         0, false, "",       ""},
    {"RemoveLastOfMany",    "abc",  removeLast,           0, true,  "[a]b",   "c"},
    {"RemoveLastAtCursor",  "abc",  removeLast,           2, true,  "a[b]",   "c"},
    {"RemoveLastOnly",      "a",    removeLast,           0, true,  "",       "a"},
    {"RemoveLastFromEmpty", "",     removeLast,           0, false, "",       ""},
    {"GotoFirst",           "abc",  HPGLgotoFirst,        1, true,  "[a]bc",  ""},
    {"GotoFirstOfEmpty",    "",     HPGLgotoFirst,        0, false, "",       ""},
    {"GotoLast",            "abc",  HPGLgotoLast,         1, true,  "ab[c]",  ""},
    {"GotoLastOfEmpty",     "",     HPGLgotoLast,         0, false, "",       ""},
    {"GotoNext",            "abc",  HPGLgotoNext,         1, true,  "ab[c]",  ""},
    {"GotoNextAtEnd",       "abc",  HPGLgotoNext,         2, false, "ab[c]",  ""},
    {"GotoPrev",            "abc",  HPGLgotoPrev,         1, true,  "[a]bc",  ""},
    {"GotoPrevAtFront",     "abc",  HPGLgotoPrev,         0, false, "[a]bc",  ""},
    {"GotoIndexFirst",      "abc",  gotoIndex<0>,         1, true,  "[a]bc",  ""},
    {"GotoIndexLast",       "abc",  gotoIndex<2>,         1, true,  "ab[c]",  ""},
    {"GotoIndexBehind",     "abc",  gotoIndex<3>,         1, false, "a[b]c",  ""},
    {"GotoIndexNegative",   "abc",  gotoIndex<-1>,        1, false, "a[b]c",  ""},
    {"GotoIndexOfEmpty",    "",     gotoIndex<0>,         0, false, "",       ""},
    {"SearchAtCursor",      "aba",  search<'a'>,          2, true,  "ab[a]",  ""},
    {"SearchFromFront",     "aba",  search<'a'>,          1, true,  "[a]ba",  ""},
    {"SearchForward",       "abc",  search<'c'>,          0, true,  "ab[c]",  ""},
    {"SearchInVain",        "abc",  search<'x'>,          0, false, "ab[c]",  ""},
    {"SearchEmpty",         "",     search<'x'>,          0, false, "",       ""},
    {"MoveToEnd",           "abc",  HPGLmoveActualToEnd,  0, true,  "bc[a]",  ""},
    {"MoveInsideToEnd",     "abc",  HPGLmoveActualToEnd,  1, true,  "ac[b]",  ""},
    {"MoveLastToEnd",       "abc",  HPGLmoveActualToEnd,  2, true,  "ab[c]",  ""},
    {"MoveOnlyToEnd",       "a",    HPGLmoveActualToEnd,  0, true,  "[a]",    ""},
    {"MoveToEndOfEmpty",    "",     HPGLmoveActualToEnd,  0, false, "",       ""},
    {"MoveToFront",         "abc",  HPGLmoveActualToFront,2, true,  "[c]ab",  ""},
    {"MoveInsideToFront",   "abc",  HPGLmoveActualToFront,1, true,  "[b]ac",  ""},
    {"MoveFirstToFront",    "abc",  HPGLmoveActualToFront,0, true,  "[a]bc",  ""},
    {"MoveOnlyToFront",     "a",    HPGLmoveActualToFront,0, true,  "[a]",    ""},
    {"MoveToFrontOfEmpty",  "",     HPGLmoveActualToFront,0, false, "",       ""},
    {"Next",                "abc",  next,                 1, true,  "ab[c]",  ""},
    {"NextAtEnd",           "abc",  next,                 2, false, "ab[c]",  ""},
    {"Previous",            "abc",  previous,             1, true,  "[a]bc",  ""},
    {"PreviousAtFront",     "abc",  previous,             0, false, "[a]bc",  ""},
    {"Actual",              "abc",  actual,               1, true,  "a[b]c",  ""},
    {"ActualOfEmpty",       "",     actual,               0, false, "",       ""},
    {"Clear",               "abc",  HPGLclearList,        0, true,  "",       "abc"},
    {"ClearEmpty",          "",     HPGLclearList,        0, true,  "",       ""},
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

struct NameRow : NamedRow {
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
