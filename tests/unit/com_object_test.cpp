// The COM base: which pointer each id gives, reference counts and lifetimes, tear-offs that keep
// their owner, and the module's count of live objects.
#include <gtest/gtest.h>

#include "host/class_factory.h"
#include "host/module_lock.h"
#include "host/property_page_object.h"
#include "host_fixture.h"
#include "kestrone/com_object.h"
#include "kestrone/memory_store.h"

namespace {

using kestrone::ComObject;
using kestrone::ComTearOff;
using kestrone::Guid;
using kestrone::HRESULT;
using kestrone::IUnknown;

class IFirst : public IUnknown {
  public:
    virtual int first() noexcept = 0;

  protected:
    ~IFirst() = default;
};
class ISecond : public IUnknown {
  public:
    virtual int second() noexcept = 0;

  protected:
    ~ISecond() = default;
};
class IPart : public IUnknown {
  public:
    virtual int part() noexcept = 0;

  protected:
    ~IPart() = default;
};
constexpr Guid IID_IFirst{0x11, 1, 2, {1, 2, 3, 4, 5, 6, 7, 8}};
constexpr Guid IID_ISecond{0x12, 1, 2, {1, 2, 3, 4, 5, 6, 7, 8}};
constexpr Guid IID_IPart{0x13, 1, 2, {1, 2, 3, 4, 5, 6, 7, 8}};
constexpr Guid IID_INone{0x14, 1, 2, {1, 2, 3, 4, 5, 6, 7, 8}};

// Counts creations and destructions.
struct Counted {
    static inline int alive = 0;
    static constexpr bool deletes = true;
    static void created() noexcept { ++alive; }
    static void destroyed() noexcept { --alive; }
};

class Part final
    : public ComTearOff<kestrone::Interfaces<kestrone::Implements<IPart, IID_IPart>>, Counted> {
  public:
    explicit Part(IUnknown* owner) : ComTearOff(owner) {}
    int part() noexcept override { return 3; }
};

class Whole final
    : public ComObject<Whole,
                       kestrone::Interfaces<kestrone::Implements<IFirst, IID_IFirst>,
                                            kestrone::Implements<ISecond, IID_ISecond>>,
                       Counted> {
  public:
    int first() noexcept override { return 1; }
    int second() noexcept override { return 2; }
    HRESULT query_other(const Guid& iid, void** ppv) noexcept {
        if (!(iid == IID_IPart)) return kestrone::E_NOINTERFACE;
        return kestrone::hand_out(new Part(identity()), iid, ppv);
    }
};

template <class T>
T* query(IUnknown* from, const Guid& iid) {
    void* p = reinterpret_cast<void*>(1);
    EXPECT_EQ(from->QueryInterface(iid, &p), kestrone::S_OK);
    return static_cast<T*>(p);
}

TEST(ComObject, EachIdGivesItsInterfaceAndIUnknownTheFirst) {
    auto* whole = new Whole;
    IFirst* first = query<IFirst>(whole->identity(), IID_IFirst);
    ISecond* second = query<ISecond>(first, IID_ISecond);
    IUnknown* unknown = query<IUnknown>(second, kestrone::IID_IUnknown);
    EXPECT_EQ(first->first(), 1);
    EXPECT_EQ(second->second(), 2);
    EXPECT_EQ(unknown, static_cast<IUnknown*>(static_cast<IFirst*>(whole)));
    EXPECT_EQ(whole->ref_count(), 4u);

    void* none = reinterpret_cast<void*>(1);
    EXPECT_EQ(whole->QueryInterface(IID_INone, &none), kestrone::E_NOINTERFACE);
    EXPECT_EQ(none, nullptr);
    EXPECT_EQ(whole->QueryInterface(IID_IFirst, nullptr), kestrone::E_POINTER);
    EXPECT_EQ(whole->ref_count(), 4u);

    // The last Release, through any interface, deletes it.
    EXPECT_EQ(Counted::alive, 1);
    EXPECT_EQ(unknown->Release(), 3u);
    EXPECT_EQ(second->Release(), 2u);
    EXPECT_EQ(first->Release(), 1u);
    EXPECT_EQ(whole->Release(), 0u);
    EXPECT_EQ(Counted::alive, 0);
}

TEST(ComObject, ATearOffKeepsItsOwnerAndLeadsBackToIt) {
    auto* whole = new Whole;
    IPart* part = query<IPart>(whole->identity(), IID_IPart);
    EXPECT_EQ(Counted::alive, 2);
    EXPECT_EQ(whole->ref_count(), 2u);
    EXPECT_EQ(part->part(), 3);
    // The owner answers IUnknown and its own interfaces; the tear-off its own.
    EXPECT_EQ(query<IUnknown>(part, kestrone::IID_IUnknown), whole->identity());
    IFirst* first = query<IFirst>(part, IID_IFirst);
    EXPECT_EQ(first, static_cast<IFirst*>(whole));
    EXPECT_EQ(query<IPart>(part, IID_IPart), part);
    void* none = nullptr;
    EXPECT_EQ(part->QueryInterface(IID_INone, &none), kestrone::E_NOINTERFACE);
    whole->Release();  // the IUnknown from the tear-off
    first->Release();
    part->Release();  // the second IPart

    // The creator lets go first: the tear-off still holds the owner.
    EXPECT_EQ(whole->Release(), 1u);
    EXPECT_EQ(Counted::alive, 2);
    EXPECT_EQ(part->Release(), 0u);
    EXPECT_EQ(Counted::alive, 0);
}

TEST(ComObject, HandingOutARefusedIdLeavesNothingBehind) {
    void* p = reinterpret_cast<void*>(1);
    EXPECT_EQ(kestrone::hand_out(new Whole, IID_INone, &p), kestrone::E_NOINTERFACE);
    EXPECT_EQ(p, nullptr);
    EXPECT_EQ(kestrone::hand_out(new Whole, IID_ISecond, nullptr), kestrone::E_POINTER);
    EXPECT_EQ(Counted::alive, 0);
    EXPECT_EQ(kestrone::hand_out(static_cast<Whole*>(nullptr), IID_IFirst, &p),
              kestrone::E_OUTOFMEMORY);
    ASSERT_EQ(kestrone::hand_out(new Whole, IID_ISecond, &p), kestrone::S_OK);
    EXPECT_EQ(Counted::alive, 1);
    static_cast<ISecond*>(p)->Release();
    EXPECT_EQ(Counted::alive, 0);
}

TEST(ComObject, AnEmbeddedObjectOutlivesItsLastRelease) {
    kestrone::MemoryStore store;
    kestrone::IKestroneStore* s =
        query<kestrone::IKestroneStore>(&store, kestrone::IID_IKestroneStore);
    EXPECT_EQ(s->Release(), 1u);
    EXPECT_EQ(store.Release(), 0u);
    EXPECT_EQ(store.WriteProperty("k", kestrone::Variant::long_(5)), kestrone::S_OK);
    EXPECT_EQ(store.entries().size(), 1u);
}

// Every object the module hands out, and every LockServer(true), keeps the module loaded.
TEST(ModuleLock, EveryLiveObjectAndServerLockHoldsTheModule) {
    const long before = rovanta::module_lock_count();
    auto* factory = new rovanta::RovantaClassFactory(platform::ModuleFacts{});
    EXPECT_EQ(rovanta::module_lock_count(), before + 1);
    ASSERT_EQ(factory->LockServer(true), kestrone::S_OK);
    EXPECT_EQ(rovanta::module_lock_count(), before + 2);
    {
        host_testing::Robot robot(host_testing::kNoPins);
        EXPECT_EQ(rovanta::module_lock_count(), before + 3);
        kestrone::IKestronePropertyPage* page = nullptr;
        ASSERT_EQ(robot.object().CreatePropertyPage(&page), kestrone::S_OK);
        EXPECT_EQ(rovanta::module_lock_count(), before + 4);
        page->Release();
        EXPECT_EQ(rovanta::module_lock_count(), before + 3);
    }
    // The lock outlives its factory; any factory takes it back.
    factory->Release();
    EXPECT_EQ(rovanta::module_lock_count(), before + 1);
    auto* other = new rovanta::RovantaClassFactory(platform::ModuleFacts{});
    ASSERT_EQ(other->LockServer(false), kestrone::S_OK);
    other->Release();
    EXPECT_EQ(rovanta::module_lock_count(), before);
}

}  // namespace
