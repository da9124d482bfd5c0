// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>
#include <pwd.h>
#include <unistd.h>

#include "platform/machine.h"

namespace kova::test {

TEST(Environment, AValueThatTheCodePageLacksIsNotUsed) {
  const CodePage western = CodePage::windows1252();
  const CodePage central = CodePage::windows(1250);
  const auto environment = realEnvironment(western);
  ::setenv("HOME", "/home/\u0142ukasz", 1);
  EXPECT_EQ(environment->variable("HOME"), "");
  EXPECT_TRUE(environment->isUnusable("HOME"));
  EXPECT_EQ(environment->homeFolder(), ::getpwuid(::getuid())->pw_dir);
  EXPECT_EQ(realEnvironment(central)->homeFolder(), "/home/\xB3ukasz");
  ::setenv("HOME", "/home/J\u00F6rg?", 1);
  EXPECT_EQ(environment->homeFolder(), "/home/J\xF6rg?");
  EXPECT_FALSE(environment->isUnusable("HOME"));
  ::unsetenv("HOME");
  EXPECT_FALSE(environment->isUnusable("HOME"));
}

}  // namespace kova::test
