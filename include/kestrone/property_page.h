// A control's property page as a property frame reaches it: the frame makes the page, hands it
// the selected controls, applies it and watches its Changed flag; a view shows the page's widgets
// and passes the user's edits on. The page itself reaches the controls' properties by name.
#pragma once

#include <cstdint>
#include <string>

#include "kestrone/com.h"
#include "kestrone/variant.h"

namespace kestrone {

enum class WidgetKind : std::uint8_t { Frame, Label, TextBox, OptionButton, CheckBox, Slider };
enum class WidgetAlignment : std::uint8_t { Left, Right, Center };

// One widget of a page. Lengths are twips, Left and Top from the corner of the container (an
// empty container is the page itself).
struct WidgetInfo {
    std::string name;
    WidgetKind kind = WidgetKind::Label;
    std::string container;
    std::int32_t left = 0, top = 0, width = 0, height = 0;
    std::int16_t tab_index = 0;
    WidgetAlignment alignment = WidgetAlignment::Left;
};

inline constexpr Guid IID_IKestronePropertyPage{
    0x8C3F2D17, 0x6B7A, 0x4A25, {0xB3, 0x1E, 0x55, 0x0F, 0x92, 0x6D, 0x11, 0x0C}};

class IKestronePropertyPage : public IUnknown {
  public:
    // The page as a whole: its caption and client size in twips.
    virtual HRESULT GetCaption(std::string* caption) noexcept = 0;
    virtual HRESULT GetSize(std::int32_t* width, std::int32_t* height) noexcept = 0;
    // The widgets in the order of the page's form, index 0 first.
    virtual HRESULT GetWidgetCount(std::int32_t* count) noexcept = 0;
    virtual HRESULT GetWidget(std::int32_t index, WidgetInfo* info) noexcept = 0;

    // The frame's side. The controls are held until the page is released; element 0 is the one
    // the page works on. Setting them raises the page's SelectionChanged; its status comes back.
    virtual HRESULT SetSelectedControls(IUnknown* const* controls, std::int32_t count) noexcept = 0;
    // Raises ApplyChanges; the status of a property write that failed comes back.
    virtual HRESULT Apply() noexcept = 0;
    virtual HRESULT GetChanged(bool* changed) noexcept = 0;
    virtual HRESULT PutChanged(bool changed) noexcept = 0;

    // A widget's property (Text, Value, Caption, Min, Max, ...): DISP_E_UNKNOWNNAME for a widget
    // or property the page does not have.
    virtual HRESULT GetProperty(const std::string& widget, const std::string& property,
                                Variant* value) noexcept = 0;
    // An edit by the user, with the events such an edit raises: a text box's Text, a slider's
    // Value (the thumb moved), an option button's or check box's Value.
    virtual HRESULT UserPut(const std::string& widget, const std::string& property,
                            const Variant& value) noexcept = 0;
    // A click on an option button or check box.
    virtual HRESULT UserClick(const std::string& widget) noexcept = 0;
    // Goes up whenever anything that a view shows changes.
    virtual HRESULT GetChangeCount(std::uint32_t* count) noexcept = 0;

  protected:
    ~IKestronePropertyPage() = default;
};

inline constexpr Guid IID_IKestronePropertyPages{
    0x8C3F2D16, 0x6B7A, 0x4A25, {0xB3, 0x1E, 0x55, 0x0F, 0x92, 0x6D, 0x11, 0x0B}};

// Offered by a control that has a property page.
class IKestronePropertyPages : public IUnknown {
  public:
    // Makes the page; it has run its Initialize and holds no selection yet.
    virtual HRESULT CreatePropertyPage(IKestronePropertyPage** page) noexcept = 0;

  protected:
    ~IKestronePropertyPages() = default;
};

}  // namespace kestrone
