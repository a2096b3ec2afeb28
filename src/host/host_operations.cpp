// The host interface's own operations: general-purpose calls, nodes and custom images.
#include "host/rovanta_component.h"
#include "platform/vb_numeric.h"

namespace rovanta {

Variant Rovanta::GeneralGet(Long lID) {
    switch (lID) {
        case 1: {
            const bool changed = link.bPinsChanged;
            link.bPinsChanged = false;
            return Variant::boolean(changed);
        }
        case 3:
            return Variant::string(CodeFilePath());
        default:
            return Variant::integer(0);
    }
}

void Rovanta::WriteCustomImages(Long lID, const std::string& RHS) {
    MsgBox("id=" + vb::cstr(std::int64_t{lID}) + "  and filename = \r\n" + RHS);
}

// This component has no nodes: an empty message of one byte, and a size of 0.
Variant Rovanta::VNodeMsgRead(Long /*lIdx*/, Long& lSize) const {
    lSize = 0;
    return Variant::array(kestrone::VarType::Byte, 0, {Variant::byte(0)});
}

}  // namespace rovanta
