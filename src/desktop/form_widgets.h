// SPDX-License-Identifier: MIT
// The widgets of one window, made from its design table. Each shows its control and passes user
// input to it.
#pragma once

#include <QAbstractButton>
#include <functional>
#include <map>
#include <optional>
#include <string_view>
#include <vector>

#include "controls/control_design.h"
#include "desktop/connections.h"
#include "desktop/event_filters.h"
#include "desktop/field_focus.h"
#include "desktop/layouts.h"
#include "platform/code_page.h"

namespace kova {

/// A text field and the widget that shows it.
struct ShownField {
  TextField* field = nullptr;
  QWidget* widget = nullptr;
  QString toolTip;
};

class FormWidgets {
 public:
  /// Fills `window` by its layout templates. `changed` runs after each change of a control. The
  /// controls outlive the object.
  FormWidgets(QWidget& window, const std::vector<LayoutTemplate>& layoutTemplates,
              std::vector<DesignedControl> controls, const CodePage& codePage, Handler changed);

  /// The widget of a control.
  QWidget* widget(std::string_view name) const { return shown_.at(name).widget; }
  /// The control that the widget shows; nothing if it is not one of this window.
  std::optional<ControlPointer> control(const QWidget* widget) const;
  const std::vector<ShownField>& fields() const { return fields_; }
  /// Runs `change`, which sets controls without their handlers, and shows all of them: the list is
  /// laid out again, the undo of each field starts empty, and a focus that is lost goes to the
  /// list.
  void restore(const Handler& change);
  /// First widget in Tab order that takes the focus now.
  QWidget* firstInTabOrder() const;

 private:
  void make(const DesignedControl& control);
  QWidget* make(TextField& field, const ControlDesign& design, QWidget& parent);
  QWidget* make(CheckBox& box, const ControlDesign& design, QWidget& parent);
  QWidget* make(OptionButton& option, const ControlDesign& design, QWidget& parent);
  QWidget* make(CommandButton& button, const ControlDesign& design, QWidget& parent);
  QWidget* make(Frame& frame, const ControlDesign& design, QWidget& parent);
  QWidget* make(Label& label, const ControlDesign& design, QWidget& parent);
  QWidget* make(ListBox& list, const ControlDesign& design, QWidget& parent);
  QWidget* make(DropDownList& list, const ControlDesign& design, QWidget& parent);

  /// Runs `show` now and after each change of the control.
  template <class Control, class Show>
  void bind(Control& control, Show show);
  template <class Edit>
  QWidget* makeField(TextField& field, Edit* edit);
  template <class Control, class IsOn, class Action>
  QWidget* makeToggle(Control& control, QAbstractButton* button, IsOn isOn, Action action);
  QString caption(const ControlDesign& design) const;
  QString accessibleName(const ControlDesign& design) const;
  void applyNaming(const Naming& naming);
  void setTabOrder();

  QWidget& window_;
  const std::vector<DesignedControl> controls_;
  const CodePage& codePage_;
  const Handler changed_;
  ControlInputFilter inputFilter_;
  FieldFocus focus_;
  ShownControls shown_;
  std::vector<Naming> namings_;
  std::vector<Handler> labels_;  ///< each updates one label
  std::vector<Handler> afterRestoring_;
  std::vector<ShownField> fields_;
  std::vector<QWidget*> tabOrder_;
  Connections connections_;
};

}  // namespace kova
