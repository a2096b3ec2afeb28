// Basic run-time errors: a failure inside the component carries its Basic error number.
#pragma once

#include <exception>
#include <string>
#include <string_view>

namespace vb {

enum ErrorNumber : int {
    kInvalidCall = 5,
    kOverflow = 6,
    kOutOfMemory = 7,
    kSubscriptOutOfRange = 9,
    kDivisionByZero = 11,
    kTypeMismatch = 13,
    kBadFileNameOrNumber = 52,
    kFileNotFound = 53,
    kFileAlreadyOpen = 55,
    kInputPastEndOfFile = 62,
    kPermissionDenied = 70,
    kPathFileAccessError = 75,
    kPathNotFound = 76,
    kObjectNotSet = 91,
    kControlArrayElementMissing = 340,
    kInvalidPropertyValue = 380,
    kPropertyReadOnly = 383,
    kObjectRequired = 424,
    kNoSuchMember = 438,
};

// The runtime's own description of an error number.
std::string_view error_description(int number);

class BasicError : public std::exception {
  public:
    explicit BasicError(int number);
    int number() const { return number_; }
    const std::string& description() const { return description_; }
    const char* what() const noexcept override { return description_.c_str(); }

  private:
    int number_;
    std::string description_;
};

[[noreturn]] void raise_error(int number);

}  // namespace vb
