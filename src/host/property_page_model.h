// PropertyPage2, the control's one property page, without a screen: its widgets with their
// values and places, the properties of each kind as a table, the widgets' events routed by a
// table to thin handlers, and the page's three frame events. A view shows the widgets and passes
// the user's edits on; the page reaches the selected control's properties by name only.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "kestrone/com.h"
#include "kestrone/property_page.h"
#include "kestrone/typelib.h"
#include "platform/module_facts.h"

namespace rovanta {

using kestrone::HRESULT;
using kestrone::Variant;

struct PageWidget : kestrone::WidgetInfo {};

enum class PageEvent : std::uint8_t { Change, Click, Scroll };

class PropertyPage2 {
  public:
    // Makes the page from its form and runs PropertyPage_Initialize.
    explicit PropertyPage2(const platform::ModuleFacts& app);

    // The platform's side.
    std::vector<kestrone::ComPtr<kestrone::IKestroneDispatch>> SelectedControls;
    bool Changed = false;
    static constexpr std::string_view kCaption = "Rovanta Properties";
    // The client area in twips, and the twips to a pixel.
    static constexpr std::int32_t kWidth = 6030, kHeight = 4620;
    static constexpr float kTwipsPerPixel = 15;

    // The page's events. Each returns the status of the first property access that failed.
    void PropertyPage_Initialize();
    HRESULT PropertyPage_SelectionChanged();
    HRESULT PropertyPage_ApplyChanges();

    // The widgets, in the order of the form.
    const std::vector<PageWidget>& widgets() const { return widgets_; }
    int find(std::string_view name) const;  // -1 for none
    std::uint64_t revision() const { return revision_; }
    void changed_since(std::uint64_t since, std::vector<std::int32_t>& indices) const;

    // Properties by name (DISP_E_UNKNOWNNAME for none such), and the user's edits.
    HRESULT get(std::string_view widget, std::string_view property, Variant& value) const;
    HRESULT user_put(std::string_view widget, std::string_view property, const Variant& value);
    HRESULT user_click(std::string_view widget);

  private:
    struct Property;
    struct Route;
    struct ClickAction;
    static const Property kProperties[];
    static const Route kRoutes[];
    static const ClickAction kClicks[];
    static const Property* property_of(const PageWidget& w, std::string_view name);

    PageWidget& w(std::string_view name);
    void touch(PageWidget& widget) { widget.revision = ++revision_; }
    // What a program's write of each widget does, with the events it raises.
    void set_text(PageWidget& box, const std::string& text);
    void set_option(PageWidget& option, bool on);
    void set_check(PageWidget& check, std::int32_t value);
    void set_slider(PageWidget& slider, std::int32_t value, bool user_drag);
    void set_caption(PageWidget& label, const std::string& caption);
    void raise_event(const PageWidget& source, PageEvent event);

    // The selected control's properties, by name.
    HRESULT get_property(std::string_view name, Variant& value);
    HRESULT let_property(std::string_view name, Variant value);

    void txtiThreshR_Change() { Changed = true; }
    void txtiThreshF_Change() { Changed = true; }
    void txtiThreshL_Change() { Changed = true; }
    void chkWaitForButton_Click() { Changed = true; }
    void optByte_Click() { Changed = true; }
    void optInt_Click() { Changed = true; }
    void sldMotorBias_Scroll();
    void sldMotorBias_Change();

    platform::ModuleFacts app_;
    std::vector<PageWidget> widgets_;
    std::uint64_t revision_ = 0;
};

}  // namespace rovanta
