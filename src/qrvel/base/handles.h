// The handle table: every object of the toolkit behind one 32-bit number.
//
// The low 16 bits are a slot, from 1; the high 16 its generation, which moves on when the object goes, so that a
// handle kept too long is recognised. One table for all kinds: a handle is good for one kind only.
#pragma once

#include <cstdint>
#include <memory>
#include <utility>
#include <vector>

#include "toolkit/w.h"

class QWidget;

namespace qrvel {

enum class Kind : uint8_t {
    None,
    Application,
    WindowClass,
    MainObject,
    Shell,
    ShellPart,
    Container,
    Child,
    ColourTable,
    Font,
    DataChannel,
    ActionBar,
    HelpLine,
    HelpName,
    Help,
    InfoPanel,
    PrintSetup,
};

const char* nameOf(Kind kind);

// What stands in the table. Each kind is a struct with a `static constexpr Kind KIND`.
struct Object {
    Object() = default;
    Object(const Object&) = delete;
    Object& operator=(const Object&) = delete;
    virtual ~Object() = default;

    // The window class whose procedure its messages go to, 0: it gets none; and the widget whose inside is its size.
    virtual WHandle messageClass() const { return 0; }
    virtual QWidget* area() const { return nullptr; }

    WHandle handle = 0;
};

class HandleTable {
  public:
    // Makes an object; null when all 65,535 slots are taken.
    template <class T, class... Arguments>
    T* make(Arguments&&... arguments) {
        auto object = std::make_unique<T>(std::forward<Arguments>(arguments)...);
        T* made = object.get();
        const WHandle handle = insert(std::move(object), T::KIND);
        if (handle == 0) return nullptr;  // and the object is gone
        made->handle = handle;
        return made;
    }

    // The object behind a handle; null for 0, a stale handle and another kind.
    template <class T>
    T* find(WHandle handle) const {
        const Entry* entry = entryOf(handle);
        return entry != nullptr && entry->kind == T::KIND ? static_cast<T*>(entry->object.get()) : nullptr;
    }

    // Of whatever kind.
    Object* findAny(WHandle handle) const {
        const Entry* entry = entryOf(handle);
        return entry != nullptr ? entry->object.get() : nullptr;
    }

    // The same for an operation of the toolkit, which is named in the trace when there is no such object.
    template <class T>
    T* find(WHandle handle, const char* operation) const {
        T* object = find<T>(handle);
        if (object == nullptr) [[unlikely]] {
            reportMiss(handle, T::KIND, operation);
        }
        return object;
    }

    // Names in the trace an operation that was handed something else than it wants.
    static void reportMiss(WHandle handle, Kind kind, const char* operation);

    // The first object of a kind that fits; null when none does.
    template <class T, class Fits>
    T* findFirst(Fits fits) const {
        for (const Entry& entry : entries_) {
            if (entry.kind != T::KIND) continue;
            T* object = static_cast<T*>(entry.object.get());
            if (fits(*object)) return object;
        }
        return nullptr;
    }

    template <class T, class Does>
    void forEach(Does does) const {
        findFirst<T>([&](T& object) {
            does(object);
            return false;
        });
    }

    template <class T>
    void destroy(WHandle handle, const char* operation) {
        if (find<T>(handle, operation) != nullptr) remove(handle);
    }

  private:
    static constexpr uint32_t SLOT_MASK = 0xFFFF;
    static constexpr uint32_t GENERATION_SHIFT = 16;

    struct Entry {
        std::unique_ptr<Object> object;
        Kind kind = Kind::None;
        uint16_t generation = 0;
    };

    const Entry* entryOf(WHandle handle) const {
        const std::size_t slot = handle & SLOT_MASK;
        if (slot >= entries_.size() || entries_[slot].generation != handle >> GENERATION_SHIFT) return nullptr;
        return &entries_[slot];
    }
    WHandle insert(std::unique_ptr<Object> object, Kind kind);
    void remove(WHandle handle);

    std::vector<Entry> entries_ = std::vector<Entry>(1);  // slot 0 stays empty, so that no handle is 0
    std::vector<uint16_t> free_;
};

// The toolkit's one table. It is never destroyed: the process may end while objects are alive.
inline HandleTable& handles() {
    static HandleTable* const table = new HandleTable;
    return *table;
}

}  // namespace qrvel
