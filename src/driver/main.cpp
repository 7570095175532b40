// The process entry.
#include <csignal>
#include <string>
#include <vector>

#include "driver/command_line.h"

int main(int argc, char** argv) {
#ifdef SIGPIPE
  // A reader of the log that ends early would end the run in its middle.
  std::signal(SIGPIPE, SIG_IGN);
#endif
  // A caller may pass no program name at all.
  const std::vector<std::string> arguments(argc > 0 ? argv + 1 : argv,
                                           argv + argc);
  return tova_fw_builder::run_command_line(arguments,
                                           tova_fw_builder::command_table());
}
