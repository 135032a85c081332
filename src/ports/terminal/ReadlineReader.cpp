// SPDX-License-Identifier: GPL-3.0-or-later

#include "ports/terminal/ReadlineReader.h"

#include <poll.h>
#include <readline/readline.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <memory>

namespace sprig::terminal {

namespace {

constexpr int controlD = 4;

/// Whether there is input, or comes within the time that a terminal takes for the bytes of one key.
bool moreFollows() {
  constexpr int milliseconds = 100;
  pollfd input{STDIN_FILENO, POLLIN, 0};
  return ::poll(&input, 1, milliseconds) == 1;
}

}  // namespace

// Readline knows no context of its callers.
// NOLINTNEXTLINE(cppcoreguidelines-avoid-non-const-global-variables)
ReadlineReader::Answer* ReadlineReader::current = nullptr;

ReadlineReader::ReadlineReader(ports::LinuxMainQueue& queue, const Screen& screen) : mainQueue(queue) {
  rl_readline_name = "sprig";
  rl_instream = stdin;
  rl_outstream = stderr;
  rl_getc_function = readByte;
  // Signals come as events of the wait, and the environment is not ours to change.
  rl_catch_signals = 0;
  rl_catch_sigwinch = 0;
  rl_change_environment = 0;
  rl_initialize();
  if (screen.charset() == Charset::ascii) {
    // By default the bytes of a name typed in another character set lose their highest bit here.
    rl_variable_bind("convert-meta", "off");
    rl_variable_bind("input-meta", "on");
  }
  constexpr int tabulator = '\t';
  for (auto* const keymap : {emacs_standard_keymap, vi_insertion_keymap, vi_movement_keymap}) {
    rl_bind_key_in_map(controlD, cancel, keymap);
    rl_bind_key_in_map(tabulator, ignore, keymap);
  }
}

std::optional<std::string> ReadlineReader::read(const LineRequest& request) {
  InputWait wait(mainQueue);
  Answer answer;
  current = &answer;
  rl_callback_handler_install(request.prompt.c_str(), takeLine);
  if (!request.text.empty()) {
    rl_insert_text(request.text.c_str());
    rl_point = static_cast<int>(std::min(request.cursor, request.text.size()));
    rl_redisplay();
  }
  while (!answer.isComplete) handle(wait, request);
  current = nullptr;
  if (answer.isCancelled) return std::nullopt;
  return answer.line;
}

void ReadlineReader::handle(InputWait& wait, const LineRequest& request) {
  switch (wait.next()) {
    case InputWait::Event::input:
      rl_callback_read_char();
      break;
    case InputWait::Event::work:
      runWork(request);
      break;
    case InputWait::Event::resized:
      rl_resize_terminal();
      break;
    case InputWait::Event::stopped:
      rl_cleanup_after_signal();
      wait.suspend();
      rl_reset_after_signal();
      rl_forced_update_display();
      break;
    case InputWait::Event::interrupted:
    case InputWait::Event::terminated:
      abandon();
      break;
  }
}

void ReadlineReader::runWork(const LineRequest& request) {
  rl_clear_visible_line();
  std::fflush(rl_outstream);
  mainQueue.runPending();
  if (request.isOver && request.isOver()) {
    abandon();
  } else {
    rl_forced_update_display();
  }
}

/// Leaves the line as it stands, with the terminal in order and the cursor below it.
void ReadlineReader::abandon() {
  rl_callback_sigcleanup();
  rl_free_line_state();
  rl_callback_handler_remove();
  std::fputs("\n", rl_outstream);
  current->isComplete = current->isCancelled = true;
}

void ReadlineReader::takeLine(char* line) {
  const std::unique_ptr<char, decltype(&std::free)> owned(line, &std::free);
  rl_callback_handler_remove();
  current->isComplete = true;
  if (!owned) {
    current->isCancelled = true;
    std::fputs("\n", rl_outstream);
    return;
  }
  current->line = owned.get();
}

/// Readline takes the end of input for Return when the line holds something, and Escape for the beginning of
/// what other keys send. Alone, it is a cancellation, but for people who edit as in vi, where it changes the
/// mode.
int ReadlineReader::readByte(FILE* stream) {
  constexpr int escape = 0x1B;
  constexpr int emacsMode = 1;
  const int byte = rl_getc(stream);
  if (byte == EOF && current != nullptr) current->isCancelled = true;
  const bool isAlone = byte == escape && rl_editing_mode == emacsMode && !moreFollows();
  return isAlone ? controlD : byte;
}

int ReadlineReader::cancel(int, int) {
  current->isCancelled = true;
  rl_done = 1;
  return 0;
}

int ReadlineReader::ignore(int, int) { return 0; }

}  // namespace sprig::terminal
