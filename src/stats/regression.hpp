// Straight-line least-squares fit of a record against its abscissa k * delta.
#pragma once

#include "libdsp.h"

namespace dsp_core {

// Slots of the fit's 20-value block, in order.
enum LineFitSlot {
    kFitIntercept,
    kFitSlope,
    kFitCorrelation,
    kFitDetermination,
    kFitInterceptError,
    kFitSlopeError,
    kFitResidualError,
    kFitResidualRms,
    kFitLargestResidual,
    kFitLargestResidualAt,
    kFitSmallestResidual,
    kFitSmallestResidualAt,
    kFitResidualSpan,
    kFitResidualSumSquares,
    kFitTotalSumSquares,
    kFitF,
    kFitMeanAbscissa,
    kFitMeanValue,
    kFitPoints,
    kFitDegreesOfFreedom,
    kLineFitValues
};

// Fits y[k] = intercept + slope * k * delta to a real record and fills the
// block; -1 for a complex record. A statistic whose denominator is zero is 0.
int32_t line_fit(const dsp *src, double (&fit)[kLineFitValues]);

}  // namespace dsp_core
