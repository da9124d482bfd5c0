// SPDX-License-Identifier: MIT
// Marks fields whose text a commit would refuse or cut.
#pragma once

#include <QObject>
#include <QTimer>
#include <string>
#include <vector>

#include "core/wizard.h"
#include "desktop/form_widgets.h"
#include "desktop/mark_sign.h"

namespace kova {

class FieldMarks : public QObject {
 public:
  /// `fields` are those of the main window. They and the wizard outlive the object.
  /// `marked` runs after each check of the fields.
  FieldMarks(const std::vector<ShownField>& fields, const CodePage& codePage, const Wizard& wizard,
             Handler marked);

  /// Updates the marks after the current event.
  void scheduleUpdate();
  /// Applies the current palette to the marks.
  void recolour();

 private:
  void markAll();
  void mark(std::size_t index, const std::string& warning);

  const std::vector<ShownField>& fields_;
  const CodePage& codePage_;
  const Wizard& wizard_;
  const Handler marked_;
  std::vector<std::string> marks_;  ///< the warning that each field shows
  std::vector<MarkSign*> signs_;    ///< of each field, null until it needs one
  QTimer afterEvent_;
};

}  // namespace kova
