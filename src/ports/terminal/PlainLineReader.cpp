// SPDX-License-Identifier: GPL-3.0-or-later

#include "ports/terminal/PlainLineReader.h"

#include <unistd.h>

#include "ports/linux/retrying.h"

namespace sprig::terminal {

namespace {

/// No name and no pick is longer; input without line ends shall not fill the memory.
constexpr std::size_t maxLineBytes = std::size_t{64} * 1024;

}  // namespace

std::optional<std::string> PlainLineReader::read(const LineRequest& request) {
  InputWait wait(mainQueue);
  show(request);
  std::string line;
  auto progress = Progress::goesOn;
  while (progress == Progress::goesOn) progress = handle(wait, line, request);
  if (progress == Progress::ended) return std::nullopt;
  return line.empty() ? request.text : line;
}

void PlainLineReader::show(const LineRequest& request) const {
  const auto offer = request.text.empty() ? "" : "[" + output.text(request.text) + "]";
  // Nobody's Return key ends the line on the screen here.
  static_cast<void>(output.write(request.prompt + offer + "\n"));
}

PlainLineReader::Progress PlainLineReader::handle(InputWait& wait, std::string& line,
                                                  const LineRequest& request) const {
  switch (wait.next()) {
    case InputWait::Event::input:
      return takeByte(line);
    case InputWait::Event::work:
      mainQueue.runPending();
      return request.isOver && request.isOver() ? Progress::ended : Progress::goesOn;
    case InputWait::Event::stopped:
      wait.suspend();
      return Progress::goesOn;
    case InputWait::Event::resized:
      return Progress::goesOn;
    case InputWait::Event::interrupted:
    case InputWait::Event::terminated:
      return Progress::ended;
  }
  return Progress::ended;
}

PlainLineReader::Progress PlainLineReader::takeByte(std::string& line) {
  char byte = 0;
  const auto count = ports::retrying([&] { return ::read(STDIN_FILENO, &byte, 1); });
  // A last line may lack its end.
  if (count != 1) return line.empty() ? Progress::ended : Progress::complete;
  if (byte == '\n') return Progress::complete;
  line += byte;
  return line.size() < maxLineBytes ? Progress::goesOn : Progress::ended;
}

}  // namespace sprig::terminal
