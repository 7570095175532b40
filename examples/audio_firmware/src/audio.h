// What the base firmware offers to its modules. Addon modules are linked on
// their own and reach these functions at the addresses of the linked base.
#ifndef AUDIO_H
#define AUDIO_H

#include <stddef.h>
#include <stdint.h>

#define FRAME_SAMPLES 64

// Fixed-point samples with 15 fractional bits.
typedef int16_t sample_t;

// One module as the base firmware calls it: works on a frame in place.
typedef void (*process_fn)(sample_t* frame, size_t count);

// Takes `bytes` from the heap, aligned to 8; a null pointer when it is used up.
// Nothing is ever given back: modules are set up once.
void* fw_alloc(size_t bytes);

// Enters a module into the pipeline. Yields 0, or -1 when there is no room.
int fw_register(process_fn process);

// A product of two samples, rounded and kept within the range of a sample.
sample_t fw_multiply(sample_t a, sample_t b);

#endif
