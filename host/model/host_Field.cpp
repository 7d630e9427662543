#include "host_Field.h"

#include <cmath>
#include <limits>

double host_Field::Scalar(std::size_t index, host_Component component) const {
    if (components == 1) {
        return values[index];
    }
    const std::array<double, 3> vector = Vector(index);
    return component == host_Component::Magnitude ? std::hypot(vector[0], vector[1], vector[2])
                                                  : vector[static_cast<std::size_t>(component) - 1];
}

std::pair<double, double> host_Field::Range(host_Component component) const {
    double low = std::numeric_limits<double>::infinity();
    double high = -low;
    for (std::size_t i = 0; i < Count(); ++i) {
        const double value = Scalar(i, component);
        if (std::isfinite(value)) {
            low = std::min(low, value);
            high = std::max(high, value);
        }
    }
    return low <= high ? std::pair(low + 0.0, high + 0.0) /* never -0 */ : std::pair(0.0, 0.0);
}
