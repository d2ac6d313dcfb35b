#include "frame/process_exit.h"

#include <cstdio>
#include <cstdlib>

namespace ryx {

void fatalExit(const char* message) {
  std::fprintf(stderr, "%s\n", message);
  std::fflush(stderr);
  std::_Exit(1);
}

Answer askUser(const char* title, const char* body, bool yesNo) {
  std::fprintf(stderr, "%s\n%s\n", title, body);
  std::fflush(stderr);
  const Answer fallback = yesNo ? Answer::Yes : Answer::Ok;
  std::FILE* tty = std::fopen("/dev/tty", "r+");
  if (tty == nullptr) return fallback;
  std::fputs(yesNo ? "[Yes/no] " : "[OK/cancel] ", tty);
  std::fflush(tty);
  char line[64];
  Answer answer = fallback;
  if (std::fgets(line, sizeof line, tty) != nullptr) {
    const char c = line[0];
    if (yesNo && (c == 'n' || c == 'N')) answer = Answer::No;
    if (!yesNo && (c == 'c' || c == 'C')) answer = Answer::Cancel;
  }
  std::fclose(tty);
  return answer;
}

}  // namespace ryx
