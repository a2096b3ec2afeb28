// A key/value store in memory, as the host keeps one for each control: entries stay in the order
// in which their keys were first written, and every value keeps its kind.
#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <unordered_map>
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
    void clear() {
        entries_.clear();
        index_.clear();
    }
    void set(const std::string& key, Variant value) {
        const auto [it, added] = index_.try_emplace(key, entries_.size());
        if (!added) {
            entries_[it->second].value = std::move(value);
            return;
        }
        try {
            entries_.push_back({key, std::move(value)});
        } catch (...) {
            index_.erase(it);
            throw;
        }
    }
    const Variant* get(const std::string& key) const {
        const auto it = index_.find(key);
        return it == index_.end() ? nullptr : &entries_[it->second].value;
    }
    // Replaces the whole content, as loading a project does. A key given twice keeps its first
    // place and its last value, as writing the entries one by one would.
    void assign(std::vector<Entry> entries) {
        clear();
        entries_.reserve(entries.size());
        index_.reserve(entries.size());
        for (Entry& e : entries)
            set(e.key, std::move(e.value));
    }

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
    std::vector<Entry> entries_;
    // Where each key stands in entries_: saves and loads of many keys stay linear.
    std::unordered_map<std::string, std::size_t> index_;
};

}  // namespace kestrone
