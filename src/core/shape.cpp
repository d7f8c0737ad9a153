#include "core/record.hpp"

int32_t dsp_binary_shape(const dsp *first, const dsp *second, dsp *result)
{
    if (first->points != second->points) return -1;
    const double delta = (first->delta + second->delta) * 0.5;
    const int32_t old_complex = result->complex;
    const int32_t complex_flag = (first->complex || second->complex) ? 1 : 0;
    const int32_t points = first->points;
    const bool shares_storage = result->data == first->data || result->data == second->data;
    result->delta = delta;
    result->complex = complex_flag;
    result->points = points;
    // A result that is also an input must keep that input's values while it
    // grows (a real input turning into a complex result doubles in place).
    return shares_storage ? dsp_realloc(result, points, old_complex) : dsp_alloc(result);
}
