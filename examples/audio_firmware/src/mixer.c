// Mixer: a required addon that pans two streams into one.
#include "audio.h"

static const sample_t kPan[9] = {0,      0x18f9, 0x30fb, 0x471d, 0x5a82,
                                 0x6a6d, 0x7641, 0x7d8a, 0x7fff};
static sample_t second[FRAME_SAMPLES];
static size_t position;

// Zero is the far left, eight the far right.
void mixer_set_position(size_t wanted) { position = wanted; }

sample_t* mixer_second_stream(void) { return second; }

static void mixer_process(sample_t* frame, size_t count) {
  for (size_t i = 0; i < count && i < FRAME_SAMPLES; ++i) {
    const int32_t left = fw_multiply(frame[i], kPan[8 - position % 9]);
    const int32_t right = fw_multiply(second[i], kPan[position % 9]);
    frame[i] = (sample_t)((left + right) / 2);
  }
}

__attribute__((section(".text.start"))) int mixer_start(void) {
  return fw_register(mixer_process);
}
