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
  /// `marked` runs after each look at them.
  FieldMarks(const std::vector<ShownField>& fields, const CodePage& codePage, const Wizard& wizard,
             Handler marked);

  /// Has the marks follow the texts as soon as the running act is through.
  void follow();
  /// Gives the marks the colours of the palette in use.
  void recolour();

 private:
  void markAll();
  void mark(std::size_t index, const std::string& warning);

  const std::vector<ShownField>& fields_;
  const CodePage& codePage_;
  const Wizard& wizard_;
  const Handler marked_;
  std::vector<std::string> marks_;  ///< the warning that each field shows
  std::vector<MarkSign*> signs_;    ///< of each field, null as long as it needs none
  QTimer afterAction_;
};

}  // namespace kova
