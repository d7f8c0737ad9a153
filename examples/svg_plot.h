/* A minimal SVG line plot for the demo: one trace, labelled axes and marked
 * points. Plotting belongs to the example, not to the library. */
#ifndef SVG_PLOT_H
#define SVG_PLOT_H

typedef struct svg_marker {
    double x, y;
    const char *label;
} svg_marker;

typedef struct svg_plot {
    const char *title;
    const char *x_label;
    const char *y_label;
    double x_min, x_max, y_min, y_max; /* visible ranges; y is clipped to them */
    double x_tick, y_tick;             /* spacing of the grid lines */
} svg_plot;

/* Writes points (x[i], y[i]), i < count, as one polyline with the markers.
 * Returns 0, or -1 when the file cannot be written. */
int svg_write_plot(const char *path, const svg_plot *plot, const double *x, const double *y, int count,
                   const svg_marker *markers, int marker_count);

#endif
