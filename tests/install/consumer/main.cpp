// Uses the C API from C++: the header must compile in C++17 with C linkage.
#include <libdsp.h>

#include <cstdio>
#include <vector>

int main()
{
    dsp s;
    dsp_init(&s);
    s.points = 4;
    if (dsp_alloc(&s) != 0) return 1;
    for (int i = 0; i < 4; ++i) s.data[i] = i + 1.0;
    if (dspi_rtoc(&s) != 0 || s.complex != 1 || s.data[6] != 4.0 || s.data[7] != 0.0) return 2;
    dsp_destroy(&s);
    std::printf("C++ consumer: libdsp %d\n", static_cast<int>(dsp_version()));
    return 0;
}
