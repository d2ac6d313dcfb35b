// Ending the process and asking the user, for systems without a window
// system: messages go to the standard error stream, questions to the
// controlling terminal when one can be opened.
#pragma once

namespace ryx {

// Prints `message` and a newline to stderr and ends the process with exit
// status 1. Stands for the fatal application exit of a windowed system.
[[noreturn]] void fatalExit(const char* message);

enum class Answer { Yes, No, Ok, Cancel };

// Shows a system-modal question: `title` and `body` go to stderr, the
// choice is read from /dev/tty. `yesNo` selects Yes/No (default Yes) over
// OK/Cancel (default OK); with no terminal the default is taken.
Answer askUser(const char* title, const char* body, bool yesNo);

}  // namespace ryx
