// SPDX-License-Identifier: MIT
// The marks next to the fields: each message, and that a refusal and a Done that fails come true.
#include "editing/field_warnings.h"

#include "completion/project_writer.h"
#include "support/flow.h"
#include "tables/value_failure.h"

namespace kova::test {
namespace {

bool has(const std::string& text, const std::string& part) {
  return text.find(part) != std::string::npos;
}

struct Trial : Committing {
  /// One text as given, and boxes ticked by their letters: process, history, alarms, device list.
  void fill(FormText text, const std::string& typed, const std::string& boxes) {
    form.*text = typed;
    form.isProcess = has(boxes, "p");
    form.hasHistory = has(boxes, "h");
    form.hasAlarmWatch = has(boxes, "a");
    form.hasDeviceList = has(boxes, "d");
  }
  std::string warning(FormText text) const { return fieldWarning(form, project, text); }
  std::string done() {
    const FakeClock clock;
    ProjectOnDisk disk;
    Writing writing{*files, clock, disk};
    return writeProject(writing, project, form, std::nullopt).failure;
  }
};

struct Case {
  FormText text;
  std::string typed, boxes, warning;
};
const std::string splits = "A comma splits this field in ";
const std::string advice = ".csv. Use a semicolon, or a point in numbers (1.5).";
const std::string cut = "exports.csv would be read back only up to this row.";
const std::string refused = ": Add and Edit refuse it.";
const std::string noNumber = "This is not a number: ";
const std::string stays = ": the list of device names stays unchanged.";
const std::vector<Case> cases = {
    {&FormTexts::tolerance, "0,5%", "h", splits + "history" + advice},
    {&FormTexts::tolerance, "0,5%", "", ""},
    {&FormTexts::mask, "1,2", "a", splits + "almwatch" + advice},
    {&FormTexts::exportName, "A,B", "", "A comma splits this field: " + cut},
    {&FormTexts::exportName, ";A", "",
     "A row that begins with ; is a comment: exports.csv would be read back without it."},
    {&FormTexts::exportName, "%A", "",
     "A row that begins with % is a comment: exports.csv would be read back without it."},
    {&FormTexts::localName, "#A", "a",
     "A row that begins with # is a comment: almwatch.csv would be read back without it."},
    {&FormTexts::localName, "#A", "", ""},
    {&FormTexts::localName, "MAGNETS", "", "Only the first 6 characters count: MAGNET"},
    {&FormTexts::localName, "A/B", "",
     "The repository can't have a folder whose name contains a separator."},
    {&FormTexts::propertyName, "A/B", "", ""},
    {&FormTexts::propertyName, "A/B", "pd", ""},
    {&FormTexts::description, "a,b", "", splits + "exports" + advice},
    {&FormTexts::numSteps, "2,5", "p", splits + "exports" + advice},
    {&FormTexts::numSteps, "1E999", "p", "The number is not finite" + refused},
    {&FormTexts::numSteps, "3x", "p", noNumber + "it counts as 3."},
    {&FormTexts::outputSize, "1,,", "", splits + "exports" + advice},
    {&FormTexts::outputSize, "many", "",
     "\"many\" is not a number: it is written to exports.csv unchanged."},
    {&FormTexts::outputSize, "3E9", "h",
     "3000000000 is outside -2147483648 to 2147483647" + refused},
    {&FormTexts::outputSize, "3E9", "", ""},
    {&FormTexts::inputSize, "3E9", "ha", ""},
    {&FormTexts::numDevices, "", "", cut},
    {&FormTexts::numDevices, "40000", "", "40000 is outside -32768 to 32767" + stays},
    {&FormTexts::numDevices, "0", "", "This is less than one device" + stays},
    {&FormTexts::pollingRate, "soon", "h", noNumber + "it counts as 0."},
    {&FormTexts::pollingRate, "2.5", "h", "This is rounded to 2."},
    {&FormTexts::severity, "", "a", "\"\" is not a number" + refused},
    {&FormTexts::high, "1e39", "a", "The number is too large for single precision" + refused},
    {&FormTexts::maximum, "ten", "", noNumber + "the property gets no range."},
    {&FormTexts::maximum, "1 000", "", "Max Value would read as 1."},
    {&FormTexts::units, "V]s", "", "Units would read as V."},
    {&FormTexts::exportName, "\"a", "ha",
     "A quotation mark splits this field in history.csv. Remove it."},
    {&FormTexts::minimum, "1]2 :3", "", "The range would be read as part of the description."},
};

TEST(FieldWarnings, SayWhatWillHappen) {
  for (const auto& [text, typed, boxes, warning] : cases) {
    SCOPED_TRACE("[" + typed + "] " + boxes + ": " + warning);
    Trial trial;
    trial.fill(text, typed, boxes);
    EXPECT_EQ(trial.warning(text), warning);
    if (!has(warning, "refuse")) continue;
    EXPECT_THROW(trial.edit(), ValueFailure);
  }
}

TEST(FieldWarnings, ComeTrueAtDone) {
  Trial trial;
  trial.fill(&FormTexts::severity, "", "a");
  trial.project.alarmTable.resize(1000);
  trial.project.alarmCount = 1000;
  EXPECT_EQ(trial.warning(&FormTexts::severity), "") << "no further row is stored";
  trial.project.alarmCount = 0;
  trial.fill(&FormTexts::pollingRate, "1000", "h");
  trial.edit();
  // P has its row, which stays as it is; Q would be a further line.
  trial.fill(&FormTexts::pollingRate, "soon", "");
  EXPECT_EQ(trial.warning(&FormTexts::pollingRate), "");
  trial.form.propertyName = "Q";
  const std::string soon = "\"soon\" is not a number";
  EXPECT_EQ(trial.warning(&FormTexts::pollingRate), soon + ": Done can't write history.csv.");
  EXPECT_EQ(trial.done(), "Could not write history.csv : Polling Rate: " + soon);
  trial.form.pollingRate = "2.5";
  EXPECT_EQ(trial.warning(&FormTexts::pollingRate), "Polling Rate would read as 2.");

  rowOf(trial.project.exportTable, 1).devices.edit().resize(2);  // prepared for the next property
  trial.fill(&FormTexts::propertyName, "A/B", "d");
  EXPECT_EQ(trial.warning(&FormTexts::propertyName),
            "Done can't write the device list: a file name can't contain /.");
  trial.edit();
  EXPECT_TRUE(has(trial.done(), "Could not write A/B-names.csv"));
  trial.form.propertyName = std::string(240, 'x');
  EXPECT_EQ(trial.warning(&FormTexts::propertyName),
            "Done can't write the device list: the name is too long for its file and a backup.");
  trial.form.propertyName = " A";
  EXPECT_EQ(trial.warning(&FormTexts::propertyName),
            "\" A-names.csv\" would not be found again: the spaces are lost.");
}

struct NameListWarnings : Flow {};

TEST_F(NameListWarnings, TellWhatIsLostOfTheBox) {
  const auto warning = [&](const std::string& names) {
    type(form.deviceNamesInputText, names);
    return fieldWarning(engineer.program.wizard, form.deviceNamesInputText);
  };
  EXPECT_EQ(warning("A,1\r\n"), "The name of device 0 would read as A.");
  EXPECT_EQ(warning("A\r\nB\r\n"), "The list has room for 1 name: further lines are dropped.");
}

}  // namespace
}  // namespace kova::test
