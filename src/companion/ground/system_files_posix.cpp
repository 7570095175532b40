#include <fcntl.h>
#include <poll.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstdlib>

#include "companion/ground/system_files.h"

namespace tova_fw_builder {

std::string create_beside(const std::string& path) {
  std::string name = path + ".XXXXXX";
  const int file = mkstemp(name.data());
  if (file < 0) return {};
  close(file);
  return name;
}

bool give_usual_rights(const std::string& file, const std::string& path) {
  struct stat existing = {};
  if (stat(path.c_str(), &existing) == 0) {
    return chmod(file.c_str(), existing.st_mode & 07777) == 0;
  }
  const mode_t mask = umask(0);
  umask(mask);
  return chmod(file.c_str(), 0666 & ~mask) == 0;
}

bool hold_interrupts(bool held) {
  sigset_t interrupts;
  sigset_t before;
  sigemptyset(&interrupts);
  for (const int signal : {SIGHUP, SIGINT, SIGTERM}) {
    sigaddset(&interrupts, signal);
  }
  sigprocmask(held ? SIG_BLOCK : SIG_UNBLOCK, &interrupts, &before);
  return sigismember(&before, SIGINT) == 1;
}

std::optional<std::size_t> read_at(std::FILE& file, std::uint64_t offset,
                                   std::span<char> to) {
  std::size_t count = 0;
  while (count < to.size()) {
    const ssize_t got =
        pread(fileno(&file), to.data() + count, to.size() - count,
              static_cast<off_t>(offset + count));
    if (got < 0 && errno == EINTR) continue;
    if (got < 0) return std::nullopt;
    if (got == 0) break;
    count += static_cast<std::size_t>(got);
  }
  return count;
}

bool standard_output_is_terminal() { return isatty(STDOUT_FILENO) == 1; }

bool is_terminal(const std::string& device) {
  const int file = open(device.c_str(), O_WRONLY | O_NOCTTY | O_NONBLOCK);
  if (file < 0) return false;
  const bool is_one = isatty(file) == 1;
  close(file);
  return is_one;
}

bool standard_output_is_unread() {
  pollfd output = {.fd = STDOUT_FILENO, .events = POLLOUT, .revents = 0};
  return poll(&output, 1, 0) == 1 && (output.revents & POLLERR) != 0;
}

void take_size_limit_as_error() { std::signal(SIGXFSZ, SIG_IGN); }

}  // namespace tova_fw_builder
