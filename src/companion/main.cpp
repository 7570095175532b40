// The process entry of tova_fw.
#include "companion/program.h"
#include "driver/ground/process.h"

int main(int argc, char** argv) {
  using namespace tova_fw_builder;
  return run_program(start_process(argc, argv));
}
