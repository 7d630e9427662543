#pragma once

#include "uti_CommandException.h"

/// A colour name that no colour map knows.
class CAE_API g3d_ColorErrorException final : public uti_ValueException<g3d_ColorErrorException> {
public:
    static constexpr uti_ValueErrorInfo kError{0x240003, "g3d_ColorErrorException", "ColorError",
                                               "%s is not a valid color name."};
    using uti_ValueException::uti_ValueException;
};
