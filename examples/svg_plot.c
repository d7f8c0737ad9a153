/* A minimal SVG line plot for the demo. */
#include "svg_plot.h"

#include <math.h>
#include <stdio.h>

enum { WIDTH = 900, HEIGHT = 500, LEFT = 70, RIGHT = 20, TOP = 40, BOTTOM = 50 };

static double to_px_x(const svg_plot *p, double x)
{
    return LEFT + (x - p->x_min) / (p->x_max - p->x_min) * (WIDTH - LEFT - RIGHT);
}

static double to_px_y(const svg_plot *p, double y)
{
    if (y < p->y_min) y = p->y_min;
    if (y > p->y_max) y = p->y_max;
    return TOP + (p->y_max - y) / (p->y_max - p->y_min) * (HEIGHT - TOP - BOTTOM);
}

static void grid(FILE *f, const svg_plot *p)
{
    for (double x = ceil(p->x_min / p->x_tick) * p->x_tick; x <= p->x_max + 1e-9 * p->x_tick; x += p->x_tick) {
        fprintf(f, "<line x1='%.1f' y1='%d' x2='%.1f' y2='%d' stroke='#ddd'/>\n", to_px_x(p, x), TOP,
                to_px_x(p, x), HEIGHT - BOTTOM);
        fprintf(f, "<text x='%.1f' y='%d' font-size='12' text-anchor='middle'>%g</text>\n", to_px_x(p, x),
                HEIGHT - BOTTOM + 16, x);
    }
    for (double y = ceil(p->y_min / p->y_tick) * p->y_tick; y <= p->y_max + 1e-9 * p->y_tick; y += p->y_tick) {
        fprintf(f, "<line x1='%d' y1='%.1f' x2='%d' y2='%.1f' stroke='#ddd'/>\n", LEFT, to_px_y(p, y),
                WIDTH - RIGHT, to_px_y(p, y));
        fprintf(f, "<text x='%d' y='%.1f' font-size='12' text-anchor='end'>%g</text>\n", LEFT - 6,
                to_px_y(p, y) + 4, y);
    }
    fprintf(f, "<rect x='%d' y='%d' width='%d' height='%d' fill='none' stroke='#333'/>\n", LEFT, TOP,
            WIDTH - LEFT - RIGHT, HEIGHT - TOP - BOTTOM);
}

int svg_write_plot(const char *path, const svg_plot *p, const double *x, const double *y, int count,
                   const svg_marker *markers, int marker_count)
{
    FILE *f = fopen(path, "w");
    if (!f) return -1;
    fprintf(f, "<svg xmlns='http://www.w3.org/2000/svg' width='%d' height='%d' font-family='sans-serif'>\n",
            WIDTH, HEIGHT);
    fprintf(f, "<rect width='100%%' height='100%%' fill='white'/>\n");
    fprintf(f, "<text x='%d' y='24' font-size='16'>%s</text>\n", LEFT, p->title);
    grid(f, p);
    fprintf(f, "<text x='%d' y='%d' font-size='13' text-anchor='middle'>%s</text>\n", (LEFT + WIDTH - RIGHT) / 2,
            HEIGHT - 12, p->x_label);
    fprintf(f, "<text x='16' y='%d' font-size='13' text-anchor='middle' transform='rotate(-90 16 %d)'>%s</text>\n",
            (TOP + HEIGHT - BOTTOM) / 2, (TOP + HEIGHT - BOTTOM) / 2, p->y_label);
    fprintf(f, "<polyline fill='none' stroke='#1f5fbf' stroke-width='1' points='");
    for (int i = 0; i < count; ++i) fprintf(f, "%.1f,%.1f ", to_px_x(p, x[i]), to_px_y(p, y[i]));
    fprintf(f, "'/>\n");
    for (int i = 0; i < marker_count; ++i) {
        const double mx = to_px_x(p, markers[i].x), my = to_px_y(p, markers[i].y);
        fprintf(f, "<circle cx='%.1f' cy='%.1f' r='4' fill='none' stroke='#c0392b' stroke-width='2'/>\n", mx, my);
        fprintf(f, "<text x='%.1f' y='%.1f' font-size='12' fill='#c0392b'>%s</text>\n", mx + 8, my - 6,
                markers[i].label);
    }
    fprintf(f, "</svg>\n");
    return fclose(f) == 0 ? 0 : -1;
}
