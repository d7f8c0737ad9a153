// Keeps the caller's floating-point control word across a call: the
// arithmetic of a correction raises exception flags (inexact, invalid on a
// NaN point) that the caller did not ask for.
#pragma once

#include "trace/fpscr.hpp"

#include <cstdint>

namespace dsp_calib {

// Reads the word on construction and writes it back on destruction, so it is
// restored on every return and also when an allocation failure unwinds.
class SavedControlWord {
public:
    SavedControlWord() : word_(dsp_trace::read_fpscr()) {}
    ~SavedControlWord() { dsp_trace::write_fpscr(word_); }
    SavedControlWord(const SavedControlWord &) = delete;
    SavedControlWord &operator=(const SavedControlWord &) = delete;

private:
    uint32_t word_;
};

}  // namespace dsp_calib
