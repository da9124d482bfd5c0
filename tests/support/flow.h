// SPDX-License-Identifier: MIT
// What the flows have in common: a wizard in a home directory of its own, and the short words for
// what an engineer does and sees.
#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <sstream>
#include <string>
#include <vector>

#include "core/form_fields.h"
#include "core/status.h"
#include "editing/commit.h"
#include "support/engineer.h"

namespace kova::test {

using Lines = std::vector<std::string>;

inline const std::string truncated =
    "The local equipment module name will be truncated to initial 6 characters : ";

/// A wizard that has come up next to the example project. Each message that it shows is to be asked
/// for.
class Flow : public testing::Test {
 protected:
  Flow() {
    std::filesystem::copy(KOVA_EXAMPLE, home.path("MAGNET"));
    example = home.files("MAGNET");
  }
  void SetUp() override { engineer.start(); }
  void TearDown() override { EXPECT_EQ(said(), "nothing"); }

  /// Types letter by letter behind what the field holds.
  static void letters(TextField& field, const std::string& text) {
    for (const char letter : text) type(field, field.text() + letter);
  }
  static void typeAndLeave(TextField& field, const std::string& text) {
    type(field, text);
    field.lostFocus();
  }
  static void toggle(CheckBox& box) { box.setValue(box.ticked() ? 0 : 1); }
  void commit(const std::string& property) {
    type(form.PropertyName, property);
    form.EditCmd.click();
  }
  void remove(int line) {
    form.PropertyList.select(line);
    form.RemoveProperty.click();
  }
  /// The message of an entry that another one has gone ahead of.
  std::string entered(const std::string& folder) {
    form.ProjectDir.click();
    type(form.ProjectDir, home.path());
    type(form.ProjectDir, home.path(folder));
    return status();
  }
  /// Names the server and leads its tables to a folder of that name.
  void open(const std::string& server) { type(form.ExportName, server); }

  /// The message that was shown first of those not yet asked for.
  std::string said() {
    if (engineer.messages.empty()) return "nothing";
    std::string text = engineer.messages.front();
    engineer.messages.pop_front();
    return text;
  }
  std::string status() const { return statusText(engineer.program.wizard); }
  const Lines& lines() const { return form.PropertyList.lines(); }
  /// What fields, lists and boxes show, with commas between them.
  template <class... Controls>
  static std::string shown(const Controls&... controls) {
    std::string all;
    ((all += ", " + textOf(controls)), ...);
    return all.substr(2);
  }

  /// An export table in the folder of a server.
  void project(const std::string& server, const Lines& rows) const {
    std::string table = exportHeaderLine();
    for (const std::string& row : rows) table += row + "\r\n";
    home.write(server + "/exports.csv", table);
  }
  /// The lines of a table behind its header.
  Lines tableRows(const std::string& file) const {
    std::istringstream table(home.read(file));
    Lines rows;
    std::string line;
    std::getline(table, line);
    while (std::getline(table, line)) rows.push_back(line.substr(0, line.find('\r')));
    return rows;
  }

  template <class Control>
  static std::string textOf(const Control& control) {
    return control.text();
  }
  static std::string textOf(const CheckBox& box) { return box.ticked() ? "ticked" : "clear"; }

  TemporaryFolder home;
  Files example;
  Engineer engineer{home.path()};
  Form1& form = engineer.program.wizard.form;
};

/// A form and a project without a window. The form is the one with which a wizard comes up, with
/// the property P of the server S.
struct Committing {
  Committing() {
    Engineer engineer(home.path());
    engineer.start();
    form = formTexts(engineer.program.wizard);
    form.exportName = form.localName = "S";
    form.propertyName = "P";
    form.description = "x";
    project.projectPath = form.projectDir = home.path("project");
  }
  /// Commits the form as Edit does; rows that it adds count.
  CommitResult edit() {
    CommitResult result = commit(form, project, CommitMode::addOrReplace);
    countRows(project, result.added);
    return result;
  }
  Rows counts() const { return {project.exportCount, project.historyCount, project.alarmCount}; }

  const TemporaryFolder home;
  const CodePage page = CodePage::windows1252();
  const std::unique_ptr<FileSystem> files = realFileSystem(page);
  FormTexts form;
  Project project;
};

}  // namespace kova::test
