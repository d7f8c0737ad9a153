// The stored coefficients are the definition of these windows and are used
// exactly as written; the amplitude and power arrays are not recomputed from
// the raw ones (they agree with them only to the digits given).
#include "window/tables.hpp"

#include "libdsp.h"

namespace dsp_window {
namespace {

const double kUniform[] = {1.0};

const double kHannAmplitude[] = {1.0, 1.0};
const double kHannPower[] = {0.816496580927726, 0.816496580927726};
const double kHannRaw[] = {0.5, 0.5};

const double kHammingAmplitude[] = {1.0, 0.8518518518518519};
const double kHammingPower[] = {0.8566034682170329, 0.729699250703398};
const double kHammingRaw[] = {0.54, 0.46};

const double kBlackmanAmplitude[] = {1.0, 1.1904761904761905, 0.19047619047619047};
const double kBlackmanPower[] = {0.76099944650684, 0.905951722031952, 0.144952275525112};
const double kBlackmanRaw[] = {0.42, 0.5, 0.08};

const double kHarris3Amplitude[] = {1.0, 1.171912, 0.184449};
const double kHarris3Power[] = {0.766131803818887, 0.897839054477, 0.14131224508259};
const double kHarris3Raw[] = {0.424383190860823, 0.497339753968089, 0.078277055171088};

const double kHarris4Amplitude[] = {1.0, 1.36998268534551, 0.405410267365249, 0.0354275820197432};
const double kHarris4Power[] = {0.703382979783909, 0.963622503470687, 0.28515868189436, 0.0249191582075858};
const double kHarris4Raw[] = {0.355768, 0.487396, 0.144232, 0.012604};

const double kGausstopAmplitude[] = {1.0, 1.45875529058, 0.543087184, 0.08816718498, 0.00390252806};
const double kGausstopPower[] = {0.67186010909274, 0.98007948866869, 0.364878614689109, 0.0592360145190626,
                                 0.00262195292812908};
const double kGausstopRaw[] = {0.3232153788984078, 0.47149214396487166, 0.1755341299514293, 0.028496990099716707,
                               0.0012613570855745683};

const double kFlat4Amplitude[] = {0.9994484, 1.911456, 1.078578, 0.183162};
const double kFlat4Power[] = {0.540110737248871, 1.03296769435899, 0.582873071546678, 0.0989823615265958};
const double kFlat4Raw[] = {0.239523981482822, 0.458092235226179, 0.258487878813733, 0.0438959044772663};

const double kFlat5Amplitude[] = {0.9996403, 1.940411, 1.3079112, 0.4038558, 0.0350962};
const double kFlat5Power[] = {0.511503346408074, 0.992883860231563, 0.669241681837557, 0.206647924424725,
                              0.0179582833407247};
const double kFlat5Raw[] = {0.213283237831627, 0.414006058783449, 0.279055911943774, 0.0861666667911267,
                            0.00748812465002295};

const double kFlat6Amplitude[] = {0.999760855, 1.959279864368, 1.482207318028, 0.639636244612, 0.1236443547086,
                                  0.00669641875546};
const double kFlat6Power[] = {0.486122572817733, 0.952677996716077, 0.720706788313935, 0.311015994818339,
                              0.0601206893875967, 0.00325605898429494};
const double kFlat6Raw[] = {0.191847568346755, 0.375972989750395, 0.28442588877861, 0.122742011293553,
                            0.0237265428747444, 0.00128499895594193};

const double kFlat7Amplitude[] = {0.999820406, 1.968927018592, 1.58314833527, 0.813811630104, 0.226727679792,
                                  0.0278660778114, 0.000908305448086};
const double kFlat7Power[] = {0.468805828779846, 0.923210265782527, 0.742322484061889, 0.381588166666788,
                              0.106310350533314, 0.013066126301104, 0.000425895376629477};
const double kFlat7Raw[] = {0.177865709213752, 0.350267506494545, 0.281638382006947, 0.144775183509154,
                            0.0403343233670632, 0.00495730999606168, 0.000161585412477099};

const double kP501Amplitude[] = {0.99974762, 1.95719157697, 1.462421292406, 0.611433912448, 0.11186507767,
                                 0.00553658087878};
const double kP501Power[] = {0.489148752531658, 0.957599497301472, 0.715522134332392, 0.299157636933899,
                             0.0547324765765759, 0.00270889530114197};
const double kP501Raw[] = {0.194193773561842, 0.380170365312055, 0.284064801584131, 0.118766633064811,
                           0.0217289855238924, 0.00107544095326841};

const double kP601Amplitude[] = {0.999813874, 1.967871907162, 1.57208459675, 0.79456597081, 0.21505509556,
                                 0.0252934034374, 0.00076928806393};
const double kP601Power[] = {0.470756142359013, 0.926560244624348, 0.740206251856888, 0.374116444065528,
                             0.101257353806709, 0.0119092416488318, 0.000362214498874338};
const double kP601Raw[] = {0.179324203849725, 0.352952756714861, 0.281965299769994, 0.142511435204976,
                           0.0385717630030842, 0.0045365638065367, 0.00013797765082358};

// Indexed by type; type 1 (the triangle) is not a cosine sum.
const CosineTable kTables[] = {
    {1, kUniform, kUniform, kUniform},
    {0, nullptr, nullptr, nullptr},
    {2, kHannAmplitude, kHannPower, kHannRaw},
    {2, kHammingAmplitude, kHammingPower, kHammingRaw},
    {3, kBlackmanAmplitude, kBlackmanPower, kBlackmanRaw},
    {3, kHarris3Amplitude, kHarris3Power, kHarris3Raw},
    {4, kHarris4Amplitude, kHarris4Power, kHarris4Raw},
    {5, kGausstopAmplitude, kGausstopPower, kGausstopRaw},
    {4, kFlat4Amplitude, kFlat4Power, kFlat4Raw},
    {5, kFlat5Amplitude, kFlat5Power, kFlat5Raw},
    {6, kFlat6Amplitude, kFlat6Power, kFlat6Raw},
    {7, kFlat7Amplitude, kFlat7Power, kFlat7Raw},
    {6, kP501Amplitude, kP501Power, kP501Raw},
    {7, kP601Amplitude, kP601Power, kP601Raw},
};

}  // namespace

const CosineTable *cosine_table(int32_t type)
{
    if (type < 0 || type > 13 || type == 1) return nullptr;
    return &kTables[type];
}

const double *coefficients_for(const CosineTable &table, int32_t mode)
{
    switch (mode) {
    case DSP_WINDOW_SCALE_AMPLITUDE: return table.amplitude;
    case DSP_WINDOW_SCALE_POWER: return table.power;
    case DSP_WINDOW_SCALE_NONE: return table.raw;
    default: return nullptr;
    }
}

}  // namespace dsp_window
