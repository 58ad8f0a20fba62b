// The viewer's texts in the user's language. English is what the viewer has by itself, so it needs no file.
#include <dlfcn.h>

#include <QDir>
#include <QFile>
#include <QLocale>
#include <QRegularExpression>
#include <QStandardPaths>
#include <optional>

#include "application.h"
#include "configuration.h"
#include "keyed_texts.h"
#include "text_buffer.h"
#include "toolkit_trace.h"

namespace qrvel {

namespace {

using Texts = KeyedTexts;

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

std::optional<Texts> findTexts(const QString& application, const QString& language) {
    if (!isPlainName(language)) return std::nullopt;
    for (const QString& folder : textFolders()) {
        auto texts = readKeyedTexts(folder + '/' + application + '_' + language + ".txt");
        if (texts) return texts;
    }
    return std::nullopt;
}

// The session's language as far as there is one: the country's variant, the language itself, or English.
Texts sessionTexts(const QString& application) {
    const QString locale = QLocale::system().name();
    if (isEnglish(locale)) return {};
    if (auto texts = findTexts(application, locale)) return *texts;
    return findTexts(application, locale.section('_', 0, 0)).value_or(Texts());
}

// The texts of the configured language, or else the session's; nothing when the configured one is not there.
std::optional<Texts> chosenTexts(const QString& application) {
    const QString configured = configurationValue(application, "LANG").value_or(QByteArray()).trimmed();
    if (configured.isEmpty()) return sessionTexts(application);
    if (isEnglish(configured)) return Texts();
    auto texts = findTexts(application, configured);
    if (!texts) traceLine("Wloadtxt: no texts for the language %s\n", qUtf8Printable(configured));
    return texts;
}

}  // namespace

}  // namespace qrvel

using namespace qrvel;

int32_t Wloadtxt(WHandle app, const char* application, const char* const* keys, const char** texts, int32_t count,
                 char* buffer, int32_t size) {
    auto* found = handles().find<Application>(app, __func__);
    if (found == nullptr) return 0;
    const std::optional<Texts> loaded = chosenTexts(QString::fromUtf8(application));
    if (!loaded) return 0;
    TextBuffer copies(buffer, size);
    for (int32_t i = 0; i < count; ++i) {
        const auto text = loaded->constFind(keys[i]);
        texts[i] = text != loaded->cend() ? copies.add(*text) : nullptr;
    }
    found->texts = texts;
    return 1;
}
