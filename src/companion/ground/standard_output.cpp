#include "companion/ground/standard_output.h"

#include <fcntl.h>
#include <unistd.h>

#include <csignal>
#include <iostream>

#include "companion/ground/trouble.h"

namespace tova_fw_builder {

void prepare_standard_streams() {
  std::signal(SIGPIPE, SIG_IGN);
  for (int stream = 0; stream <= 2; ++stream) {
    // open takes the lowest number that is free, so each gets its own back.
    // Opened for reading, a standard output still refuses what is written.
    if (fcntl(stream, F_GETFD) < 0) open("/dev/null", O_RDONLY);
  }
  std::ios_base::sync_with_stdio(false);
}

bool finish_standard_output() {
  if (std::cout.flush()) return true;
  report_trouble("standard output", "cannot be written");
  return false;
}

bool standard_output_is_terminal() { return isatty(STDOUT_FILENO) == 1; }

}  // namespace tova_fw_builder
