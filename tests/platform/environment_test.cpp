// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>
#include <pwd.h>

#include "platform/machine.h"

namespace {
passwd* account = nullptr;
}

extern "C" passwd* getpwuid(uid_t /*user*/) {
  return account;
}

namespace kova::test {

TEST(Environment, AValueThatTheCodePageLacksIsNotUsed) {
  const CodePage western = CodePage::windows1252();
  const CodePage central = CodePage::windows(1250);
  const auto environment = realEnvironment(western);
  ::setenv("HOME", "/home/\u0142ukasz", 1);
  EXPECT_EQ(environment->variable("HOME"), "");
  EXPECT_TRUE(environment->isUnusable("HOME"));
  EXPECT_EQ(environment->homeFolder(), "") << "not the root";
  std::string home = "/home/lukasz";
  passwd known{};
  known.pw_dir = home.data();
  account = &known;
  EXPECT_EQ(environment->homeFolder(), home);
  EXPECT_EQ(realEnvironment(central)->homeFolder(), "/home/\xB3ukasz");
  ::setenv("HOME", "/home/J\u00F6rg?", 1);
  EXPECT_EQ(environment->homeFolder(), "/home/J\xF6rg?");
  EXPECT_FALSE(environment->isUnusable("HOME"));
  ::unsetenv("HOME");
  EXPECT_FALSE(environment->isUnusable("HOME"));
}

}  // namespace kova::test
