// What the system says of itself and its user: environment, version, machine, language, modules.
#include <dlfcn.h>
#include <gtest/gtest.h>

#include <array>
#include <clocale>
#include <cstdlib>
#include <filesystem>
#include <string>

#include "platform/posix.h"

namespace {

namespace fs = std::filesystem;

// ---- environment ---------------------------------------------------------------------------------------------------

TEST(Environment, AnswersLengthNothingOrTheRoomNeeded) {
    std::array<char, 6> value{};
    setenv("KEL_TEST", "12345", 1);
    EXPECT_EQ(posix::environmentVariable("KEL_TEST", value.data(), 6), 5U);
    EXPECT_STREQ(value.data(), "12345");
    setenv("KEL_TEST", "123456", 1);
    EXPECT_EQ(posix::environmentVariable("KEL_TEST", value.data(), 6), 7U);
    EXPECT_STREQ(value.data(), "");
    EXPECT_EQ(posix::environmentVariable("KEL_TEST", nullptr, 0), 7U);
    unsetenv("KEL_TEST");
    EXPECT_EQ(posix::environmentVariable("KEL_TEST", value.data(), 6), 0U);
}

// ---- version and machine -------------------------------------------------------------------------------------------

TEST(System, IsOfTheNtFamily) {
    OSVERSIONINFOA info{};
    EXPECT_EQ(posix::versionInfo(&info), 0);  // its size was not filled in
    info.dwOSVersionInfoSize = sizeof info;
    EXPECT_EQ(posix::versionInfo(&info), 1);
    EXPECT_EQ(info.dwPlatformId, 2U);
    EXPECT_EQ(info.dwMajorVersion, 10U);
    EXPECT_EQ(info.dwMinorVersion, 0U);
}

TEST(System, KnowsTheMachine) {
    SYSTEM_INFO info{};
    posix::systemInfo(&info);
    EXPECT_GE(info.dwPageSize, 4096U);
    EXPECT_GE(info.dwNumberOfProcessors, 1U);
#if defined(__x86_64__)
    EXPECT_EQ(info.dwProcessorType, 8664U);
#endif
}

// ---- profile -------------------------------------------------------------------------------------------------------

// Puts LC_ALL back at its end.
class Profile : public testing::Test {
  protected:
    void SetUp() override { before_ = std::getenv("LC_ALL") != nullptr ? std::getenv("LC_ALL") : ""; }
    void TearDown() override { before_.empty() ? unsetenv("LC_ALL") : setenv("LC_ALL", before_.c_str(), 1); }

    static std::string value(const char* key) {
        std::array<char, 64> text{};
        posix::profileString("intl", key, "none", text.data(), text.size());
        return text.data();
    }

  private:
    std::string before_;
};

TEST_F(Profile, OfTheCLocale) {
    setenv("LC_ALL", "C", 1);
    EXPECT_EQ(value("sLanguage"), "none");
    EXPECT_EQ(value("sCountry"), "none");
    EXPECT_EQ(value("sShortDate"), "MM/dd/yy");
    EXPECT_EQ(value("sCurrency"), "none");
    EXPECT_EQ(value("sThousand"), "none");
    EXPECT_EQ(value("sDecimal"), ".");
    EXPECT_EQ(posix::profileInt("intl", "iCountry", 7), 7U);
}

TEST_F(Profile, OfALocaleThatIsNotInstalled) {
    setenv("LC_ALL", "xx_XX.UTF-8", 1);
    EXPECT_EQ(value("sDecimal"), ".");
}

TEST_F(Profile, OfGermany) {
    const locale_t german = newlocale(LC_ALL_MASK, "de_DE.UTF-8", nullptr);
    if (german == nullptr) GTEST_SKIP() << "no locale de_DE.UTF-8 here";
    freelocale(german);
    setenv("LC_ALL", "de_DE.UTF-8", 1);
    EXPECT_EQ(value("sLanguage"), "DEU");
    EXPECT_EQ(value("sCountry"), "Deutschland");
    EXPECT_EQ(value("sShortDate"), "dd.MM.yyyy");
    EXPECT_EQ(value("sCurrency"), "€");
    EXPECT_EQ(value("sThousand"), ".");
    EXPECT_EQ(value("sDecimal"), ",");
    EXPECT_EQ(posix::profileInt("intl", "iCountry", 0), 49U);
    EXPECT_STREQ(std::localeconv()->decimal_point, ".");  // the process's own locale stays
}

TEST_F(Profile, OtherSectionsAndKeysHaveNoValues) {
    std::array<char, 5> text{};
    EXPECT_EQ(posix::profileString("fonts", "sDecimal", "fallback", text.data(), text.size()), 4U);
    EXPECT_STREQ(text.data(), "fall");
    EXPECT_EQ(posix::profileString("intl", "sList", nullptr, text.data(), text.size()), 0U);
    EXPECT_STREQ(text.data(), "");
    EXPECT_EQ(posix::profileInt("fonts", "iCountry", 3), 3U);
}

// ---- modules -------------------------------------------------------------------------------------------------------

TEST(Modules, UnknownOnesAreNotFound) {
    EXPECT_EQ(posix::moduleHandle("KELNOSUCHMODULE"), nullptr);
    EXPECT_EQ(posix::loadLibrary("KELNOSUCHMODULE"), nullptr);
    EXPECT_EQ(posix::procAddress(nullptr, "main"), nullptr);
    EXPECT_EQ(posix::freeLibrary(nullptr), 0);
}

TEST(Modules, ProgramIsAModule) {
    const HMODULE program = posix::moduleHandle(nullptr);
    ASSERT_NE(program, nullptr);
    std::array<char, 4096> name{};
    const DWORD length = posix::moduleFileName(nullptr, name.data(), name.size());
    EXPECT_EQ(std::string(name.data()), fs::read_symlink("/proc/self/exe").string());
    EXPECT_EQ(length, std::string(name.data()).size());
    EXPECT_EQ(posix::moduleFileName(program, name.data(), 5), 4U);
    EXPECT_EQ(std::string(name.data()).size(), 4U);
    EXPECT_EQ(posix::moduleFileName(program, nullptr, 0), 0U);
}

TEST(Modules, LibraryHasNameAndEntries) {
    const auto library = static_cast<HMODULE>(dlopen("libc.so.6", RTLD_LAZY));
    ASSERT_NE(library, nullptr);
    std::array<char, 256> name{};
    posix::moduleFileName(library, name.data(), name.size());
    EXPECT_TRUE(std::string(name.data()).ends_with("/libc.so.6"));
    EXPECT_NE(posix::procAddress(library, "malloc"), nullptr);
    EXPECT_EQ(posix::procAddress(library, "KELNoSuchEntry"), nullptr);
    EXPECT_EQ(posix::freeLibrary(library), 1);
}

}  // namespace
