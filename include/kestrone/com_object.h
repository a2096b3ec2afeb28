// One implementation of IUnknown for every object: QueryInterface over a list of interfaces by
// their ids, reference counting, and the object's lifetime. A tear-off variant keeps an owner
// alive and hands every interface it does not implement, IUnknown included, to the owner.
//
//   class Store final : public ComObject<Store, Interfaces<Implements<IKestroneStore,
//                                                          IID_IKestroneStore>>> { ... };
//   class Facet final : public ComTearOff<Interfaces<Implements<IKestronePanel,
//                                                    IID_IKestronePanel>>> {
//       Facet(IUnknown* owner, ...) : ComTearOff(owner) {}
//   };
#pragma once

#include <atomic>
#include <cstdint>
#include <tuple>

#include "kestrone/com.h"

namespace kestrone {

// An interface `I` that an object answers for the id `Id`.
template <class I, const Guid& Id>
struct Implements {
    using Interface = I;
    static constexpr const Guid& iid = Id;
};

template <class... Entries>
struct Interfaces {};

// How an object lives. `deletes`: the last Release deletes it; `created` and `destroyed` run in
// its constructor and destructor (a module counts its live objects there for DllCanUnloadNow).
struct HeapLifetime {
    static constexpr bool deletes = true;
    static void created() noexcept {}
    static void destroyed() noexcept {}
};
// An object kept by value inside its owner: references only keep the count honest.
struct EmbeddedLifetime {
    static constexpr bool deletes = false;
    static void created() noexcept {}
    static void destroyed() noexcept {}
};

template <class List, class Lifetime>
class ComBase;

template <class... Entries, class Lifetime>
class ComBase<Interfaces<Entries...>, Lifetime> : public Entries::Interface... {
    static_assert(sizeof...(Entries) > 0, "an object implements at least one interface");

  public:
    ComBase(const ComBase&) = delete;
    ComBase& operator=(const ComBase&) = delete;

    std::uint32_t AddRef() noexcept override {
        return refs_.fetch_add(1, std::memory_order_relaxed) + 1;
    }
    std::uint32_t Release() noexcept override {
        const std::uint32_t left = refs_.fetch_sub(1, std::memory_order_acq_rel) - 1;
        if constexpr (Lifetime::deletes) {
            if (left == 0) delete this;
        }
        return left;
    }
    std::uint32_t ref_count() const noexcept { return refs_.load(std::memory_order_relaxed); }

  protected:
    ComBase() noexcept { Lifetime::created(); }
    virtual ~ComBase() { Lifetime::destroyed(); }

    // The first interface of the list stands for the object as a whole.
    using Primary =
        typename std::tuple_element<0, std::tuple<typename Entries::Interface...>>::type;
    IUnknown* primary() noexcept { return static_cast<Primary*>(this); }

    // The interface of the list with that id, or null.
    void* find(const Guid& iid) noexcept {
        void* found = nullptr;
        (void)((iid == Entries::iid
                    ? (found = static_cast<typename Entries::Interface*>(this), true)
                    : false) ||
               ...);
        return found;
    }

  private:
    std::atomic<std::uint32_t> refs_{1};
};

// An object with an identity of its own: IUnknown is its first interface. An id that is not in
// the list goes to Derived::query_other (by default: E_NOINTERFACE), which may hand out a
// tear-off. A new object holds one reference, its creator's.
template <class Derived, class List, class Lifetime = HeapLifetime>
class ComObject : public ComBase<List, Lifetime> {
  public:
    HRESULT QueryInterface(const Guid& iid, void** ppv) noexcept override {
        if (!ppv) return E_POINTER;
        *ppv = nullptr;
        void* found = iid == IID_IUnknown ? this->primary() : this->find(iid);
        if (!found) return static_cast<Derived*>(this)->query_other(iid, ppv);
        *ppv = found;
        this->AddRef();
        return S_OK;
    }
    IUnknown* identity() noexcept { return this->primary(); }

    HRESULT query_other(const Guid&, void**) noexcept { return E_NOINTERFACE; }
};

// A part of an owner's object made on demand: it holds a reference to the owner for as long as
// it lives, and the owner answers every id that is not in the list, so that IUnknown still
// leads to the owner's identity.
template <class List, class Lifetime = HeapLifetime>
class ComTearOff : public ComBase<List, Lifetime> {
  public:
    HRESULT QueryInterface(const Guid& iid, void** ppv) noexcept override {
        if (!ppv) return E_POINTER;
        *ppv = nullptr;
        void* found = iid == IID_IUnknown ? nullptr : this->find(iid);
        if (!found) return owner_->QueryInterface(iid, ppv);
        *ppv = found;
        this->AddRef();
        return S_OK;
    }
    IUnknown* owner() const noexcept { return owner_; }

  protected:
    explicit ComTearOff(IUnknown* owner) noexcept : owner_(owner) { owner_->AddRef(); }
    ~ComTearOff() override { owner_->Release(); }

  private:
    IUnknown* owner_;
};

// Hands out interface `iid` of a new object that holds its creator's reference; that reference
// is given up, so a refused id leaves nothing behind. A null object is E_OUTOFMEMORY.
template <class T>
HRESULT hand_out(T* fresh, const Guid& iid, void** ppv) noexcept {
    if (ppv) *ppv = nullptr;
    if (!fresh) return ppv ? E_OUTOFMEMORY : E_POINTER;
    const HRESULT hr = ppv ? fresh->QueryInterface(iid, ppv) : E_POINTER;
    fresh->Release();
    return hr;
}

}  // namespace kestrone
