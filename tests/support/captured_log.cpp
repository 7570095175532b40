#include "support/captured_log.h"

#include <iostream>

#include "driver/ground/log.h"

CapturedLog::CapturedLog(int level)
    : old_buffer_(std::cout.rdbuf(buffer_.rdbuf())),
      old_level_(tova_fw_builder::log_level()) {
  tova_fw_builder::set_log_level(level);
}

CapturedLog::~CapturedLog() {
  std::cout.rdbuf(old_buffer_);
  tova_fw_builder::set_log_level(old_level_);
}
