// The process entry.
#include "driver/command_line.h"
#include "driver/ground/process.h"

int main(int argc, char** argv) {
  using namespace tova_fw_builder;
  return run_command_line(start_process(argc, argv), command_table());
}
