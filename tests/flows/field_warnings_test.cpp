// SPDX-License-Identifier: MIT
// The marks beside the fields: each message, and that what it foretells comes true.
#include "editing/field_warnings.h"

#include <array>
#include <regex>

#include "support/flow.h"
#include "tables/tagged_csv.h"

namespace kova::test {
namespace {

bool has(const std::string& text, const std::string& part) {
  return text.find(part) != std::string::npos;
}

/// One run of the wizard in one project directory.
struct Sitting {
  explicit Sitting(const TemporaryFolder& folder) : home(folder) {
    engineer.start();
    form.ProjectDir.click();
    type(form.ProjectDir, home.path("project"));
  }
  /// Defines the property P of the server S, with one text as given and boxes ticked by their
  /// letters: process, history, alarms, device list.
  void fill(const std::string& field, const std::string& text, const std::string& boxes) {
    // The local name follows the export name.
    type(form.ExportName, field == "ExportName" ? text : "S");
    type(form.LocalName, "S");
    type(form.PropertyName, "P");
    type(form.PropertyDescription, "x");
    type(engineer.field(field), text);
    form.ProcessCheck.setValue(has(boxes, "p") ? 1 : 0);
    form.HistoryCheck.setValue(has(boxes, "h") ? 1 : 0);
    form.AlarmWatchCheck.setValue(has(boxes, "a") ? 1 : 0);
    form.DeviceListCheck.setValue(has(boxes, "d") ? 1 : 0);
    if (field == "NumStepsText") type(engineer.field(field), text);
  }
  std::string warning(const std::string& field) const {
    return fieldWarning(engineer.program.wizard, engineer.field(field));
  }
  /// A message has this in it.
  bool heard(const std::string& part) const {
    return std::any_of(engineer.messages.begin(), engineer.messages.end(),
                       [&](const std::string& message) { return has(message, part); });
  }
  /// What lies in the project once Done is through.
  Files done() {
    form.Command1.click();
    return home.files("project");
  }

  const TemporaryFolder& home;
  Engineer engineer{home.path()};
  Form1& form = engineer.program.wizard.form;
};

/// What the table with this column holds there in its first row.
std::string cell(const Files& files, const std::string& tag) {
  for (const auto& [name, table] : files) {
    std::istringstream lines(table);
    std::string header;
    std::string row;
    std::getline(lines, header, '\r');
    std::getline(lines.ignore(), row, '\r');
    if (!has(',' + header + ',', ',' + tag + ',')) continue;
    CsvFields fields;
    splitCsvLine(row, fields);
    return std::string(getCsvField(fields, getCsvColumn(header, tag)));
  }
  return "no column " + tag;
}

/// Commits and finishes, then opens and finishes the project once more: what is read differently
/// is written differently.
void expectTruth(Sitting& first, const std::string& field) {
  const std::string warning = first.warning(field);
  first.form.EditCmd.click();
  EXPECT_EQ(first.heard("Could not add"), has(warning, "refuse")) << warning;
  if (first.engineer.rows().properties == 0) return;
  const Files written = first.done();

  Sitting second(first.home);
  const bool isWhole = second.engineer.rows() == first.engineer.rows();
  EXPECT_EQ(isWhole, !has(warning, "be read back")) << warning << written.at("exports.csv");
  if (!isWhole) return;
  second.form.PropertyList.select(0);
  const std::string shown = second.engineer.field(field).text();
  const Files rewritten = second.done();
  std::smatch read;
  if (!std::regex_search(warning, read,
                         std::regex("(\\w[^:]*) would (be empty|read as (.*))\\.$"))) {
    EXPECT_EQ(rewritten != written, has(warning, "spaces are lost") || has(warning, "splits"));
    return;
  }
  const bool isShown = has(read[1], "Value") || read[1] == "Units";
  EXPECT_EQ(isShown ? shown : cell(rewritten, read[1]), read[3]) << warning;
}

TEST(FieldWarnings, SayWhatWillHappenAndIsSo) {
  const std::string splits = "A comma splits this field in ";
  const std::string advice = ".csv. Use a semicolon, or a point in numbers (1.5).";
  const std::string cut = "exports.csv would be read back only up to this row.";
  const std::string split = "A comma splits this field: ";
  const std::string comment = " is a comment: ";
  const std::string refused = ": Add and Edit refuse it.";
  const std::string noNumber = "This is not a number: ";
  const std::string stays = ": the list of device names stays unchanged.";
  const std::vector<std::array<std::string, 4>> cases = {
      {"toleranceText", "0,5%", "h", splits + "history" + advice},
      {"toleranceText", "0,5%", "", ""},
      {"almMaskText", "1,2", "a", splits + "almwatch" + advice},
      {"ExportName", "A,B", "", split + cut},
      {"ExportName", ";A", "",
       "A row that begins with ;" + comment + "exports.csv would be read back without it."},
      {"LocalName", "#A", "a",
       "A row that begins with #" + comment + "almwatch.csv would be read back without it."},
      {"LocalName", "#A", "", ""},
      {"LocalName", "MAGNETS", "", "Only the first 6 characters count: MAGNET"},
      {"LocalName", "A/B", "",
       "The repository can't have a folder whose name contains a separator."},
      {"PropertyName", "A/B", "d",
       "Done can't write the device list: a file name can't contain /."},
      {"PropertyName", "A/B", "", ""},
      {"PropertyName", " A", "d",
       "\" A-names.csv\" would not be found again: the spaces are lost."},
      {"PropertyDescription", "a,b", "", splits + "exports" + advice},
      {"NumStepsText", "2,5", "p", splits + "exports" + advice},
      {"NumStepsText", "1E999", "p", "The number is not finite" + refused},
      {"NumStepsText", "3x", "p", noNumber + "it counts as 3."},
      {"OutputDataSize", "1,,", "", splits + "exports" + advice},
      {"OutputDataSize", "many", "",
       "\"many\" is not a number: it is written to exports.csv unchanged."},
      {"OutputDataSize", "3E9", "h", "3000000000 is outside -2147483648 to 2147483647" + refused},
      {"OutputDataSize", "3E9", "", ""},
      {"InputDataSize", "3E9", "ha", ""},
      {"NumDevices", "", "", cut},
      {"NumDevices", "40000", "", "40000 is outside -32768 to 32767" + stays},
      {"NumDevices", "0", "", "This is less than one device" + stays},
      {"PollRateText", "soon", "h", noNumber + "it counts as 0."},
      {"PollRateText", "2.5", "h", "This is rounded to 2."},
      {"almSeverityText", "", "a", "\"\" is not a number" + refused},
      {"almHiText", "1e39", "a", "The number is too large for single precision" + refused},
      {"MaxValue", "ten", "", noNumber + "the property gets no range."},
      {"MaxValue", "1 000", "", "Max Value would read as 1."},
      {"Units", "V]s", "", "Units would read as V."},
      {"ExportName", "\"a", "ha", "A quotation mark splits this field in history.csv. Remove it."},
      {"MinValue", "1]2 :3", "", "The range would be read as part of the description."},
      {"deviceNamesInputText", "A,1\r\n", "", "The name of device 0 would read as A."},
      {"deviceNamesInputText", "A\r\nB\r\n", "",
       "The list has room for 1 name: further lines are dropped."}};
  for (const auto& [field, text, boxes, expected] : cases) {
    const TemporaryFolder home;
    Sitting sitting(home);
    sitting.fill(field, text, boxes);
    SCOPED_TRACE(field + " [" + text + "] " + boxes);
    EXPECT_EQ(sitting.warning(field), expected);
    // An entry reads the devices' names from another file than Done writes.
    if (field != "deviceNamesInputText") expectTruth(sitting, field);
  }
}

TEST(FieldWarnings, ComeTrueAtDone) {
  const TemporaryFolder home;
  Sitting sitting(home);
  sitting.fill("PropertyName", "P", "h");
  sitting.form.EditCmd.click();
  // P has its row, which stays as it is; Q would be a further line.
  type(sitting.form.PollRateText, "soon");
  EXPECT_EQ(sitting.warning("PollRateText"), "");
  type(sitting.form.PropertyName, "Q");
  EXPECT_EQ(sitting.warning("PollRateText"),
            "\"soon\" is not a number: Done can't write history.csv.");
  sitting.form.Command1.click();
  EXPECT_TRUE(sitting.heard("Could not write history.csv"));

  type(sitting.form.PollRateText, "2.5");
  EXPECT_EQ(sitting.warning("PollRateText"), "Polling Rate would read as 2.");
  sitting.fill("PropertyName", "A/B", "d");
  sitting.form.EditCmd.click();
  sitting.form.Command1.click();
  EXPECT_TRUE(sitting.heard("Could not write A/B-names.csv"));
}

}  // namespace
}  // namespace kova::test
