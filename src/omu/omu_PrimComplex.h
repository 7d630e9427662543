#pragma once

#include "omi_complex.h"
#include "omu_PrimLevel.h"

/// A complex number.
class CAE_API omu_PrimComplex : public omu_PrimLevel<omu_PrimComplex, omu_Primitive> {
public:
    static constexpr cls_ClassInfo kClass{"omu_PrimComplex", 0x130022, 0x130011, 800};

    explicit omu_PrimComplex(const omi_complex& value = {}) noexcept
        : omu_PrimLevel('x'), _value(value) {}
    explicit omu_PrimComplex(const cls_ReadVisitor& visitor);
    ~omu_PrimComplex() override;

    [[nodiscard]] cow_String TypeString() const override { return "complex"; }
    /// "1+2j": real part, sign, imaginary part, "j"; fifteen digits at most each.
    [[nodiscard]] cow_String AsString(int depth) const override;
    /// Whether the other is a complex number of equal rectangular parts.
    bool operator==(const omu_Primitive& other) const override;

    [[nodiscard]] const omi_complex& Value() const noexcept { return _value; }

private:
    friend struct cls_Access;

    /// Stores one rectangular part under a name of its own.
    template <bool Imaginary>
    struct Part : cls_PlainFieldTraits<double, cls_AttributeType::Double> {
        static void Write(const cls_WriteVisitor& visitor, const char* name,
                          const omi_complex& value) {
            visitor.Write(name, Imaginary ? value.ConvertedImag() : value.ConvertedReal());
        }
        static void Read(const cls_ReadVisitor& visitor, const char* name, omi_complex& value) {
            double part = 0.0;
            visitor.Read(name, part);
            value = Imaginary ? omi_complex(value.Real(), part) : omi_complex(part, value.Imag());
        }
    };

    static constexpr auto Fields() {
        using Real = cls_Field<omu_PrimComplex, omi_complex, Part<false>>;
        using Imag = cls_Field<omu_PrimComplex, omi_complex, Part<true>>;
        return std::tuple{Real{"complexNumRe", &omu_PrimComplex::_value},
                          Imag{"complexNumIm", &omu_PrimComplex::_value}};
    }

    omi_complex _value;
    cls_Uid _uid;
};
