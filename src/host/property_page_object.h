// The property page as the property frame and a view reach it.
#pragma once

#include "host/module_lock.h"
#include "host/property_page_model.h"
#include "kestrone/com_object.h"

namespace rovanta {

class PropertyPageObject final
    : public kestrone::ComObject<
          PropertyPageObject,
          kestrone::Interfaces<kestrone::Implements<kestrone::IKestronePropertyPage,
                                                    kestrone::IID_IKestronePropertyPage>>,
          ModuleObjectLifetime> {
  public:
    static HRESULT create(const platform::ModuleFacts& app, kestrone::IKestronePropertyPage** out);

    PropertyPage2& page() { return page_; }

    HRESULT GetCaption(std::string* caption) noexcept override;
    HRESULT GetSize(float* width, float* height) noexcept override;
    HRESULT GetWidgetCount(std::int32_t* count) noexcept override;
    HRESULT GetWidget(std::int32_t index, kestrone::WidgetInfo* info) noexcept override;
    HRESULT GetRevision(std::uint64_t* revision) noexcept override;
    HRESULT GetChangedWidgets(std::uint64_t since, std::vector<std::int32_t>* indices,
                              std::uint64_t* now) noexcept override;
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

  private:
    explicit PropertyPageObject(const platform::ModuleFacts& app) : page_(app) {}
    ~PropertyPageObject() override = default;
    PropertyPage2 page_;
};

}  // namespace rovanta
