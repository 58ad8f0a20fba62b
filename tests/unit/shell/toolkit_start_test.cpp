// Whom the host wants to be told, the toolkit's version, and what the toolkit calls at the end.
#include "shell/toolkit_start.h"

#include <array>
#include <cstdio>

#include "rows.h"
#include "toolkit/wi.h"
#include "viewer_run.h"

namespace {

using recorder::script;

struct OptionRow {
    const char* name;
    const char* first;
    const char* second;
    int32_t id;
    int64_t window;
};

// clang-format off
constexpr OptionRow OPTION_ROWS[] = {
    {"Both",        "-I=12",  "-P=345",           12, 345},
    {"LowerCase",   "-i=12",  "-p=345",           12, 345},
    {"NoValue",     "-I=",    "-P=",               0, 0},
    {"Large",       "-I=-1",  "-P=123456789012",  -1, 123456789012},
    {"NoDigits",    "-I=x",   "-P=7x",             0, 7},
    {"OtherLetter", "-X=12",  "+P=345",            0, 0},
    {"NoEquals",    "-I:12",  "-PP=345",           0, 0},
    {"LastWins",    "-P=1",   "-P=2",              0, 2},
};
// clang-format on

TEST(Notification, IsReadFromTheArguments) {
    for (const OptionRow& row : OPTION_ROWS) {
        std::string program = "-I=99", first = row.first, second = row.second;
        const std::array<char*, 3> values = {program.data(), first.data(), second.data()};
        const HPGLNotification notification = HPGLreadNotification(3, values.data());
        EXPECT_EQ(notification.id, row.id) << row.name;
        EXPECT_EQ(notification.window, row.window) << row.name;
    }
}

// ---- the toolkit's version -----------------------------------------------------------------------------------------

struct VersionRow : NamedRow {
    bool loaded, entry;
    int32_t result;
    uint64_t version;
    uintptr_t handle;
    const char* message;  // its beginning
    const char* calls;
};

#define FIND "GetModuleHandleA \"QRVEL\"\n"
#define LOAD FIND "LoadLibraryA \"QRVEL\"\n"
#define LOOK_UP LOAD "GetProcAddress 4096 \"Wqueryversion\"\n"

// clang-format off
constexpr VersionRow VERSION_ROWS[] = {
    {"Right",        true,  true,  0, 0x00401000,  4096, "",                           LOOK_UP "Wqueryversion 0\nFreeLibrary 4096\n"},
    {"HighBits",     true,  true,  0, 0x700401000,  4096, "",                           LOOK_UP "Wqueryversion 0\nFreeLibrary 4096\n"},
    {"NotThere",     false, true,  1, 0x00401000,  4096, "Unable to find W Lib",       FIND},
    {"NotLoaded",    true,  true,  2, 0x00401000,     0, "Unable to load W Lib",       LOAD},
    {"ErrorHandle",  true,  true,  2, 0x00401000,    31, "Unable to load W Lib",       LOAD "FreeLibrary 31\n"},
    {"NoEntry",      true,  false, 3, 0x00401000,  4096, "Unable to get W Lib Version", LOOK_UP "FreeLibrary 4096\n"},
    {"Older",        true,  true,  4, 0x00400fff,  4096, "\nWrong Version of W Lib\n\n  - W:\t00400FFF (libQRVEL.so)\n  - App:\t00401000 (", nullptr},
    {"Newer",        true,  true,  4, 0x00401001,  4096, "\nWrong Version of W Lib\n\n  - W:\t00401001 (libQRVEL.so)\n  - App:\t00401000 (", nullptr},
};
// clang-format on

class Version : public testing::TestWithParam<VersionRow> {
  protected:
    Version() {
        script.moduleLoaded = GetParam().loaded;
        script.moduleHandle = GetParam().handle;
        script.versionEntry = GetParam().entry;
        script.version = GetParam().version;
    }
    FreshViewer viewer;
};

TEST_P(Version, IsChecked) {
    std::array<char, 256> message{};
    EXPECT_EQ(HPGLcheckToolkitVersion(message.data(), message.size()), GetParam().result);
    EXPECT_TRUE(std::string(message.data()).starts_with(GetParam().message)) << message.data();
    if (GetParam().calls != nullptr) {
        EXPECT_EQ(recorder::calls, GetParam().calls);
    }
    if (GetParam().result != 0 && GetParam().result != 4) {
        EXPECT_STREQ(message.data(), GetParam().message);
    }
}

TEST_P(Version, WrongOneEndsTheProcess) {
    if (GetParam().result == 0) return;
    script.quiet = true;
    script.windows = {reinterpret_cast<HWND>(345)};
    script.atExit = [] {
        const size_t end = recorder::calls.rfind("MessageBoxA ");
        std::fputs(recorder::calls.substr(end).c_str(), stderr);
    };
    std::string line = "-i=12 -p=345";
    EXPECT_EXIT(WinMain(nullptr, nullptr, line.data(), 0), testing::ExitedWithCode(111),
                "^MessageBoxA 0 \".*\" \"KEL Graphics Fatal Error\" 16\n"
                "IsWindow 345\nPostMessageA 345 1537 12 0\nExitProcess 111\n$");
}

INSTANTIATE_TEST_SUITE_P(Rows, Version, testing::ValuesIn(VERSION_ROWS), byRowName);

TEST(VersionMessage, IsWholeOrCut) {
    const FreshViewer viewer;
    std::array<char, 512> whole{};
    std::array<char, 40> cut{};
    script.version = 1;
    HPGLcheckToolkitVersion(whole.data(), whole.size());
    EXPECT_TRUE(std::string(whole.data())
                    .ends_with(")\n\nDelete older version(s) of KEL frontend software and reinstall the latest one."));
    HPGLcheckToolkitVersion(cut.data(), cut.size());
    EXPECT_EQ(std::string(cut.data()), std::string(whole.data()).substr(0, 39));
}

TEST(VersionMessage, NobodyToTell) {
    const FreshViewer viewer;
    script.quiet = true;
    script.version = 1;
    script.atExit = [] { std::fputs(recorder::calls.substr(recorder::calls.rfind("IsWindow")).c_str(), stderr); };
    std::string line = "-p=345";
    EXPECT_EXIT(WinMain(nullptr, nullptr, line.data(), 0), testing::ExitedWithCode(111),
                "^IsWindow 345\nExitProcess 111\n$");
}

// ---- the exit procedure --------------------------------------------------------------------------------------------

class ExitProcedure : public ViewerRun {
  protected:
    static void callWith(int32_t status, bool windowExists) {
        script.mdiClient = true;
        if (windowExists) script.windows = {reinterpret_cast<HWND>(345)};
        script.atExit = [] { std::fputs(recorder::calls.c_str(), stderr); };
        run({[&] {
                recorder::calls.clear();
                cbexit(1, status);
                std::fputs("came back", stderr);
                std::exit(0);
            }},
            "-i=12 -p=345");
    }
};

TEST_F(ExitProcedure, WithoutStatusDoesNothing) {
    EXPECT_EXIT(callWith(0, true), testing::ExitedWithCode(0), "^came back$");
}

TEST_F(ExitProcedure, TellsTheWindow) {
    EXPECT_EXIT(callWith(5, true), testing::ExitedWithCode(5),
                "IsWindow 345\nPostMessageA 345 1537 12 8192\nExitProcess 5\n$");
}

TEST_F(ExitProcedure, TellsNobodyWhoIsGone) {
    EXPECT_EXIT(callWith(5, false), testing::ExitedWithCode(5), "IsWindow 345\nExitProcess 5\n$");
}

}  // namespace
