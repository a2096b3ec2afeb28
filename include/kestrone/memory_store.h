// A key/value store in memory, as the host keeps one for each control: entries stay in the order
// in which their keys were first written, and every value keeps its kind.
#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "kestrone/com_object.h"
#include "kestrone/store.h"

namespace kestrone {

// The store lives as long as its owner; references only keep the count honest.
class MemoryStore final
    : public ComObject<MemoryStore, Interfaces<Implements<IKestroneStore, IID_IKestroneStore>>,
                       EmbeddedLifetime> {
  public:
    struct Entry {
        std::string key;
        Variant value;
        bool operator==(const Entry&) const = default;
    };

    // Told of every write and read as it happens (the read with the value it gave).
    std::function<void(const std::string&key, const Variant&value)> on_write, on_read;

    const std::vector<Entry>& entries() const { return entries_; }
    void clear() { entries_.clear(); }
    void set(const std::string& key, Variant value) {
        if (Entry* e = find(key))
            e->value = std::move(value);
        else
            entries_.push_back({key, std::move(value)});
    }
    const Variant* get(const std::string& key) const {
        for (const Entry& e : entries_)
            if (e.key == key) return &e.value;
        return nullptr;
    }
    // Replaces the whole content, as loading a project does.
    void assign(std::vector<Entry> entries) { entries_ = std::move(entries); }

    HRESULT WriteProperty(const std::string& key, const Variant& value) noexcept override {
        try {
            set(key, value);
            if (on_write) on_write(key, value);
            return S_OK;
        } catch (...) {
            return E_OUTOFMEMORY;
        }
    }
    HRESULT ReadProperty(const std::string& key, const Variant& default_value,
                         Variant* value) noexcept override {
        if (!value) return E_POINTER;
        try {
            const Variant* stored = get(key);
            *value = stored ? *stored : default_value;
            if (on_read) on_read(key, *value);
            return S_OK;
        } catch (...) {
            return E_OUTOFMEMORY;
        }
    }

  private:
    Entry* find(const std::string& key) {
        for (Entry& e : entries_)
            if (e.key == key) return &e;
        return nullptr;
    }
    std::vector<Entry> entries_;
};

}  // namespace kestrone
