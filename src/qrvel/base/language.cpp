#include "qrvel/base/language.h"

#include <dlfcn.h>

#include <QDir>
#include <QFile>
#include <QLibraryInfo>
#include <QLocale>
#include <QRegularExpression>
#include <QStandardPaths>
#include <algorithm>
#include <optional>
#include <span>
#include <string_view>

#include "qrvel/base/application.h"
#include "qrvel/base/configuration.h"
#include "qrvel/base/keyed_texts.h"
#include "qrvel/base/text_buffer.h"
#include "qrvel/base/toolkit_trace.h"

namespace qrvel {

namespace {

bool isEnglish(const QString& language) {
    static const QRegularExpression pattern("^(en([_-].*)?|english|c|posix)$",
                                            QRegularExpression::CaseInsensitiveOption);
    return pattern.match(language).hasMatch();
}

// A language is part of a file name, so it must not lead anywhere else.
bool isPlainName(const QString& language) {
    static const QRegularExpression pattern("^[A-Za-z0-9_-]+$");
    return pattern.match(language).hasMatch();
}

// Where this library lies; its texts lie beside it or, once installed, in the data folder next to its own.
QString libraryFolder() {
    Dl_info info = {};
    if (dladdr(reinterpret_cast<void*>(&Wloadtxt), &info) == 0 || info.dli_fname == nullptr) return ".";
    return QFileInfo(QFile::decodeName(info.dli_fname)).canonicalPath();
}

QStringList textFolders() {
    const QString named = namedConfigurationFolder();
    QStringList folders;
    if (!named.isEmpty()) folders += named + "/texts";
    for (const QString& data : QStandardPaths::standardLocations(QStandardPaths::GenericDataLocation)) {
        folders += data + "/kelhpgl/texts";
    }
    folders += libraryFolder() + "/../share/kelhpgl/texts";
    folders += libraryFolder() + "/texts";
    return folders;
}

std::optional<Language> findExactly(const QString& application, const QString& name) {
    if (!isPlainName(name)) return std::nullopt;
    for (const QString& folder : textFolders()) {
        if (auto texts = readKeyedTexts(folder + '/' + application + '_' + name + ".txt"))
            return Language{name, *texts};
    }
    return std::nullopt;
}

// A language by a locale's name: the country's variant, or the language itself.
std::optional<Language> findLanguage(const QString& application, const QString& locale) {
    static const QRegularExpression encoding("[.@].*");
    static const QRegularExpression country("[_-].*");
    QString name = locale;
    if (isEnglish(name.remove(encoding))) return Language{};
    if (auto variant = findExactly(application, name)) return variant;
    return findExactly(application, name.remove(country));
}

// The configured language; without one the session's, or English. Nothing when the configured one is not there.
std::optional<Language> chosenLanguage(const Application& app, const QString& application) {
    const QString configured = configurationValue(app, "LANG").value_or(QByteArray());
    if (configured.isEmpty()) return findLanguage(application, QLocale::system().name()).value_or(Language());
    auto language = findLanguage(application, configured);
    if (!language) traceLine("Wloadtxt: no texts for the language %s\n", qUtf8Printable(configured));
    return language;
}

// Where the text of a key stands; null for a key that was not asked for.
const char* const* slotOf(std::string_view key, std::span<const char* const> keys, const char* const* texts) {
    const auto found = std::find(keys.begin(), keys.end(), key);
    return found != keys.end() ? texts + (found - keys.begin()) : nullptr;
}

// So that what Qt writes (names of keys, buttons of its dialogs) is in the same language.
void translateQt(Application& app) {
    const QString folder = QLibraryInfo::path(QLibraryInfo::TranslationsPath);
    if (app.language.name.isEmpty() || !app.qtTexts.load("qtbase_" + app.language.name, folder)) return;
    QCoreApplication::installTranslator(&app.qtTexts);
}

}  // namespace

}  // namespace qrvel

using namespace qrvel;

int32_t Wloadtxt(WHandle app, const char* application, const char* const* keys, const char** texts, int32_t count,
                 char* buffer, int32_t size) {
    auto* found = handles().find<Application>(app, __func__);
    if (found == nullptr) return 0;
    std::optional<Language> loaded = chosenLanguage(*found, QString::fromUtf8(application));
    if (!loaded) return 0;
    found->language = std::move(*loaded);
    translateQt(*found);
    TextBuffer copies(buffer, size);
    for (int32_t i = 0; i < count; ++i) {
        const auto text = found->language.texts.constFind(keys[i]);
        texts[i] = text != found->language.texts.cend() && !text->isEmpty() ? copies.add(*text) : nullptr;
    }
    const std::span asked(keys, static_cast<std::size_t>(std::max(count, 0)));
    found->loadTitle = slotOf("LOAD01", asked, texts);
    found->loadText = slotOf("LOAD02", asked, texts);
    return 1;
}
