// The settings' walks over the host's store. A failure of the store itself (not a value that
// does not convert) leaves the walk as StoreFailure, so that its status reaches the host as is.
#pragma once

#include <cstdint>
#include <exception>
#include <string>

#include "kestrone/status.h"

namespace rovanta {

class StoreFailure : public std::exception {
  public:
    explicit StoreFailure(kestrone::HRESULT status) : status_(status) {}
    kestrone::HRESULT status() const { return status_; }
    const char* what() const noexcept override { return "the store failed"; }

  private:
    kestrone::HRESULT status_;
};

// The keys of a pin's place, by its index in Pins.
std::string port_key(std::int32_t index);
std::string bit_key(std::int32_t index);

}  // namespace rovanta
