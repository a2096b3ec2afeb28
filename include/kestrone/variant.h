// Variant: the tagged value that passes between the host and the component.
#pragma once

#include <cstdint>
#include <string>
#include <utility>
#include <variant>
#include <vector>

namespace kestrone {

// The kinds a tagged value can hold. `Variant` appears only as the element kind of an array.
enum class VarType : std::uint8_t {
    Empty,
    Integer,
    Long,
    Single,
    Double,
    Boolean,
    String,
    Byte,
    Variant
};

class Variant;

// A one-dimensional array with its bounds; an empty array has the bounds 0 to -1.
struct SafeArray {
    VarType element = VarType::Variant;
    std::int32_t lower = 0;
    std::vector<Variant> items;

    // Wider than a bound: an empty array from -2147483648 ends at -2147483649.
    std::int64_t upper() const;
    bool operator==(const SafeArray&) const;
};

class Variant {
  public:
    Variant() = default;

    static Variant integer(std::int16_t v) { return Variant(Value(std::in_place_index<1>, v)); }
    static Variant long_(std::int32_t v) { return Variant(Value(std::in_place_index<2>, v)); }
    static Variant single(float v) { return Variant(Value(std::in_place_index<3>, v)); }
    static Variant double_(double v) { return Variant(Value(std::in_place_index<4>, v)); }
    static Variant boolean(bool v) { return Variant(Value(std::in_place_index<5>, v)); }
    static Variant string(std::string v) {
        return Variant(Value(std::in_place_index<6>, std::move(v)));
    }
    static Variant byte(std::uint8_t v) { return Variant(Value(std::in_place_index<7>, v)); }
    static Variant array(VarType element, std::int32_t lower, std::vector<Variant> items) {
        return Variant(Value(std::in_place_index<8>, SafeArray{element, lower, std::move(items)}));
    }

    // The kind of a scalar; for an array, the kind of its elements (see is_array).
    VarType type() const;
    bool is_array() const { return v_.index() == 8; }
    bool is_empty() const { return v_.index() == 0; }

    // Raw access: the caller has checked the kind.
    std::int16_t as_integer() const { return std::get<1>(v_); }
    std::int32_t as_long() const { return std::get<2>(v_); }
    float as_single() const { return std::get<3>(v_); }
    double as_double() const { return std::get<4>(v_); }
    bool as_boolean() const { return std::get<5>(v_); }
    const std::string& as_string() const { return std::get<6>(v_); }
    std::uint8_t as_byte() const { return std::get<7>(v_); }
    const SafeArray& as_array() const { return std::get<8>(v_); }
    SafeArray& as_array() { return std::get<8>(v_); }

    bool operator==(const Variant& other) const { return v_ == other.v_; }

  private:
    using Value = std::variant<std::monostate, std::int16_t, std::int32_t, float, double, bool,
                               std::string, std::uint8_t, SafeArray>;
    explicit Variant(Value v) : v_(std::move(v)) {}
    Value v_;
};

inline VarType Variant::type() const {
    switch (v_.index()) {
        case 1:
            return VarType::Integer;
        case 2:
            return VarType::Long;
        case 3:
            return VarType::Single;
        case 4:
            return VarType::Double;
        case 5:
            return VarType::Boolean;
        case 6:
            return VarType::String;
        case 7:
            return VarType::Byte;
        case 8:
            return as_array().element;
        default:
            return VarType::Empty;
    }
}

inline std::int64_t SafeArray::upper() const {
    return std::int64_t{lower} + static_cast<std::int64_t>(items.size()) - 1;
}

inline bool SafeArray::operator==(const SafeArray& o) const {
    return element == o.element && lower == o.lower && items == o.items;
}

}  // namespace kestrone
