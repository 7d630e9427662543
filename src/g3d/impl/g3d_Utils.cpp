#include "g3d_Utils.h"

#include "g3d_LineThicknessEnum.h"
#include "g3d_MarkerSizeEnum.h"
#include "mem_Allocation.h"
#include "nex_AssertException.h"

void g3d_Utils::Assert(bool condition, const char* expression, const char* source, int line) {
    if (!condition) {
        nex_AssertException(expression).Throw(source, line);
    }
}

void g3d_Utils::AssertMem(const void* memory) {
    if (memory == nullptr) {
        mem_ThrowExhausted(0);  // the size is known to the allocation alone
    }
}

float g3d_Utils::ConvertLineThickness(g3d_LineThicknessEnum thickness) noexcept {
    switch (thickness) {
        case g3d_LINE_THIN:
            return 0.5F;
        case g3d_LINE_MEDIUM:
            return 0.8F;
        case g3d_LINE_THICK:
            return 1.2F;
        case g3d_LINE_VERY_THIN:
            break;
    }
    return 0.2F;
}

int g3d_Utils::ConvertMarkerSize(g3d_MarkerSizeEnum size) noexcept {
    switch (size) {
        case g3d_MARKER_MEDIUM:
            return 3;
        case g3d_MARKER_LARGE:
            return 4;
        case g3d_MARKER_SMALL:
            break;
    }
    return 2;
}
