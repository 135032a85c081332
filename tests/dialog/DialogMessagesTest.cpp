// SPDX-License-Identifier: GPL-3.0-or-later

#include "dialog/DialogMessages.h"

#include <gtest/gtest.h>

#include "dialog/LineBuffer.h"

namespace sprig::dialog {
namespace {

TEST(DialogMessages, ReadAsTheyAreWritten) {
  for (
      const std::string line : {
          R"({"command":"show","title":"\"\\\n\r\t\u0001<&> “ü” 😀 שלום","text":"t","floating":true,)"
          R"("centered":true,"accessory":true,"late":true,"activationToken":"a","parentWindow":"x11:1f",)"
          R"("icon":{"names":["a","b"],"size":36,"description":"d"},"field":{"text":"f","placeholder":"p","width":300,"points":13},)"
          R"("buttons":[{"title":"b","key":"return"},{"title":"","key":"escape"},{"title":"x","key":""}]})",
          R"({"command":"show","title":"","text":"","floating":false,"centered":false,"accessory":false,"late":false,"activationToken":"","parentWindow":"",)"
          R"("buttons":[]})",
          R"({"command":"change","text":"t","selection":{"location":1,"length":2},"front":true,)"
          R"("activationToken":"a"})",
          R"({"command":"change"})",
          R"({"command":"close"})",
      }) {
    EXPECT_EQ(encode(decodeCommand(line).value()), line + "\n");
  }
  for (const std::string line :
       {R"({"event":"shown"})", R"({"event":"button","button":7,"text":"t\n"})",
        R"({"event":"field","text":""})", R"({"event":"close","text":"t","activationToken":"a"})"}) {
    EXPECT_EQ(encode(decodeEvent(line).value()), line + "\n");
  }
}

std::string buttons(int count) {
  std::string list;
  for (int number = 0; number < count; ++number) list += R"({"title":"","key":""},)";
  return list.substr(0, list.size() - 1);
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
           {R"({"command":"show","title":"","text":"","buttons":[)" + buttons(9) + "]}", "too many buttons"},
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
  EXPECT_TRUE(buffer.add(std::string(LineBuffer::maxLine, 'x')));
  EXPECT_FALSE(buffer.add("x"));
}

}  // namespace
}  // namespace sprig::dialog
