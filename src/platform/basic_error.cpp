#include "platform/basic_error.h"

#include <algorithm>
#include <array>
#include <utility>

namespace vb {

namespace {
constexpr std::array<std::pair<int, std::string_view>, 21> kDescriptions{{
    {kInvalidCall, "Invalid procedure call or argument"},
    {kOverflow, "Overflow"},
    {kOutOfMemory, "Out of memory"},
    {kSubscriptOutOfRange, "Subscript out of range"},
    {kDivisionByZero, "Division by zero"},
    {kTypeMismatch, "Type mismatch"},
    {kBadFileNameOrNumber, "Bad file name or number"},
    {kFileNotFound, "File not found"},
    {kFileAlreadyOpen, "File already open"},
    {kInputPastEndOfFile, "Input past end of file"},
    {kPermissionDenied, "Permission denied"},
    {kPathFileAccessError, "Path/File access error"},
    {kPathNotFound, "Path not found"},
    {kObjectNotSet, "Object variable or With block variable not set"},
    {kControlArrayElementMissing, "Control array element doesn't exist"},
    {kInvalidPropertyValue, "Invalid property value"},
    {kPropertyReadOnly, "Property is read-only"},
    {kObjectRequired, "Object required"},
    {kNoSuchMember, "Object doesn't support this property or method"},
    {51, "Internal error"},
    {440, "Automation error"},
}};
}  // namespace

std::string_view error_description(int number) {
    const auto* it = std::find_if(kDescriptions.begin(), kDescriptions.end(),
                                  [number](const auto& d) { return d.first == number; });
    return it != kDescriptions.end() ? it->second : "Application-defined or object-defined error";
}

BasicError::BasicError(int number) : number_(number), description_(error_description(number)) {}

void raise_error(int number) {
    throw BasicError(number);
}

}  // namespace vb
