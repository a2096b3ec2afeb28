// A null result or by-reference pointer is E_POINTER at every operation the module hands out,
// never a crash, and nothing runs behind it.
#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <tuple>
#include <type_traits>
#include <utility>
#include <vector>

#include "host/class_factory.h"
#include "host/property_page_object.h"
#include "host_fixture.h"
#include "kestrone/panel.h"

namespace {

using kestrone::HRESULT;
using kestrone::MemberInfo;
using kestrone::Variant;

// Calls a method with valid arguments except the pointer at `null_at` (all pointers when
// null_at is past the end).
template <auto Method>
struct NullCall;

template <class I, class... P, HRESULT (I::*Method)(P...) noexcept>
struct NullCall<Method> {
    static constexpr std::size_t kCount = sizeof...(P);
    static constexpr std::array<bool, kCount> kPointer{std::is_pointer_v<P>...};

    static HRESULT call(I& target, std::size_t null_at) {
        return call(target, null_at, std::index_sequence_for<P...>{});
    }

  private:
    template <std::size_t... J>
    static HRESULT call(I& target, [[maybe_unused]] std::size_t null_at,
                        std::index_sequence<J...>) {
        std::tuple<std::remove_cvref_t<std::remove_pointer_t<P>>...> values{};
        return (target.*Method)(arg<J>(values, null_at)...);
    }
    template <std::size_t J, class Values>
    static std::tuple_element_t<J, std::tuple<P...>> arg(Values& values, std::size_t null_at) {
        if constexpr (std::is_pointer_v<std::tuple_element_t<J, std::tuple<P...>>>)
            return J == null_at || null_at >= kCount ? nullptr : &std::get<J>(values);
        else
            return std::get<J>(values);
    }
};

// Every member with pointers, each pointer null on its own and then all of them at once.
template <class I, const auto& Methods, std::size_t... K>
void check_every_pointer(I& target, const MemberInfo* members, std::index_sequence<K...>) {
    const auto check = [&]<auto Method>(const MemberInfo& m) {
        using Call = NullCall<Method>;
        bool any = false;
        for (std::size_t j = 0; j < Call::kCount; ++j) {
            if (!Call::kPointer[j]) continue;
            any = true;
            EXPECT_EQ(Call::call(target, j), kestrone::E_POINTER) << m.name << " pointer " << j;
        }
        if (any) {
            EXPECT_EQ(Call::call(target, Call::kCount), kestrone::E_POINTER) << m.name;
        }
    };
    (check.template operator()<std::get<K>(Methods)>(members[K]), ...);
}

TEST(NullPointers, EveryOperationOfBothInterfacesRefusesThem) {
    host_testing::Robot robot(host_testing::kThreePins);
    robot.object().put_KestroneVersion(1282);
    check_every_pointer<kestrone::IKestroneComponentV5, kestrone::kComponentV5Methods>(
        robot.object(), kestrone::kComponentV5Members.data(), std::make_index_sequence<62>{});
    check_every_pointer<kestrone::IRovanta, kestrone::kRovantaMethods>(
        robot.object(), kestrone::kRovantaMembers.data(), std::make_index_sequence<44>{});
    // Nothing ran: SimReadPins would have marked the pins as read.
    EXPECT_FALSE(robot.core().link.bPinsChanged);
}

struct Case {
    const char* what;
    std::function<HRESULT()> call;
};

TEST(NullPointers, TheOtherInterfacesRefuseThemToo) {
    host_testing::Robot robot(host_testing::kNoPins);
    rovanta::RovantaObject& object = robot.object();
    kestrone::IKestronePropertyPage* raw_page = nullptr;
    ASSERT_EQ(object.CreatePropertyPage(&raw_page), kestrone::S_OK);
    auto page = kestrone::ComPtr<kestrone::IKestronePropertyPage>::attach(raw_page);
    auto factory = kestrone::ComPtr<rovanta::RovantaClassFactory>::attach(
        new rovanta::RovantaClassFactory(platform::ModuleFacts{}));
    float size = 0;
    std::uint64_t now = 0;
    std::vector<std::int32_t> indices;
    const kestrone::Guid& any = kestrone::IID_IUnknown;
    const Case cases[] = {
        {"object QueryInterface", [&] { return object.QueryInterface(any, nullptr); }},
        {"GetField", [&] { return object.GetField("iADCMax", nullptr, "", nullptr); }},
        {"WriteProperties", [&] { return object.WriteProperties(nullptr); }},
        {"ReadProperties", [&] { return object.ReadProperties(nullptr); }},
        {"CreatePropertyPage", [&] { return object.CreatePropertyPage(nullptr); }},
        {"factory QueryInterface", [&] { return factory->QueryInterface(any, nullptr); }},
        {"CreateInstance", [&] { return factory->CreateInstance(nullptr, any, nullptr); }},
        {"page QueryInterface", [&] { return page->QueryInterface(any, nullptr); }},
        {"GetCaption", [&] { return page->GetCaption(nullptr); }},
        {"GetSize width", [&] { return page->GetSize(nullptr, &size); }},
        {"GetSize height", [&] { return page->GetSize(&size, nullptr); }},
        {"GetWidgetCount", [&] { return page->GetWidgetCount(nullptr); }},
        {"GetWidget", [&] { return page->GetWidget(0, nullptr); }},
        {"GetRevision", [&] { return page->GetRevision(nullptr); }},
        {"GetChangedWidgets indices", [&] { return page->GetChangedWidgets(0, nullptr, &now); }},
        {"GetChangedWidgets now", [&] { return page->GetChangedWidgets(0, &indices, nullptr); }},
        {"GetChanged", [&] { return page->GetChanged(nullptr); }},
        {"GetProperty", [&] { return page->GetProperty("optInt", "Value", nullptr); }},
    };
    for (const Case& c : cases)
        EXPECT_EQ(c.call(), kestrone::E_POINTER) << c.what;
}

// The panel's two interfaces, on their tear-off: each out-pointer null on its own. The values given
// beside a null one keep their marks, and a refused AdvanceTo leaves the clock where it was.
TEST(NullPointers, ThePanelsInterfacesRefuseThemAndWriteNothing) {
    host_testing::Robot robot(host_testing::kNoPins);
    kestrone::ComPtr<kestrone::IKestronePanel> view;
    kestrone::ComPtr<kestrone::IKestronePanelInspection> inspect;
    ASSERT_EQ(robot.unknown()->QueryInterface(kestrone::IID_IKestronePanel, view.put()),
              kestrone::S_OK);
    ASSERT_EQ(
        robot.unknown()->QueryInterface(kestrone::IID_IKestronePanelInspection, inspect.put()),
        kestrone::S_OK);
    std::int64_t clock = 0;
    ASSERT_EQ(view->GetClock(&clock), kestrone::S_OK);

    constexpr std::int32_t kMark = -7321;
    float width = -3.5f, height = -4.5f;
    std::int32_t w = kMark, h = kMark, timer = kMark;
    std::int64_t due = kMark;
    std::uint64_t now = 991;
    std::vector<std::int32_t> ids{kMark};
    std::vector<std::uint8_t> rgba{0x5A};
    const kestrone::Guid& any = kestrone::IID_IUnknown;
    const Case cases[] = {
        {"panel QueryInterface", [&] { return view->QueryInterface(any, nullptr); }},
        {"inspection QueryInterface", [&] { return inspect->QueryInterface(any, nullptr); }},
        {"GetElementCount", [&] { return view->GetElementCount(nullptr); }},
        {"GetElement", [&] { return view->GetElement(0, nullptr); }},
        {"GetRevision", [&] { return view->GetRevision(nullptr); }},
        {"GetChangedElements ids", [&] { return view->GetChangedElements(0, nullptr, &now); }},
        {"GetChangedElements now", [&] { return view->GetChangedElements(0, &ids, nullptr); }},
        {"GetSize width", [&] { return view->GetSize(nullptr, &height); }},
        {"GetSize height", [&] { return view->GetSize(&width, nullptr); }},
        {"GetTwipsPerPixel", [&] { return view->GetTwipsPerPixel(nullptr); }},
        {"GetBackColour", [&] { return view->GetBackColour(nullptr); }},
        {"GetElementView", [&] { return view->GetElementView(0, nullptr); }},
        {"GetFocus", [&] { return view->GetFocus(nullptr); }},
        {"GetPaintOrder", [&] { return view->GetPaintOrder(nullptr); }},
        {"GetPicture width", [&] { return view->GetPicture(1, nullptr, &h, &rgba); }},
        {"GetPicture height", [&] { return view->GetPicture(1, &w, nullptr, &rgba); }},
        {"GetPicture rgba", [&] { return view->GetPicture(1, &w, &h, nullptr); }},
        {"GetClock", [&] { return view->GetClock(nullptr); }},
        {"NextTick due", [&] { return view->NextTick(nullptr, &timer); }},
        {"NextTick timer", [&] { return view->NextTick(&due, nullptr); }},
        {"AdvanceTo", [&] { return view->AdvanceTo(clock + 5000, nullptr); }},
        {"RaiseNextTick at", [&] { return view->RaiseNextTick(clock + 5000, nullptr, &timer); }},
        {"RaiseNextTick timer", [&] { return view->RaiseNextTick(clock + 5000, &due, nullptr); }},
        {"GetProperty", [&] { return inspect->GetProperty("Timer1", &w, "Interval", nullptr); }},
        {"FindElement", [&] { return inspect->FindElement("Timer1", nullptr, nullptr); }},
    };
    for (const Case& c : cases)
        EXPECT_EQ(c.call(), kestrone::E_POINTER) << c.what;
    EXPECT_EQ(width, -3.5f);
    EXPECT_EQ(height, -4.5f);
    EXPECT_EQ(w, kMark);
    EXPECT_EQ(h, kMark);
    EXPECT_EQ(timer, kMark);
    EXPECT_EQ(due, kMark);
    EXPECT_EQ(now, 991u);
    EXPECT_EQ(ids, std::vector<std::int32_t>{kMark});
    EXPECT_EQ(rgba, std::vector<std::uint8_t>{0x5A});
    std::int64_t after = 0;
    ASSERT_EQ(view->GetClock(&after), kestrone::S_OK);
    EXPECT_EQ(after, clock);
}

// Calls by name have no result pointer to refuse: without one the result is dropped; missing
// arguments are a wrong count.
TEST(NullPointers, CallsByNameDropAMissingResultAndCountMissingArguments) {
    host_testing::Robot robot(host_testing::kNoPins);
    const auto pin_count = kestrone::member_number(kestrone::kComponentV5Members, "PinCount",
                                                   kestrone::InvokeKind::Query);
    EXPECT_EQ(
        robot.object().Invoke(kestrone::Interface::ComponentV5, pin_count, nullptr, 0, nullptr),
        kestrone::S_OK);
    const auto pin_name = kestrone::member_number(kestrone::kComponentV5Members, "PinName",
                                                  kestrone::InvokeKind::Query);
    Variant result;
    EXPECT_EQ(
        robot.object().Invoke(kestrone::Interface::ComponentV5, pin_name, nullptr, 1, &result),
        kestrone::DISP_E_BADPARAMCOUNT);
}

}  // namespace
