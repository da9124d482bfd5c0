// SPDX-License-Identifier: MIT
// What a step of the session is called, and how many are kept.
#include "core/undo_history.h"
#include "support/flow.h"

namespace kova::test {
namespace {

struct UndoSteps : Flow {
  /// The name of the last step after an action.
  std::string stepOf(const std::function<void()>& act) {
    act();
    history.endAction();
    return history.steps().empty() ? "none" : history.steps().back().name;
  }
  void open() {
    history.endAction();
    stepOf([&] { Flow::open("MAGNET"); });
  }

  UndoHistory history{engineer.program.wizard, 100000};
};

TEST_F(UndoSteps, AreNamedByWhatTheyChange) {
  open();
  EXPECT_EQ(history.steps().back().name, "Open MAGNET");
  EXPECT_EQ(stepOf([&] { typeAndLeave(form.deviceNamesInputText, "A\r\nB\r\nC\r\n"); }),
            "Device names");
  EXPECT_EQ(stepOf([&] { type(form.NumDevices, "1"); }),
            "4 device names dropped by the number of devices");
  form.PropertyName.setText("PULSE");
  form.ProcessCheck.setValue(1);
  EXPECT_EQ(stepOf([&] { form.EditCmd.click(); }), "Add PULSE");
  history.undo();
  EXPECT_EQ(engineer.rows().properties, 8);
}

TEST_F(UndoSteps, AreForgottenFromTheOldestOnWhereTheyNeedTooMuch) {
  open();
  const std::size_t kept = history.steps().size();
  while (history.steps().front().name == "Open MAGNET") {
    ASSERT_LT(history.steps().size(), 2000U);
    stepOf([&] { commit("P" + std::to_string(history.steps().size())); });
  }
  EXPECT_GT(history.steps().size(), kept);
  while (history.undoStep() != nullptr) history.undo();
  EXPECT_GT(engineer.rows().properties, 0) << "what is forgotten stays done";
  EXPECT_TRUE(history.hasChanges());
}

}  // namespace
}  // namespace kova::test
