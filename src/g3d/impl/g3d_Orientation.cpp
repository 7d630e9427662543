#include "g3d_Orientation.h"

#include <iterator>

double g3d_ExactOrientation2D(const g3d_Point& a, const g3d_Point& b, const g3d_Point& c) noexcept {
    const double ax = a.x, ay = a.y, bx = b.x, by = b.y, cx = c.x, cy = c.y;
    const double terms[] = {ax * by, -(ay * bx), bx * cy, -(by * cx), cx * ay, -(cy * ax)};
    // Shewchuk's figure 8: the exact sum of the terms, one by one.
    double parts[std::size(terms)];  // their sum; none overlaps another, the last is the largest
    int count = 0;
    for (const double term : terms) {
        double sum = term;
        int kept = 0;
        for (int i = 0; i < count; ++i) {
            const double next = sum + parts[i];
            const double share = next - sum;
            const double error = (sum - (next - share)) + (parts[i] - share);
            sum = next;
            if (error != 0) {
                parts[kept++] = error;
            }
        }
        if (sum != 0) {
            parts[kept++] = sum;
        }
        count = kept;
    }
    return count > 0 ? parts[count - 1] : 0;
}
