// The two interfaces, their type library and the calls by name agree member by member: the
// vtable holds the members in the catalogue's order, and the call by number k reaches the method
// of entry k with each argument converted to its declared type, in its place.
#include <gtest/gtest.h>

#include <cstring>
#include <iterator>
#include <sstream>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

#include "core/settings.h"
#include "host/dispatch.h"
#include "host_fixture.h"
#include "kestrone/com_object.h"

namespace {

using kestrone::HRESULT;
using kestrone::InvokeKind;
using kestrone::MemberInfo;
using kestrone::Variant;
using kestrone::VarType;

// The catalogue as the host knows it: "?" a property read, "=" a write, "!" a call.
const char* const kHostCatalogue = R"(
    ?MultipleAllowed ?MacroNames ?MacroIsFunction ?MacroParameters ?MacroCode ?IsSimulating
    ?PinCount ?HasInitialisation ?HasInterrupts ?HasExclusiveInts ?InitialisationCode
    ?InterruptCode ?ExclusiveInterrupts ?PinName ?DesiredPort ?Direction ?PortMandatory
    ?SamePortAsID ?Description ?DesiredBit ?BitMandatory ?Port =Port ?Bit =Bit ?ConnectedOK
    !StartSimulation !StopSimulation ?SimIODirection !SimReadPins !SimWritePins !SimMacroCall
    !KeyDown !KeyUp ?SupportsKeys ?IsAnalogue ?MacroIsPrivate =ClockSpeed =PICAnalogueBits
    =ADCCaptureCode =ADCReadHighCode =ADCReadLowCode =TargetController =ADCReadIntCode
    =KestroneVersion ?ComponentVersion !GeneralMethod =GeneralPut ?GeneralGet =KtxFilename
    ?VNodeCount ?VNodeProtocol ?VNodeName ?VNodeMsgRead =VNodeMsgWrite !MacroCodeOverride
    ?CodeFilename ?DefinesCode ?ReadCustomImages =WriteCustomImages !SimMacroCall2 !Refresh
)";

const char* const kControlCatalogue = R"(
    ?iVersionMajor =iVersionMajor ?iVersionMinor =iVersionMinor ?VERSION_STRING =VERSION_STRING
    !GetIniKeyValue !GetCodeFromFile ?IKestroneComponentV5_VNodeCount
    ?IKestroneComponentV5_VNodeProtocol ?IKestroneComponentV5_VNodeName
    ?IKestroneComponentV5_VNodeMsgRead =IKestroneComponentV5_VNodeMsgWrite ?bReturnInt
    =bReturnInt ?iThreshL =iThreshL ?iThreshF =iThreshF ?iThreshR =iThreshR ?iThreshMic
    =iThreshMic ?iThreshLdr =iThreshLdr =iMotorBias ?iMotorBias ?bUseI2C =bUseI2C
    ?bWaitForButton =bWaitForButton ?bDummyBool1 =bDummyBool1 ?bDummyBool2 =bDummyBool2
    ?iDummyInt1 =iDummyInt1 ?iDummyInt2 =iDummyInt2 ?sDummyString1 =sDummyString1 ?sDummyString2
    =sDummyString2 !setupAPin
)";

std::string marked(const MemberInfo& m) {
    const char mark = m.kind == InvokeKind::Query ? '?' : m.kind == InvokeKind::Set ? '=' : '!';
    return mark + std::string(m.name);
}
std::string method_name(const MemberInfo& m) {
    const char* prefix = m.kind == InvokeKind::Query ? "get_"
                         : m.kind == InvokeKind::Set ? "put_"
                                                     : "";
    return prefix + std::string(m.name);
}

template <std::size_t N>
std::vector<std::string> catalogue_of(const std::array<MemberInfo, N>& members) {
    std::vector<std::string> out;
    for (const MemberInfo& m : members)
        out.push_back(marked(m));
    return out;
}
std::vector<std::string> words(const char* text) {
    std::istringstream in(text);
    return {std::istream_iterator<std::string>(in), std::istream_iterator<std::string>()};
}

TEST(InterfaceCatalogue, TheTypeLibraryListsTheMembersInTheirOrder) {
    EXPECT_EQ(catalogue_of(kestrone::kComponentV5Members), words(kHostCatalogue));
    EXPECT_EQ(catalogue_of(kestrone::kRovantaMembers), words(kControlCatalogue));
}

// The vtable slot of a virtual method, from its member pointer as the Itanium ABI lays it out
// (the generic form keeps the slot's offset + 1 in the pointer; the ARM form flags adj instead).
template <class M>
std::ptrdiff_t vtable_slot(M method) {
    struct Repr {
        std::ptrdiff_t ptr, adj;
    } repr{};
    static_assert(sizeof(M) == sizeof(Repr));
    std::memcpy(&repr, &method, sizeof repr);
    const std::ptrdiff_t offset = (repr.ptr & 1) ? repr.ptr - 1 : repr.ptr;
    return offset / static_cast<std::ptrdiff_t>(sizeof(void*));
}

template <class Tuple, std::size_t... K>
std::vector<std::ptrdiff_t> slots_of(const Tuple& methods, std::index_sequence<K...>) {
    return {vtable_slot(std::get<K>(methods))...};
}

TEST(InterfaceCatalogue, EachMethodSitsInItsEntrysVtableSlotAfterIUnknown) {
    const auto host = slots_of(kestrone::kComponentV5Methods, std::make_index_sequence<62>{});
    for (std::size_t k = 0; k < host.size(); ++k)
        EXPECT_EQ(host[k], static_cast<std::ptrdiff_t>(3 + k))
            << marked(kestrone::kComponentV5Members[k]);
    const auto control = slots_of(kestrone::kRovantaMethods, std::make_index_sequence<44>{});
    for (std::size_t k = 0; k < control.size(); ++k)
        EXPECT_EQ(control[k], static_cast<std::ptrdiff_t>(3 + k))
            << marked(kestrone::kRovantaMembers[k]);
}

// ---- the calls by number against stand-ins that record what reaches them

// Records the method called and each argument as it arrived; writes a value of its own into
// every by-reference argument and the result.
class Recorder {
  public:
    std::string called;
    std::vector<Variant> received;

    static Variant written(VarType type, std::size_t position) {
        const auto p = static_cast<std::int32_t>(position);
        switch (type) {
            case VarType::Long:
                return Variant::long_(-70000 - p);
            case VarType::Integer:
                return Variant::integer(static_cast<std::int16_t>(-700 - p));
            case VarType::String:
                return Variant::string("back " + std::to_string(p));
            default:
                return Variant::double_(p + 0.25);
        }
    }

  protected:
    template <class... A>
    HRESULT record(const char* method, A*... args) {
        called = method;
        received.clear();
        std::size_t position = 0;
        (take(*args, position++), ...);
        return kestrone::S_FALSE;  // a status of its own, to see it come back
    }

  private:
    void take(std::int32_t v, std::size_t) { received.push_back(Variant::long_(v)); }
    void take(std::int16_t v, std::size_t) { received.push_back(Variant::integer(v)); }
    void take(bool v, std::size_t) { received.push_back(Variant::boolean(v)); }
    void take(const std::string& v, std::size_t) { received.push_back(Variant::string(v)); }
    void take(const Variant& v, std::size_t) { received.push_back(v); }
    void take(std::int32_t* p, std::size_t j) {
        received.push_back(Variant::long_(*p));
        *p = written(VarType::Long, j).as_long();
    }
    void take(std::int16_t* p, std::size_t j) {
        received.push_back(Variant::integer(*p));
        *p = written(VarType::Integer, j).as_integer();
    }
    void take(std::string* p, std::size_t j) {
        received.push_back(Variant::string(*p));
        *p = written(VarType::String, j).as_string();
    }
    void take(Variant* p, std::size_t j) {
        received.push_back(*p);
        *p = written(VarType::Variant, j);
    }
};

// Each parameter by its address, so that values and pointers alike reach take() unchanged.
#define KT_ADDRESS_OF(p) &KT_PARAM_NAME(p)
#define KT_RECORDING_METHOD(kind, name, ...)                                           \
    KT_SIGNATURE(kind, name, __VA_ARGS__) override {                                   \
        return record(__func__ __VA_OPT__(, KT_FOR_EACH(KT_ADDRESS_OF, __VA_ARGS__))); \
    }

class RecordingHost final
    : public Recorder,
      public kestrone::ComObject<
          RecordingHost,
          kestrone::Interfaces<kestrone::Implements<kestrone::IKestroneComponentV5,
                                                    kestrone::IID_IKestroneComponentV5>>,
          kestrone::EmbeddedLifetime> {
  public:
    KESTRONE_COMPONENT_V5_OPERATIONS(KT_RECORDING_METHOD)
};

class RecordingControl final
    : public Recorder,
      public kestrone::ComObject<
          RecordingControl,
          kestrone::Interfaces<kestrone::Implements<kestrone::IRovanta, kestrone::IID_IRovanta>>,
          kestrone::EmbeddedLifetime> {
  public:
    KESTRONE_ROVANTA_MEMBERS(KT_RECORDING_METHOD, KT_SETTING_MEMBER)
};

// An argument of each type as a host might pass it (not yet of the declared type), and what the
// method must receive for it.
struct Passed {
    Variant given, expected;
};
Passed argument(VarType type, std::size_t j) {
    const auto n = static_cast<std::int32_t>(j);
    switch (type) {
        case VarType::Long:
            return {Variant::string(std::to_string(40000 + n)), Variant::long_(40000 + n)};
        case VarType::Integer:
            // halves go to the even neighbour
            return {Variant::double_(-12.5 - 2 * n),
                    Variant::integer(static_cast<std::int16_t>(-12 - 2 * n))};
        case VarType::Boolean:
            return {Variant::long_(n % 2), Variant::boolean(n % 2 != 0)};
        case VarType::String:
            return {Variant::long_(-3 * n - 1), Variant::string(std::to_string(-3 * n - 1))};
        default:
            return {Variant::single(n + 0.5f), Variant::single(n + 0.5f)};
    }
}

template <class Target, std::size_t N>
void check_calls_by_number(Target& target, Recorder& recorder,
                           const std::array<MemberInfo, N>& members) {
    for (std::size_t k = 0; k < N; ++k) {
        const MemberInfo& m = members[k];
        SCOPED_TRACE(marked(m));
        std::vector<Variant> args;
        for (std::size_t j = 0; j < m.param_count; ++j)
            args.push_back(argument(m.params[j].type, j).given);
        Variant result;
        const auto number = static_cast<std::int32_t>(k);
        ASSERT_EQ(rovanta::invoke_member(target, number, args.data(), m.param_count, &result),
                  kestrone::S_FALSE);
        EXPECT_EQ(recorder.called, method_name(m));
        const bool has_result = m.result != VarType::Empty;
        ASSERT_EQ(recorder.received.size(), m.param_count + (has_result ? 1u : 0u));
        for (std::size_t j = 0; j < m.param_count; ++j) {
            EXPECT_EQ(recorder.received[j], argument(m.params[j].type, j).expected) << j;
            const Variant back = m.params[j].by_ref ? Recorder::written(m.params[j].type, j)
                                                    : argument(m.params[j].type, j).given;
            EXPECT_EQ(args[j], back) << j;
        }
        if (has_result) {
            EXPECT_EQ(result, Recorder::written(m.result, m.param_count));
        } else {
            EXPECT_TRUE(result.is_empty());
        }
        std::vector<Variant> one_more(m.param_count + 1u, Variant::long_(1));
        EXPECT_EQ(
            rovanta::invoke_member(target, number, one_more.data(), m.param_count + 1, &result),
            kestrone::DISP_E_BADPARAMCOUNT);
    }
    for (std::int32_t outside : {-1, static_cast<std::int32_t>(N)})
        EXPECT_EQ(rovanta::invoke_member(target, outside, nullptr, 0, nullptr),
                  kestrone::DISP_E_UNKNOWNNAME);
}

TEST(CallsByNumber, ReachTheHostInterfacesMethodWithEachArgumentInItsPlace) {
    RecordingHost host;
    check_calls_by_number(static_cast<kestrone::IKestroneComponentV5&>(host), host,
                          kestrone::kComponentV5Members);
}

TEST(CallsByNumber, ReachTheControlsMethodWithEachArgumentInItsPlace) {
    RecordingControl control;
    check_calls_by_number(static_cast<kestrone::IRovanta&>(control), control,
                          kestrone::kRovantaMembers);
}

TEST(CallsByNumber, AFailedConversionIsTheFirstBadArgumentsError) {
    RecordingHost host;
    // SimMacroCall: lMacroID, vParams, pRetVal by reference, pvAffected, pCycles.
    const auto number =
        kestrone::member_number(kestrone::kComponentV5Members, "SimMacroCall", InvokeKind::Call);
    std::vector<Variant> args{Variant::string("1e10"), Variant{}, Variant::string("x"), Variant{},
                              Variant::long_(0)};
    EXPECT_EQ(rovanta::invoke_member(host, number, args.data(), 5, nullptr),
              kestrone::basic_error_status(6));
    args[0] = Variant::long_(3);
    EXPECT_EQ(rovanta::invoke_member(host, number, args.data(), 5, nullptr),
              kestrone::basic_error_status(13));
    EXPECT_TRUE(host.called.empty());
}

// The store's table and the control's properties are the same fifteen: a distinct value through
// each write, every field read back through the store's table.
TEST(SettingProperties, EachReachesItsOwnField) {
    host_testing::Robot robot(host_testing::kNoPins);
    auto& control = static_cast<kestrone::IRovanta&>(robot.object());
    std::int16_t next = 11;
    for (const rovanta::SettingInfo& s : rovanta::kSettings) {
        const auto write =
            kestrone::member_number(kestrone::kRovantaMembers, s.key, InvokeKind::Set);
        Variant value = s.text ? Variant::string(std::string(s.key)) : Variant::integer(next++);
        ASSERT_EQ(rovanta::invoke_member(control, write, &value, 1, nullptr), kestrone::S_OK);
    }
    next = 11;
    for (const rovanta::SettingInfo& s : rovanta::kSettings) {
        const auto read =
            kestrone::member_number(kestrone::kRovantaMembers, s.key, InvokeKind::Query);
        Variant through_property;
        ASSERT_EQ(rovanta::invoke_member(control, read, nullptr, 0, &through_property),
                  kestrone::S_OK);
        const Variant expected =
            s.text ? Variant::string(std::string(s.key)) : Variant::integer(next++);
        EXPECT_EQ(robot.core().GetSetting(s), expected) << s.key;
        EXPECT_EQ(through_property, expected) << s.key;
    }
}

}  // namespace
