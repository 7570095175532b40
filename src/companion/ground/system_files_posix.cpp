#include <fcntl.h>
#include <poll.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <iterator>

#include "companion/ground/system_files.h"

namespace tova_fw_builder {

namespace {

constexpr int kInterrupts[] = {SIGHUP, SIGINT, SIGQUIT, SIGTERM};

// By the bits of a number, in that order.
sigset_t signals_of(unsigned held) {
  sigset_t signals;
  sigemptyset(&signals);
  for (std::size_t i = 0; i < std::size(kInterrupts); ++i) {
    if ((held >> i & 1) != 0) sigaddset(&signals, kInterrupts[i]);
  }
  return signals;
}

}  // namespace

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

unsigned hold_interrupts() {
  unsigned held = 0;
  sigset_t before;
  sigprocmask(SIG_BLOCK, nullptr, &before);
  for (std::size_t i = 0; i < std::size(kInterrupts); ++i) {
    struct sigaction action = {};
    sigaction(kInterrupts[i], nullptr, &action);
    if (action.sa_handler == SIG_IGN) continue;
    if (sigismember(&before, kInterrupts[i]) == 0) held |= 1u << i;
  }
  const sigset_t signals = signals_of(held);
  sigprocmask(SIG_BLOCK, &signals, nullptr);
  return held;
}

void release_interrupts(unsigned held) {
  const sigset_t signals = signals_of(held);
  sigprocmask(SIG_UNBLOCK, &signals, nullptr);
}

bool is_interrupted(unsigned held) {
  sigset_t waiting;
  sigpending(&waiting);
  for (std::size_t i = 0; i < std::size(kInterrupts); ++i) {
    if ((held >> i & 1) != 0 && sigismember(&waiting, kInterrupts[i]) == 1) {
      return true;
    }
  }
  return false;
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
