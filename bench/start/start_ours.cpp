// Loads the three libraries, starts and stops them.
#include "UTI_CaeUtils.h"

int main() {
    int count = 0;
    UTI_CaeUtils_initialize(count);
    const bool up = count > 0;
    UTI_CaeUtils_finalize(count);
    return up && count == 0 ? 0 : 1;
}
