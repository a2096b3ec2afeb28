// A control's property page as a property frame reaches it: the frame makes the page, hands it
// the selected controls, applies it and watches its Changed flag; a view builds the page from its
// widgets, refreshes those that changed and passes the user's edits on. The page itself reaches
// the controls' properties by name.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "kestrone/com.h"
#include "kestrone/variant.h"

namespace kestrone {

enum class WidgetKind : std::uint8_t { Frame, Label, TextBox, OptionButton, CheckBox, Slider };
enum class WidgetAlignment : std::uint8_t { Left, Right, Center };

// One widget of a page with everything a view shows of it. The rectangle is in pixels from the
// corner of its container. Which values mean something depends on the kind: the caption for
// frames, labels, option buttons and check boxes; the text for text boxes; the value for option
// buttons (-1 on, 0 off), check boxes (0 clear, 1 ticked, 2 grey) and sliders (the thumb's
// place between min and max, with its steps and tick marks).
struct WidgetInfo {
    std::string name;
    WidgetKind kind = WidgetKind::Label;
    std::int32_t container = -1;  // index of the frame that holds it; -1 the page
    float left = 0, top = 0, width = 0, height = 0;
    std::int16_t tab_index = 0;
    WidgetAlignment alignment = WidgetAlignment::Left;
    bool enabled = true;
    std::string caption;
    std::string text;
    std::int32_t value = 0;
    std::int32_t min = 0, max = 0, small_change = 0, large_change = 0, tick_frequency = 0;
    std::uint64_t revision = 0;  // the page's change counter at this widget's last change
};

inline constexpr Guid IID_IKestronePropertyPage{
    0x8C3F2D17, 0x6B7A, 0x4A25, {0xB3, 0x1E, 0x55, 0x0F, 0x92, 0x6D, 0x11, 0x0C}};

class IKestronePropertyPage : public IUnknown {
  public:
    // The page as a whole: its caption and its client size in pixels.
    virtual HRESULT GetCaption(std::string* caption) noexcept = 0;
    virtual HRESULT GetSize(float* width, float* height) noexcept = 0;
    // The widgets in the order of the page's form, index 0 first; a frame comes before the
    // widgets it holds.
    virtual HRESULT GetWidgetCount(std::int32_t* count) noexcept = 0;
    virtual HRESULT GetWidget(std::int32_t index, WidgetInfo* info) noexcept = 0;
    // The change counter: it grows with every change of any widget.
    virtual HRESULT GetRevision(std::uint64_t* revision) noexcept = 0;
    // The indices of the widgets changed after `since`, and the counter now.
    virtual HRESULT GetChangedWidgets(std::uint64_t since, std::vector<std::int32_t>* indices,
                                      std::uint64_t* now) noexcept = 0;

    // The frame's side. The controls are held until the page is released; element 0 is the one
    // the page works on. Setting them raises the page's SelectionChanged; its status comes back.
    virtual HRESULT SetSelectedControls(IUnknown* const* controls, std::int32_t count) noexcept = 0;
    // Raises ApplyChanges; the status of a property write that failed comes back.
    virtual HRESULT Apply() noexcept = 0;
    virtual HRESULT GetChanged(bool* changed) noexcept = 0;
    virtual HRESULT PutChanged(bool changed) noexcept = 0;

    // A widget's property as a program reads it (Text, Value, Caption, Min, Max, Enabled, Left
    // in twips, ...): DISP_E_UNKNOWNNAME for a widget or property the page does not have.
    virtual HRESULT GetProperty(const std::string& widget, const std::string& property,
                                Variant* value) noexcept = 0;
    // An edit by the user, with the events such an edit raises: a text box's Text, a slider's
    // Value (the thumb moved), an option button's or check box's Value. Error 438 for a property
    // that is not the user's to set.
    virtual HRESULT UserPut(const std::string& widget, const std::string& property,
                            const Variant& value) noexcept = 0;
    // A click on an option button or check box.
    virtual HRESULT UserClick(const std::string& widget) noexcept = 0;

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
