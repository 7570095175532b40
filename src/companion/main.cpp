// The process entry of tova_fw.
#include "companion/program.h"

int main(int argc, char** argv) {
  return tova_fw_builder::run_program(argc, argv);
}
