// PropertyPage2, the control's one property page, without a screen: its widgets as a small model
// with their events, and the page's three frame events. A view shows the widgets and passes the
// user's edits on; the page reaches the selected control's properties by name only.
#pragma once

#include <array>
#include <atomic>
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

// One widget. Which fields mean something depends on its kind: Caption for frames, labels,
// option buttons and check boxes; Text for text boxes; Value for option buttons (on or off),
// check boxes (0 clear, 1 ticked, 2 grey) and sliders; the range and steps for sliders.
struct PageWidget {
    kestrone::WidgetInfo info;
    std::string caption;
    std::string text;
    std::int32_t value = 0;
    std::int32_t min = 0, max = 10, small_change = 1, large_change = 5, tick_frequency = 1;
};

class PropertyPage2 {
  public:
    // Makes the page from its form and runs PropertyPage_Initialize.
    explicit PropertyPage2(const platform::ModuleFacts& app);

    // The platform's side.
    std::vector<kestrone::ComPtr<kestrone::IKestroneDispatch>> SelectedControls;
    bool Changed = false;
    static constexpr std::string_view kCaption = "Rovanta Properties";
    static constexpr std::int32_t kWidth = 6030, kHeight = 4620;

    // The page's events. Each returns the status of the first property access that failed.
    void PropertyPage_Initialize();
    HRESULT PropertyPage_SelectionChanged();
    HRESULT PropertyPage_ApplyChanges();

    // The widgets, in the order of the form.
    const std::vector<PageWidget>& widgets() const { return widgets_; }
    const PageWidget* find(std::string_view name) const;
    std::uint32_t change_count() const { return change_count_; }

    // Properties by name (DISP_E_UNKNOWNNAME for none such), and the user's edits.
    HRESULT get(std::string_view widget, std::string_view property, Variant& value) const;
    HRESULT user_put(std::string_view widget, std::string_view property, const Variant& value);
    HRESULT user_click(std::string_view widget);

  private:
    PageWidget& w(std::string_view name);
    // What a program's write of each widget does, with the events it raises.
    void set_text(PageWidget& box, const std::string& text);
    void set_option(PageWidget& option, bool on);
    void set_check(PageWidget& check, std::int32_t value);
    void set_slider(PageWidget& slider, std::int32_t value, bool user_drag);
    void set_caption(PageWidget& label, const std::string& caption);
    void raise_event(const PageWidget& source, std::string_view event);

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
    std::uint32_t change_count_ = 0;
};

// The page as the property frame reaches it.
class PropertyPageObject final : public kestrone::IKestronePropertyPage {
  public:
    static HRESULT create(const platform::ModuleFacts& app, kestrone::IKestronePropertyPage** out);

    PropertyPage2& page() { return page_; }

    HRESULT QueryInterface(const kestrone::Guid& iid, void** ppv) noexcept override;
    std::uint32_t AddRef() noexcept override;
    std::uint32_t Release() noexcept override;

    HRESULT GetCaption(std::string* caption) noexcept override;
    HRESULT GetSize(std::int32_t* width, std::int32_t* height) noexcept override;
    HRESULT GetWidgetCount(std::int32_t* count) noexcept override;
    HRESULT GetWidget(std::int32_t index, kestrone::WidgetInfo* info) noexcept override;
    HRESULT SetSelectedControls(kestrone::IUnknown* const* controls,
                                std::int32_t count) noexcept override;
    HRESULT Apply() noexcept override;
    HRESULT GetChanged(bool* changed) noexcept override;
    HRESULT PutChanged(bool changed) noexcept override;
    HRESULT GetProperty(const std::string& widget, const std::string& property,
                        Variant* value) noexcept override;
    HRESULT UserPut(const std::string& widget, const std::string& property,
                    const Variant& value) noexcept override;
    HRESULT UserClick(const std::string& widget) noexcept override;
    HRESULT GetChangeCount(std::uint32_t* count) noexcept override;

  private:
    explicit PropertyPageObject(const platform::ModuleFacts& app);
    ~PropertyPageObject();
    PropertyPage2 page_;
    std::atomic<std::uint32_t> refs_{1};
};

// The number under which IKestroneDispatch knows the member `name` of _Rovanta with that kind,
// or -1 if there is none.
std::int32_t rovanta_member_id(std::string_view name, kestrone::InvokeKind kind);

}  // namespace rovanta
