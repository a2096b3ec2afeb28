// What the host lends the component: the platform's message box and tone.
#pragma once

#include <cstdint>
#include <string>

#include "kestrone/com.h"

namespace kestrone {

// Implemented by the host. Both calls return only when they are done: the message box when the
// user has closed it, the tone when it has ended. Neither may throw.
class IHostServices {
  public:
    virtual void ShowMessage(const std::string& text) noexcept = 0;
    // Every request as the component passes it, whether or not such a tone can sound.
    virtual void PlayTone(std::int32_t hertz, std::int32_t milliseconds) noexcept = 0;

  protected:
    ~IHostServices() = default;
};

// Offered by the class factory: the host hands over its services before it creates an object,
// so that even the messages of creation reach it. The services must outlive the objects.
inline constexpr Guid IID_IServiceSite{
    0x8C3F2D12, 0x6B7A, 0x4A25, {0xB3, 0x1E, 0x55, 0x0F, 0x92, 0x6D, 0x11, 0x07}};

class IServiceSite : public IUnknown {
  public:
    virtual HRESULT SetHostServices(IHostServices* services) noexcept = 0;

  protected:
    ~IServiceSite() = default;
};

}  // namespace kestrone
