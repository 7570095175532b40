// Filter: a built-in low-pass of 16 taps.
#include "audio.h"

#define TAPS 16

static const sample_t kTaps[TAPS] = {-42,  -77,  0,    405,  1193, 2311,
                                     3502, 4400, 4400, 3502, 2311, 1193,
                                     405,  0,    -77,  -42};
static sample_t history[TAPS];
static size_t newest;

void filter_process(sample_t* frame, size_t count) {
  for (size_t i = 0; i < count; ++i) {
    newest = (newest + 1) % TAPS;
    history[newest] = frame[i];
    int32_t sum = 0;
    for (size_t tap = 0; tap < TAPS; ++tap) {
      sum += kTaps[tap] * history[(newest + TAPS - tap) % TAPS];
    }
    frame[i] = (sample_t)(sum >> 15);
  }
}
