// The panel's interfaces of the Rovanta object: the view's (IKestronePanel) and the inspection of
// elements by name (IKestronePanelInspection). A tear-off that keeps its object alive; any other
// interface is asked of the object.
#pragma once

#include "host/module_lock.h"
#include "host/rovanta_component.h"
#include "kestrone/com_object.h"
#include "kestrone/field_access.h"
#include "kestrone/panel.h"

namespace rovanta {

using PanelInterfaces = kestrone::Interfaces<
    kestrone::Implements<kestrone::IKestronePanel, kestrone::IID_IKestronePanel>,
    kestrone::Implements<kestrone::IKestronePanelInspection,
                         kestrone::IID_IKestronePanelInspection>>;

class PanelFacet final : public kestrone::ComTearOff<PanelInterfaces, ModuleObjectLifetime> {
  public:
    // Hands out `iid` (one of the two) on a new tear-off of `owner`.
    static kestrone::HRESULT create(kestrone::IUnknown* owner, Rovanta& core,
                                    const kestrone::Guid& iid, void** ppv) noexcept;

    // IKestronePanel
    kestrone::HRESULT GetElementCount(std::int32_t* count) noexcept override;
    kestrone::HRESULT GetElement(std::int32_t id, kestrone::ElementInfo* info) noexcept override;
    kestrone::HRESULT GetRevision(std::uint64_t* revision) noexcept override;
    kestrone::HRESULT GetChangedElements(std::uint64_t since, std::vector<std::int32_t>* ids,
                                         std::uint64_t* now) noexcept override;
    kestrone::HRESULT GetSize(float* width_twips, float* height_twips) noexcept override;
    kestrone::HRESULT GetTwipsPerPixel(float* twips) noexcept override;
    kestrone::HRESULT GetBackColour(kestrone::Rgba* colour) noexcept override;
    kestrone::HRESULT SetSize(float width_twips, float height_twips) noexcept override;
    kestrone::HRESULT Paint() noexcept override;
    kestrone::HRESULT Pointer(kestrone::PointerAction action, std::int32_t buttons,
                              std::int32_t shift, float x, float y) noexcept override;
    kestrone::HRESULT Click(std::int32_t id) noexcept override;
    kestrone::HRESULT Arrow(std::int32_t id, bool up) noexcept override;
    kestrone::HRESULT GetFocus(std::int32_t* id) noexcept override;
    kestrone::HRESULT SetFocus(std::int32_t id) noexcept override;
    kestrone::HRESULT GetElementView(std::int32_t id,
                                     kestrone::ElementView* view) noexcept override;
    kestrone::HRESULT GetPaintOrder(std::vector<std::int32_t>* back_to_front) noexcept override;
    kestrone::HRESULT GetPicture(std::uint32_t picture, std::int32_t* width, std::int32_t* height,
                                 std::vector<std::uint8_t>* rgba) noexcept override;
    kestrone::HRESULT GetClock(std::int64_t* now_ms) noexcept override;
    kestrone::HRESULT NextTick(std::int64_t* due_ms, std::int32_t* timer) noexcept override;
    kestrone::HRESULT Tick(std::int32_t timer) noexcept override;
    kestrone::HRESULT AdvanceTo(std::int64_t now_ms, std::int64_t* ticks) noexcept override;
    kestrone::HRESULT RaiseNextTick(std::int64_t until_ms, std::int64_t* at_ms,
                                    std::int32_t* timer) noexcept override;

    // IKestronePanelInspection
    kestrone::HRESULT GetProperty(const std::string& element, const std::int32_t* index,
                                  const std::string& property,
                                  kestrone::Variant* value) noexcept override;
    kestrone::HRESULT PutProperty(const std::string& element, const std::int32_t* index,
                                  const std::string& property,
                                  const kestrone::Variant& value) noexcept override;
    kestrone::HRESULT FindElement(const std::string& element, const std::int32_t* index,
                                  std::int32_t* id) noexcept override;
    kestrone::HRESULT RaiseEvent(const std::string& handler, kestrone::Variant* args,
                                 std::int32_t argc) noexcept override;

  private:
    PanelFacet(kestrone::IUnknown* owner, Rovanta& core) : ComTearOff(owner), core_(core) {}
    ~PanelFacet() override = default;
    // The element behind a name: S_OK with its id, or the status of a name that fails.
    kestrone::HRESULT lookup(const std::string& element, const std::int32_t* index, int* id);

    Rovanta& core_;
};

}  // namespace rovanta
