// Gain: a built-in module that turns the volume up and down in small steps.
#include "audio.h"

static const sample_t kSteps[] = {0x0400, 0x0800, 0x1000, 0x2000,
                                  0x4000, 0x5a82, 0x7fff};
static sample_t level;
static size_t target;

// Takes effect over the next frames, one small step a sample.
void gain_set(size_t step) { target = step; }

void gain_process(sample_t* frame, size_t count) {
  for (size_t i = 0; i < count; ++i) {
    const sample_t wanted = kSteps[target % (sizeof kSteps / sizeof kSteps[0])];
    if (level < wanted) ++level;
    if (level > wanted) --level;
    frame[i] = fw_multiply(frame[i], level);
  }
}
