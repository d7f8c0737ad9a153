/* A first tour of the signal record: build records, reshape them, convert
 * them between real, complex and polar forms, and print them. */
#include <libdsp.h>
#include <math.h>
#include <stdio.h>

static void print_record(const char *title, const dsp *s)
{
    printf("%-34s %2d %-7s delta %-6g:", title, (int)s->points, s->complex ? "complex" : "real", s->delta);
    for (int32_t i = 0; i < s->points; ++i) {
        if (s->complex)
            printf(" (%.4g, %.4g)", s->data[2 * i], s->data[2 * i + 1]);
        else
            printf(" %.4g", s->data[i]);
    }
    printf("\n");
}

int main(void)
{
    dsp s, t;
    dsp_init(&s);
    dsp_init(&t);
    printf("libdsp %d\n\n", (int)dsp_version());

    s.points = 5;
    s.delta = 0.5;
    if (dsp_alloc(&s) != 0) return 1;
    for (int32_t i = 0; i < s.points; ++i) s.data[i] = i + 1.0;
    print_record("samples", &s);

    dspi_swap_halves(&s);
    print_record("swap_halves (centre the middle)", &s);
    dspi_swap_halves2(&s);
    print_record("swap_halves2 (undo)", &s);

    dspi_zpad2(&s, 8, DSP_PAD_CENTER | DSP_PAD_SCALE_NONE);
    print_record("zpad2 to 8, centred", &s);
    dspi_unzpad(&s, 5, DSP_PAD_CENTER | DSP_PAD_SCALE_NONE);
    print_record("unzpad back to 5", &s);

    dsp_copy(&t, &s);
    dspi_cscale(&t, 0.0, 1.0);
    print_record("copy times i", &t);
    dspi_rtop(&t);
    print_record("to polar (magnitude, phase)", &t);
    dspi_ptor(&t);
    print_record("back to rectangular", &t);

    dsp_copy(&t, &s);
    dspi_db(&t, 20.0);
    print_record("20 log10", &t);

    dsp_append(&s, &t);
    print_record("samples with the dB values appended", &s);
    dspi_sort(&s);
    print_record("sorted", &s);

    dsp_destroy(&s);
    dsp_destroy(&t);
    return 0;
}
