#include "host/property_page_object.h"

#include "host/guarded_call.h"
#include "platform/vb_numeric.h"

namespace rovanta {

HRESULT PropertyPageObject::create(const platform::ModuleFacts& app,
                                   kestrone::IKestronePropertyPage** out) {
    if (!out) return kestrone::E_POINTER;
    *out = nullptr;
    return guarded_call([&] { *out = new PropertyPageObject(app); });
}

HRESULT PropertyPageObject::GetCaption(std::string* caption) noexcept {
    if (!caption) return kestrone::E_POINTER;
    return guarded_call([&] { *caption = std::string(PropertyPage2::kCaption); });
}
HRESULT PropertyPageObject::GetSize(float* width, float* height) noexcept {
    if (!width || !height) return kestrone::E_POINTER;
    return guarded_call([&] {
        *width = vb::fdiv(vb::csng(PropertyPage2::kWidth), PropertyPage2::kTwipsPerPixel);
        *height = vb::fdiv(vb::csng(PropertyPage2::kHeight), PropertyPage2::kTwipsPerPixel);
    });
}
HRESULT PropertyPageObject::GetWidgetCount(std::int32_t* count) noexcept {
    if (!count) return kestrone::E_POINTER;
    *count = static_cast<std::int32_t>(page_.widgets().size());
    return kestrone::S_OK;
}
HRESULT PropertyPageObject::GetWidget(std::int32_t index, kestrone::WidgetInfo* info) noexcept {
    if (!info) return kestrone::E_POINTER;
    if (index < 0 || index >= static_cast<std::int32_t>(page_.widgets().size()))
        return kestrone::basic_error_status(vb::kSubscriptOutOfRange);
    return guarded_call([&] { *info = page_.widgets()[static_cast<std::size_t>(index)]; });
}
HRESULT PropertyPageObject::GetRevision(std::uint64_t* revision) noexcept {
    if (!revision) return kestrone::E_POINTER;
    *revision = page_.revision();
    return kestrone::S_OK;
}
HRESULT PropertyPageObject::GetChangedWidgets(std::uint64_t since,
                                              std::vector<std::int32_t>* indices,
                                              std::uint64_t* now) noexcept {
    if (!indices || !now) return kestrone::E_POINTER;
    return guarded_call([&] {
        page_.changed_since(since, *indices);
        *now = page_.revision();
    });
}

HRESULT PropertyPageObject::SetSelectedControls(kestrone::IUnknown* const* controls,
                                                std::int32_t count) noexcept {
    if (count < 0 || (count > 0 && !controls)) return kestrone::E_INVALIDARG;
    const HRESULT hr = guarded_call([&] {
        std::vector<kestrone::ComPtr<kestrone::IKestroneDispatch>> selected;
        for (std::int32_t i = 0; i < count; ++i) {
            kestrone::ComPtr<kestrone::IKestroneDispatch> d;
            if (controls[i]) controls[i]->QueryInterface(kestrone::IID_IKestroneDispatch, d.put());
            selected.push_back(std::move(d));
        }
        page_.SelectedControls = std::move(selected);
    });
    if (kestrone::failed(hr)) return hr;
    return page_.PropertyPage_SelectionChanged();
}
HRESULT PropertyPageObject::Apply() noexcept {
    return page_.PropertyPage_ApplyChanges();
}
HRESULT PropertyPageObject::GetChanged(bool* changed) noexcept {
    if (!changed) return kestrone::E_POINTER;
    *changed = page_.Changed;
    return kestrone::S_OK;
}
HRESULT PropertyPageObject::PutChanged(bool changed) noexcept {
    page_.Changed = changed;
    return kestrone::S_OK;
}
HRESULT PropertyPageObject::GetProperty(const std::string& widget, const std::string& property,
                                        Variant* value) noexcept {
    if (!value) return kestrone::E_POINTER;
    HRESULT status = kestrone::S_OK;
    const HRESULT hr = guarded_call([&] { status = page_.get(widget, property, *value); });
    return kestrone::failed(hr) ? hr : status;
}
HRESULT PropertyPageObject::UserPut(const std::string& widget, const std::string& property,
                                    const Variant& value) noexcept {
    return page_.user_put(widget, property, value);
}
HRESULT PropertyPageObject::UserClick(const std::string& widget) noexcept {
    return page_.user_click(widget);
}

}  // namespace rovanta
