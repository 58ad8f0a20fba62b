// Font enumeration. The list of families is made once and again when Qt reports a change: the viewer asks at every
// pass.
#include <QFontDatabase>
#include <QGuiApplication>
#include <QPointer>
#include <cstring>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

#include "platform/windows.h"

namespace {

struct Family {
    ENUMLOGFONTA font{};
    DWORD type = RASTER_FONTTYPE;
    QString name;
    QStringList styles;  // read when they are first asked for
};

class FamilyList {
  public:
    static FamilyList& instance();

    // The list as it is now; empty without an application.
    const std::vector<Family>& families();
    // One family with its styles, or null.
    const Family* find(LPCSTR name);

  private:
    void refresh();
    void read();

    QPointer<QCoreApplication> watched_;
    bool current_ = false;
    std::vector<Family> families_;
    std::unordered_map<std::string, size_t> byName_;
};

// Copies what fits and the terminator, without cutting a character of several bytes in two.
template <typename Char, size_t size>
void copyName(Char (&to)[size], const QByteArray& name) {
    auto length = static_cast<size_t>(name.size());
    if (length >= size) {
        length = size - 1;
        while (length > 0 && (name[static_cast<qsizetype>(length)] & 0xC0) == 0x80)
            length--;
    }
    std::memcpy(to, name.constData(), length);
    to[length] = 0;
}

Family describe(const QString& name) {
    Family family;
    family.name = name;
    if (QFontDatabase::isScalable(name)) family.type = TRUETYPE_FONTTYPE;
    copyName(family.font.elfFullName, name.toUtf8());
    copyName(family.font.elfLogFont.lfFaceName, name.toUtf8());
    return family;
}

FamilyList& FamilyList::instance() {
    static FamilyList* const list = new FamilyList;
    return *list;
}

const std::vector<Family>& FamilyList::families() {
    refresh();
    return families_;
}

const Family* FamilyList::find(LPCSTR name) {
    refresh();
    const auto found = byName_.find(name);
    if (found == byName_.end()) return nullptr;
    Family& family = families_[found->second];
    if (family.styles.isEmpty()) family.styles = QFontDatabase::styles(family.name);
    return &family;
}

void FamilyList::refresh() {
    auto* application = qobject_cast<QGuiApplication*>(QCoreApplication::instance());
    if (watched_ != application) {
        watched_ = application;
        current_ = false;
        if (application != nullptr) {
            QObject::connect(application, &QGuiApplication::fontDatabaseChanged, application,
                             [this] { current_ = false; });
        }
    }
    if (!current_) read();
}

// Two names that are the same when cut could not be told apart by the caller: the first one stands for both.
void FamilyList::read() {
    families_.clear();
    byName_.clear();
    current_ = true;
    if (watched_ == nullptr) return;
    for (const QString& name : QFontDatabase::families()) {
        Family family = describe(name);
        const std::string fullName(reinterpret_cast<const char*>(family.font.elfFullName));
        if (byName_.try_emplace(fullName, families_.size()).second) families_.push_back(std::move(family));
    }
}

int report(const Family& family, FONTENUMPROCA callback, LPARAM parameter) {
    const TEXTMETRICA metrics{};
    return callback(&family.font.elfLogFont, &metrics, family.type, parameter);
}

// Works on copies: the callback may enumerate in turn, and what it does may make Qt report a change.
int enumerateFamilies(FONTENUMPROCA callback, LPARAM parameter) {
    int answer = 1;
    const std::vector<Family> families = FamilyList::instance().families();
    for (const Family& family : families) {
        answer = report(family, callback, parameter);
        if (answer == 0) break;
    }
    return answer;
}

int enumerateStyles(LPCSTR name, FONTENUMPROCA callback, LPARAM parameter) {
    int answer = 1;
    const Family* found = FamilyList::instance().find(name);
    if (found == nullptr) return answer;
    Family face = *found;
    for (const QString& style : face.styles) {
        copyName(face.font.elfStyle, style.toUtf8());
        answer = report(face, callback, parameter);
        if (answer == 0) break;
    }
    return answer;
}

}  // namespace

int EnumFontFamiliesA(HDC /*context*/, LPCSTR family, FONTENUMPROCA callback, LPARAM parameter) {
    if (family == nullptr) return enumerateFamilies(callback, parameter);
    return enumerateStyles(family, callback, parameter);
}
