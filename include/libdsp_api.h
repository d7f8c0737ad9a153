/* libdsp — the export marker shared by the public headers. */
#ifndef LIBDSP_API_H
#define LIBDSP_API_H

/* Marks the functions the shared library exports; everything else in the
 * library has hidden visibility. */
#ifndef DSP_API
#if defined(__GNUC__)
#define DSP_API __attribute__((visibility("default")))
#else
#define DSP_API
#endif
#endif

#endif /* LIBDSP_API_H */
