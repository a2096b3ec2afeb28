// A minimal COM-like base: interface ids, reference counting, QueryInterface, class factory.
#pragma once

#include <cstdint>
#include <utility>

#include "kestrone/status.h"

namespace kestrone {

struct Guid {
    std::uint32_t d1;
    std::uint16_t d2, d3;
    std::uint8_t d4[8];
    friend constexpr bool operator==(const Guid& a, const Guid& b) {
        if (a.d1 != b.d1 || a.d2 != b.d2 || a.d3 != b.d3) return false;
        for (int i = 0; i < 8; ++i)
            if (a.d4[i] != b.d4[i]) return false;
        return true;
    }
};

// Interfaces never throw: every failure comes back as a status.
class IUnknown {
  public:
    virtual HRESULT QueryInterface(const Guid& iid, void** ppv) noexcept = 0;
    virtual std::uint32_t AddRef() noexcept = 0;
    virtual std::uint32_t Release() noexcept = 0;

  protected:
    ~IUnknown() = default;
};

class IClassFactory : public IUnknown {
  public:
    virtual HRESULT CreateInstance(IUnknown* outer, const Guid& iid, void** ppv) noexcept = 0;
    virtual HRESULT LockServer(bool lock) noexcept = 0;

  protected:
    ~IClassFactory() = default;
};

inline constexpr Guid IID_IUnknown{0x00000000, 0x0000, 0x0000, {0xC0, 0, 0, 0, 0, 0, 0, 0x46}};
inline constexpr Guid IID_IClassFactory{0x00000001, 0x0000, 0x0000, {0xC0, 0, 0, 0, 0, 0, 0, 0x46}};
inline constexpr Guid CLSID_Rovanta{
    0x5B1E7A30, 0x2C4D, 0x4E8F, {0x9A, 0x61, 0x0D, 0x52, 0x7C, 0x13, 0xA4, 0x01}};

// The module's entry points, with C linkage.
using DllGetClassObjectFn = HRESULT (*)(const Guid* clsid, const Guid* iid, void** ppv);
using DllCanUnloadNowFn = HRESULT (*)();
using DllRegisterServerFn = HRESULT (*)();
using DllUnregisterServerFn = HRESULT (*)();

// Holds one reference to an interface and releases it at the end.
template <class T>
class ComPtr {
  public:
    ComPtr() = default;
    ComPtr(const ComPtr& o) : p_(o.p_) {
        if (p_) p_->AddRef();
    }
    ComPtr(ComPtr&& o) noexcept : p_(std::exchange(o.p_, nullptr)) {}
    ComPtr& operator=(ComPtr o) noexcept {
        std::swap(p_, o.p_);
        return *this;
    }
    ~ComPtr() { reset(); }

    // Takes over a reference that the caller already holds.
    static ComPtr attach(T* p) {
        ComPtr c;
        c.p_ = p;
        return c;
    }
    void reset() {
        if (p_) std::exchange(p_, nullptr)->Release();
    }
    T* get() const { return p_; }
    T* operator->() const { return p_; }
    explicit operator bool() const { return p_ != nullptr; }
    void** put() {
        reset();
        return reinterpret_cast<void**>(&p_);
    }

    template <class U>
    ComPtr<U> query(const Guid& iid) const {
        ComPtr<U> out;
        if (p_ && failed(p_->QueryInterface(iid, out.put()))) out.reset();
        return out;
    }

  private:
    T* p_ = nullptr;
};

}  // namespace kestrone
