// Access to the component's fields and panel elements by name, for the console and the tests.
#pragma once

#include <cstdint>
#include <string>

#include "kestrone/com.h"
#include "kestrone/variant.h"

namespace kestrone {

inline constexpr Guid IID_IKestroneInspection{
    0x8C3F2D13, 0x6B7A, 0x4A25, {0xB3, 0x1E, 0x55, 0x0F, 0x92, 0x6D, 0x11, 0x08}};

class IKestroneInspection : public IUnknown {
  public:
    // The field NAME, NAME(index) or NAME(index).member. DISP_E_UNKNOWNNAME for a field or member
    // the component does not have; the status of error 9 for an index outside the array.
    virtual HRESULT GetField(const std::string& name, const std::int32_t* index,
                             const std::string& member, Variant* value) noexcept = 0;

  protected:
    ~IKestroneInspection() = default;
};

// The panel's elements by name, for the console and the tests: their properties as a program
// reads and writes them, and any event handler raised directly. ELEMENT is an element's name
// with `index` for a member of a control array (null for a single element); "UserControl" is the
// panel itself. Pointer, clicks, arrows and the timers go through IKestronePanel.
inline constexpr Guid IID_IKestronePanelInspection{
    0x8C3F2D21, 0x6B7A, 0x4A25, {0xB3, 0x1E, 0x55, 0x0F, 0x92, 0x6D, 0x11, 0x21}};

class IKestronePanelInspection : public IUnknown {
  public:
    // DISP_E_UNKNOWNNAME for an element or property that the panel does not have; the status of
    // error 340 for an index that its control array lacks.
    virtual HRESULT GetProperty(const std::string& element, const std::int32_t* index,
                                const std::string& property, Variant* value) noexcept = 0;
    // Writes as a program would, with the events the element raises for such a write.
    virtual HRESULT PutProperty(const std::string& element, const std::int32_t* index,
                                const std::string& property, const Variant& value) noexcept = 0;
    // The element id behind a name, for IKestronePanel's Click and Arrow.
    virtual HRESULT FindElement(const std::string& element, const std::int32_t* index,
                                std::int32_t* id) noexcept = 0;
    // Raises HANDLER (element_event, e.g. "frameADC_MouseDown") with `args`, each converted to
    // its parameter's type; DISP_E_UNKNOWNNAME for no such handler, DISP_E_BADPARAMCOUNT for the
    // wrong number of arguments.
    virtual HRESULT RaiseEvent(const std::string& handler, Variant* args,
                               std::int32_t argc) noexcept = 0;

  protected:
    ~IKestronePanelInspection() = default;
};

}  // namespace kestrone
