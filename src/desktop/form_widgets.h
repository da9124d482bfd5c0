// SPDX-License-Identifier: MIT
// The widgets of one window, made by a loop over its design table. Each mirrors its control and
// carries the engineer's acts into it.
#pragma once

#include <QWidget>
#include <functional>
#include <map>
#include <string_view>
#include <utility>
#include <vector>

#include "controls/control_design.h"
#include "desktop/act_filter.h"
#include "desktop/drawing.h"
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
  /// Fills `window`. `changed` runs after each change of what a control shows. The controls
  /// outlive the object.
  FormWidgets(QWidget& window, std::vector<DesignedControl> controls, const CodePage& codePage,
              Handler changed);
  FormWidgets(const FormWidgets&) = delete;
  FormWidgets& operator=(const FormWidgets&) = delete;
  FormWidgets(FormWidgets&&) = delete;
  FormWidgets& operator=(FormWidgets&&) = delete;
  ~FormWidgets();

  /// The widget of a control.
  QWidget* widget(std::string_view name) const { return widgets_.at(name); }
  const std::vector<ShownField>& fields() const { return fields_; }
  /// First of the widgets that take the focus at this moment, in the order of the Tab key.
  QWidget* firstInTabOrder() const;

 private:
  void make(const DesignedControl& control, const Drawn& drawn);
  QWidget* make(TextField& field, const Drawn& drawn, QWidget& parent);
  QWidget* make(CheckBox& box, const Drawn& drawn, QWidget& parent);
  QWidget* make(OptionButton& option, const Drawn& drawn, QWidget& parent);
  QWidget* make(CommandButton& button, const Drawn& drawn, QWidget& parent);
  QWidget* make(Frame& frame, const Drawn& drawn, QWidget& parent);
  QWidget* make(Label& label, const Drawn& drawn, QWidget& parent);
  QWidget* make(ListBox& list, const Drawn& drawn, QWidget& parent);
  QWidget* make(DropDownList& list, const Drawn& drawn, QWidget& parent);

  /// Attaches what shows the state of a control, and shows it.
  template <class Control, class Show>
  void mirror(Control& control, Show show);
  template <class Edit>
  QWidget* makeField(TextField& field, Edit* edit);
  QString caption(const Drawn& drawn) const;
  void nameFields(const Drawn& label, const QString& name) const;
  void joinLabels();
  void setTabOrder();

  QWidget& window_;
  const std::vector<DesignedControl> controls_;
  const Drawing drawing_;
  const CodePage& codePage_;
  const Handler changed_;
  ActFilter acts_;
  std::map<std::string_view, QWidget*> widgets_;
  std::vector<std::pair<const Drawn*, QWidget*>> made_;
  std::vector<Handler*> handlers_;  ///< of the controls, which lead to the widgets
  std::vector<ShownField> fields_;
  std::vector<QWidget*> tabOrder_;
};

}  // namespace kova
