// Environment, version, profile and modules.
#include <dlfcn.h>
#include <langinfo.h>
#include <link.h>

#include <unistd.h>

#include <algorithm>
#include <clocale>
#include <cstdlib>
#include <cstring>
#include <string>
#include <string_view>

#include "platform/posix.h"

namespace {

// ---- strings for callers that bring their own room ------------------------------------------------------------------

// Copies at most size - 1 characters and the terminator; answers the number of characters.
DWORD copyBounded(std::string_view text, LPSTR value, DWORD size) {
    if (value == nullptr || size == 0) return 0;
    const size_t length = std::min<size_t>(text.size(), size - 1);
    text.copy(value, length);
    value[length] = '\0';
    return static_cast<DWORD>(length);
}

// ---- processor ------------------------------------------------------------------------------------------------------

struct Processor {
    WORD architecture;
    DWORD type;
};

#if defined(__x86_64__)
constexpr Processor PROCESSOR{9, 8664};
#elif defined(__aarch64__)
constexpr Processor PROCESSOR{12, 0xAA64};
#elif defined(__i386__)
constexpr Processor PROCESSOR{0, 586};
#else
constexpr Processor PROCESSOR{0xFFFF, 0};
#endif

// ---- profile --------------------------------------------------------------------------------------------------------

// The locale that the environment asks for, beside the process's own, which stays "C" where numbers are read.
// One that is not installed is answered with "C".
class SessionLocale {
  public:
    SessionLocale() : locale_(newlocale(LC_ALL_MASK, "", nullptr)) {
        if (locale_ == nullptr) locale_ = newlocale(LC_ALL_MASK, "C", nullptr);
    }
    ~SessionLocale() { freelocale(locale_); }
    SessionLocale(const SessionLocale&) = delete;
    SessionLocale& operator=(const SessionLocale&) = delete;

    std::string text(nl_item item) const { return nl_langinfo_l(item, locale_); }

  private:
    locale_t locale_;
};

struct DatePart {
    char conversion;  // as in strftime
    std::string_view picture;
};

// clang-format off
constexpr DatePart DATE_PARTS[] = {
    {'d', "dd"},   {'e', "d"},    {'m', "MM"},       {'y', "yy"},         {'Y', "yyyy"}, {'b', "MMM"},
    {'h', "MMM"},  {'B', "MMMM"}, {'a', "ddd"},      {'A', "dddd"},       {'D', "MM/dd/yy"},
    {'F', "yyyy-MM-dd"},          {'x', "MM/dd/yy"}, {'n', " "},          {'t', " "},    {'%', "%"},
};
// clang-format on

std::string_view dateWord(char conversion) {
    for (const DatePart& part : DATE_PARTS) {
        if (part.conversion == conversion) return part.picture;
    }
    return {};
}

// "%d.%m.%Y" becomes "dd.MM.yyyy"; flags and modifiers between the percent sign and its letter say nothing here.
std::string datePicture(const std::string& format) {
    std::string picture;
    for (size_t i = 0; i < format.size(); i++) {
        if (format[i] != '%') {
            picture += format[i];
            continue;
        }
        i = format.find_first_not_of("-_0^#EO", i + 1);
        if (i == std::string::npos) break;
        picture += dateWord(format[i]);
    }
    return picture;
}

std::string capitals(const std::string& text) {
    std::string capital = text;
    for (char& c : capital) {
        if (c >= 'a' && c <= 'z') c = static_cast<char>(c - 'a' + 'A');
    }
    return capital;
}

// The first character says where the symbol stands.
std::string currencySymbol(const std::string& positioned) {
    return positioned.empty() ? positioned : positioned.substr(1);
}

struct IntlRow {
    std::string_view key;
    nl_item item;
    std::string (*shape)(const std::string& text);
};

std::string asIs(const std::string& text) {
    return text;
}

// clang-format off
constexpr IntlRow INTL_ROWS[] = {
    {"sLanguage",  _NL_ADDRESS_LANG_TERM,      capitals},
    {"sCountry",   _NL_ADDRESS_COUNTRY_NAME,   asIs},
    {"iCountry",   _NL_TELEPHONE_INT_PREFIX,   asIs},  // the international dialling code
    {"sShortDate", D_FMT,                      datePicture},
    {"sCurrency",  CRNCYSTR,                   currencySymbol},
    {"sThousand",  THOUSEP,                    asIs},
    {"sDecimal",   RADIXCHAR,                  asIs},
};
// clang-format on

// Empty when the session's locale says nothing about it.
std::string profileValue(LPCSTR section, LPCSTR key) {
    if (section == nullptr || key == nullptr || std::string_view(section) != "intl") return {};
    for (const IntlRow& row : INTL_ROWS) {
        if (row.key == key) return row.shape(SessionLocale().text(row.item));
    }
    return {};
}

// ---- modules --------------------------------------------------------------------------------------------------------

void* openModule(LPCSTR name, int flags) {
    if (name == nullptr) return dlopen(nullptr, RTLD_LAZY | flags);
    return dlopen(("lib" + std::string(name) + ".so").c_str(), RTLD_LAZY | flags);
}

std::string programFile() {
    std::string name(4096, '\0');
    const ssize_t length = readlink("/proc/self/exe", name.data(), name.size());
    name.resize(length > 0 ? static_cast<size_t>(length) : 0);
    return name;
}

// The program itself stands in the linker's list without a name.
std::string moduleFile(HMODULE module) {
    const link_map* map = nullptr;
    if (module == nullptr || dlinfo(module, RTLD_DI_LINKMAP, &map) != 0) return programFile();
    return map->l_name[0] != '\0' ? std::string(map->l_name) : programFile();
}

}  // namespace

namespace posix {

DWORD environmentVariable(LPCSTR name, LPSTR value, DWORD size) {
    const char* found = std::getenv(name);
    if (found == nullptr) return 0;
    const auto length = static_cast<DWORD>(std::strlen(found));
    if (length < size) return copyBounded(found, value, size);
    copyBounded({}, value, size);
    return length + 1;
}

BOOL versionInfo(OSVERSIONINFOA* info) {
    if (info == nullptr || info->dwOSVersionInfoSize < sizeof *info) return 0;
    info->dwMajorVersion = 10;
    info->dwMinorVersion = 0;
    info->dwBuildNumber = 19045;
    info->dwPlatformId = 2;
    info->szCSDVersion[0] = '\0';
    return 1;
}

void systemInfo(SYSTEM_INFO* info) {
    *info = {};
    info->wProcessorArchitecture = PROCESSOR.architecture;
    info->dwProcessorType = PROCESSOR.type;
    info->dwPageSize = static_cast<DWORD>(sysconf(_SC_PAGESIZE));
    info->dwAllocationGranularity = info->dwPageSize;
    info->dwNumberOfProcessors = static_cast<DWORD>(std::max(1L, sysconf(_SC_NPROCESSORS_ONLN)));
}

DWORD profileString(LPCSTR section, LPCSTR key, LPCSTR fallback, LPSTR value, DWORD size) {
    const std::string found = profileValue(section, key);
    if (!found.empty()) return copyBounded(found, value, size);
    return copyBounded(fallback != nullptr ? fallback : "", value, size);
}

UINT profileInt(LPCSTR section, LPCSTR key, int fallback) {
    const std::string found = profileValue(section, key);
    return static_cast<UINT>(found.empty() ? fallback : std::atoi(found.c_str()));
}

HMODULE moduleHandle(LPCSTR name) {
    void* module = openModule(name, RTLD_NOLOAD);
    if (module != nullptr) dlclose(module);  // asking is not holding
    return static_cast<HMODULE>(module);
}

HMODULE loadLibrary(LPCSTR name) {
    return name != nullptr ? static_cast<HMODULE>(openModule(name, 0)) : nullptr;
}

BOOL freeLibrary(HMODULE module) {
    return module != nullptr && dlclose(module) == 0 ? 1 : 0;
}

FARPROC procAddress(HMODULE module, LPCSTR name) {
    return module != nullptr ? reinterpret_cast<FARPROC>(dlsym(module, name)) : nullptr;
}

DWORD moduleFileName(HMODULE module, LPSTR name, DWORD size) {
    return copyBounded(moduleFile(module), name, size);
}

}  // namespace posix
