// The base firmware: start-up, the heap, the pipeline and the table of exports.
#include "audio.h"

#define MAX_MODULES 8
#define HEAP_BYTES 8192

void gain_process(sample_t* frame, size_t count);
void filter_process(sample_t* frame, size_t count);

static process_fn pipeline[MAX_MODULES];
static size_t pipeline_length;
static sample_t frame[FRAME_SAMPLES];
static size_t heap_used;

// A section of its own, so that the image gives it memory but no bytes.
static uint64_t heap[HEAP_BYTES / 8] __attribute__((section(".heap")));

// The image builder puts the store of trusted keys here: a count, then 36
// bytes a key. This much room holds seven keys.
const uint8_t key_store[256]
    __attribute__((section(".rodata.key_store"), used)) = {0};

// The same functions once more as a table in memory, for a debugger or a
// module that looks them up as it runs.
const struct {
  void* (*alloc)(size_t bytes);
  int (*enter)(process_fn process);
  sample_t (*multiply)(sample_t a, sample_t b);
} fw_exports __attribute__((used)) = {fw_alloc, fw_register, fw_multiply};

void* fw_alloc(size_t bytes) {
  const size_t rounded = (bytes + 7) & ~(size_t)7;
  if (rounded > HEAP_BYTES - heap_used) return NULL;
  void* result = (uint8_t*)heap + heap_used;
  heap_used += rounded;
  return result;
}

int fw_register(process_fn process) {
  if (pipeline_length == MAX_MODULES) return -1;
  pipeline[pipeline_length++] = process;
  return 0;
}

sample_t fw_multiply(sample_t a, sample_t b) {
  int32_t product = (int32_t)a * b;
  product = (product + 0x4000) >> 15;
  if (product > INT16_MAX) product = INT16_MAX;
  return (sample_t)product;
}

// The loader jumps here once the pages of the image are in place.
__attribute__((section(".text.start"), noreturn)) void fw_start(void) {
  fw_register(gain_process);
  fw_register(filter_process);
  for (;;) {
    for (size_t i = 0; i < pipeline_length; ++i) {
      pipeline[i](frame, FRAME_SAMPLES);
    }
  }
}
