// What differs between systems when a program starts.
#include "driver/ground/process.h"

#ifdef _WIN32
#include <windows.h>
// Behind the header that it needs.
#include <fcntl.h>
#include <io.h>
#include <shellapi.h>

#include <cstdio>
#include <memory>

#include "driver/ground/paths.h"
#else
#include <fcntl.h>

#include <csignal>
#endif

namespace tova_fw_builder {

#ifdef _WIN32

std::vector<std::string> start_process(int, char**) {
  for (std::FILE* stream : {stdin, stdout, stderr}) {
    _setmode(_fileno(stream), _O_BINARY);
  }
  // All ELFs of an image are open at a time. As many as the C library can.
  _setmaxstdio(8192);
  // Not those of main, whose letters went through the user's code page.
  int count = 0;
  const std::unique_ptr<LPWSTR, decltype(&LocalFree)> words(
      CommandLineToArgvW(GetCommandLineW(), &count), LocalFree);
  std::vector<std::string> arguments;
  for (int i = 1; i < count; ++i) {
    arguments.push_back(utf8_text(words.get()[i]));
  }
  return arguments;
}

#else

std::vector<std::string> start_process(int argc, char** argv) {
  std::signal(SIGPIPE, SIG_IGN);
  for (int stream = 0; stream <= 2; ++stream) {
    // open takes the lowest number that is free, so each gets its own back.
    // Opened for reading, a standard output still refuses what is written.
    if (fcntl(stream, F_GETFD) < 0) open("/dev/null", O_RDONLY);
  }
  return {argc > 0 ? argv + 1 : argv, argv + argc};
}

#endif

}  // namespace tova_fw_builder
