#include "dialog/DialogMessages.h"

#include <gtest/gtest.h>

#include "dialog/LineBuffer.h"

namespace sprig::dialog {
namespace {

template <typename Message>
std::string again(const Message& message) {
  const auto line = encode(message);
  EXPECT_EQ(line.find('\n'), line.size() - 1);
  const auto text = std::string_view(line).substr(0, line.size() - 1);
  if constexpr (std::is_same_v<Message, Event>) {
    return encode(decodeEvent(text).value());
  } else {
    return encode(decodeCommand(text).value());
  }
}

TEST(DialogMessages, ArriveAsTheyWereSent) {
  const std::string hard = "\"\\\n\r\t\x01<&> “ü” 😀 שלום";
  const Show show{hard,
                  hard,
                  IconLook{{"a", "b"}, 36, hard},
                  FieldLook{hard, 300},
                  {{hard, ButtonKey::enter}, {"", ButtonKey::escape}, {"x", ButtonKey::none}},
                  true,
                  hard,
                  "x11:1f"};
  const auto line = encode(show);
  const auto read = decodeCommand(line);
  ASSERT_TRUE(read);
  const auto& copy = std::get<Show>(*read);
  EXPECT_EQ(std::tie(copy.title, copy.text, copy.activationToken), std::tie(hard, hard, hard));
  EXPECT_EQ(copy.field->text, hard);
  EXPECT_EQ(copy.buttons[1].key, ButtonKey::escape);
  for (const Command& command :
       {Command(show), Command(Show{}), Command(Change{hard, Selection{1, 2}, true, hard}), Command(Change{}),
        Command(Close{})}) {
    EXPECT_EQ(again(command), encode(command));
  }
  for (const auto& event : {Event{EventKind::shown, 0, ""}, Event{EventKind::button, 7, hard},
                            Event{EventKind::field, 0, ""}, Event{EventKind::close, 0, hard}}) {
    EXPECT_EQ(again(event), encode(event));
  }
}

TEST(DialogMessages, RefuseWhatIsNoCommand) {
  const std::string show = R"({"command":"show","title":"","text":"","buttons":[])";
  EXPECT_TRUE(decodeCommand(show + R"(,"unknown":[{}]})"));
  for (const auto& [line, reason] : {
           std::pair<std::string, const char*>{"", "not JSON"},
           {"{", "not JSON"},
           {"{}{}", "not JSON"},
           {std::string(5000, '['), "not JSON"},
           {"{\"command\":\"\xff\"}", "not JSON"},
           {"null", "expected an object"},
           {"{}", "\"command\" is missing"},
           {R"({"command":1})", "\"command\" is not a string"},
           {R"({"command":"hide"})", "there is no command \"hide\""},
           {R"({"command":"show","title":"","text":""})", "\"buttons\" is missing"},
           {R"({"command":"show","title":"","text":"","buttons":{}})", "\"buttons\" is not a list"},
           {R"({"command":"show","title":"","text":"","buttons":[{"title":"x","key":"F1"}]})",
            "can't be \"F1\""},
           {R"({"command":"show","title":"","text":"","buttons":[1]})", "expected an object"},
           {show + R"(,"icon":{"names":[1],"size":1,"description":""}})", "a name of the icon"},
           {show + R"(,"field":{"text":"","width":-1}})", "\"width\" is not a number from 0 to 2000"},
           {show + R"(,"field":{"text":"","width":1e9}})", "\"width\" is not a number"},
           {show + R"(,"floating":1})", "\"floating\" is not true or false"},
           {R"({"command":"change","selection":{"location":0,"length":18446744073709551615}})", "\"length\""},
           {R"({"command":"change","text":null})", "\"text\" is not a string"},
       }) {
    const auto command = decodeCommand(line);
    ASSERT_FALSE(command) << line;
    EXPECT_NE(command.error().find(reason), std::string::npos) << line << ": " << command.error();
  }
}

TEST(DialogMessages, RefuseWhatIsNoEvent) {
  for (const auto* line : {"", "7", "{}", R"({"event":"shine"})", R"({"event":"button"})",
                           R"({"event":"button","button":-1})", R"({"event":"button","button":8})",
                           R"({"event":"button","button":"0"})", R"({"event":"field","text":[]})"}) {
    EXPECT_FALSE(decodeEvent(line)) << line;
  }
}

TEST(LineBuffer, MakesLinesHoweverTheBytesArrive) {
  LineBuffer buffer;
  std::string lines;
  for (const auto* bytes : {"a", "b\n", "", "\nc\nd", "\n", "rest"}) {
    EXPECT_TRUE(buffer.add(bytes));
    while (const auto line = buffer.takeLine()) lines += *line + "|";
  }
  EXPECT_EQ(lines, "ab||c|d|");
}

TEST(LineBuffer, DoesNotGrowForEver) {
  LineBuffer buffer;
  EXPECT_TRUE(buffer.add(std::string(LineBuffer::longestLine, 'x')));
  EXPECT_FALSE(buffer.add("x"));
}

}  // namespace
}  // namespace sprig::dialog
