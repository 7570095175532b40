// Reverb: a required addon, started by the loader itself. Its table of room
// responses is large and rarely read, so the image marks it "on demand": the
// loader brings those pages in when they are first touched.
#include "audio.h"

#define DELAY 1024

// Early reflections of four rooms, as (delay, level) pairs.
const int16_t kRooms[4][256][2] = {
    {{7, 0x2000}, {113, 0x1800}, {337, 0x0c00}, {601, 0x0600}},
    {{31, 0x2800}, {211, 0x1c00}, {509, 0x1000}, {887, 0x0800}},
    {{67, 0x3000}, {307, 0x2000}, {701, 0x1400}, {997, 0x0a00}},
    {{97, 0x3800}, {401, 0x2400}, {797, 0x1800}, {1021, 0x0c00}}};

static sample_t delay_line[DELAY];
static size_t write_at;
static size_t room;

void reverb_set_room(size_t wanted) { room = wanted; }

static void reverb_process(sample_t* frame, size_t count) {
  for (size_t i = 0; i < count; ++i) {
    int32_t sum = frame[i];
    for (size_t echo = 0; echo < 4; ++echo) {
      const int16_t* reflection = kRooms[room % 4][echo];
      sum += fw_multiply(
          delay_line[(write_at + DELAY - (uint16_t)reflection[0]) % DELAY],
          reflection[1]);
    }
    delay_line[write_at] = frame[i];
    write_at = (write_at + 1) % DELAY;
    frame[i] = (sample_t)(sum / 2);
  }
}

__attribute__((section(".text.start"))) int reverb_start(void) {
  return fw_register(reverb_process);
}
