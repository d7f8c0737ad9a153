/* Builds a record, appends to it and checks the result through the C API. */
#include <libdsp.h>
#include <stdio.h>

int main(void)
{
    double samples[3] = {1.0, 2.0, 3.0};
    dsp a, b;
    int32_t verdict = 99;
    dsp_init(&a);
    dsp_init(&b);
    a.data = samples; /* caller-attached storage */
    a.points = 3;
    if (dsp_copy(&b, &a) != 0 || dsp_append(&b, &a) != 0) return 1;
    if (b.points != 6 || b.data[5] != 3.0) return 2;
    if (dsp_copy_at_most(&a, &b, 3) != 0 || dsp_cmp(&a, &b, 0.0, &verdict) != -1) return 3;
    dsp_destroy(&a);
    dsp_destroy(&b);
    printf("C consumer: libdsp %d\n", (int)dsp_version());
    return dsp_version() == 205 ? 0 : 4;
}
