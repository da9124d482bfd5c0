// SPDX-License-Identifier: MIT
#include "desktop/form_widgets.h"

#include <QAbstractItemView>
#include <QAccessible>
#include <QCheckBox>
#include <QComboBox>
#include <algorithm>
#include <utility>

#include "desktop/action_button.h"
#include "desktop/box_field.h"
#include "desktop/caption_label.h"
#include "desktop/frame_box.h"
#include "desktop/line_field.h"
#include "desktop/line_list.h"
#include "desktop/option_box.h"
#include "desktop/text_conversion.h"

namespace kova {
namespace {

constexpr int lineHeight = 225;  // of text, in twips

LineField::Characters charactersOf(const ControlDesign& design) {
  const Width width = widthOf(design);
  if (width == Width::number) return {.wanted = 8, .least = 6};
  if (width == Width::name) return {.wanted = 16, .least = 8};
  return {.wanted = 32, .least = 16};
}

/// By themselves, screen readers speak the entries of an open list only.
void announceEntry(QComboBox& list, int index) {
  if (!list.hasFocus() || !QAccessible::isActive()) return;
  QAccessibleEvent entry(list.view(), QAccessible::Focus);
  entry.setChild(index);
  QAccessible::updateAccessibility(&entry);
}

/// However a button is pressed, the field with the focus loses it first.
void takeFocus(QAbstractButton& button) {
  if (!button.hasFocus()) button.setFocus(Qt::OtherFocusReason);
}

}  // namespace

FormWidgets::FormWidgets(QWidget& window, const std::vector<LayoutTemplate>& layoutTemplates,
                         std::vector<DesignedControl> controls, const CodePage& codePage,
                         Handler changed)
    : window_(window),
      controls_(std::move(controls)),
      codePage_(codePage),
      changed_(std::move(changed)) {
  // Frames come first, as the parents of the other controls.
  for (const bool frames : {true, false}) {
    for (const DesignedControl& control : controls_) {
      if ((control.design->kind == ControlKind::frame) == frames) make(control);
    }
  }
  namings_ = layOut(window_, layoutTemplates, shown_);
  for (const Naming& naming : namings_) applyNaming(naming);
  for (const Handler& show : labels_) show();
  setTabOrder();
}

void FormWidgets::make(const DesignedControl& control) {
  const ControlDesign& design = *control.design;
  QWidget& parent = design.container.empty() ? window_ : *widget(design.container);
  QWidget* made =
      std::visit([&](auto* model) { return make(*model, design, parent); }, control.control);
  made->setObjectName(toShown(design.name, codePage_));
  made->setToolTip(toToolTip(toShown(design.toolTip, codePage_)));
  made->setAccessibleDescription(toShown(design.toolTip, codePage_));
  made->setAccessibleName(accessibleName(design));
  made->installEventFilter(&inputFilter_);
  auto* const* field = std::get_if<TextField*>(&control.control);
  focus_.watch(*made, field == nullptr ? nullptr : *field);
  shown_.emplace(design.name, Shown{.design = &design, .widget = made});
}

template <class Control, class Show>
void FormWidgets::bind(Control& control, Show show) {
  connectCallback(connections_, control.notifyView, [this, show] {
    show();
    changed_();
  });
  show();
}

template <class Edit>
QWidget* FormWidgets::makeField(TextField& field, Edit* edit) {
  bind(field, [&field, edit] {
    edit->refresh();
    edit->setEnabled(field.enabled());
  });
  connectCallback(connections_, field.takeFocus, [edit] {
    if (!edit->isVisible() || !edit->isEnabled()) throw Failure("the field can't take the focus");
    edit->setFocus(Qt::OtherFocusReason);
  });
  connectCallback(connections_, field.selectAll, [edit] { edit->selectAll(); });
  afterRestoring_.emplace_back([edit] { edit->forgetEdits(); });
  return edit;
}

QWidget* FormWidgets::make(TextField& field, const ControlDesign& design, QWidget& parent) {
  QWidget* made = nullptr;
  if (design.kind == ControlKind::multiLineTextBox) {
    auto* box = new BoxField(field, codePage_, &parent);
    box->setPlaceholderText(toShown(design.hintIfEmpty, codePage_));
    made = makeField(field, box);
  } else {
    made = makeField(field, new LineField(field, codePage_, charactersOf(design), &parent));
  }
  fields_.push_back({&field, made, toShown(design.toolTip, codePage_)});
  return made;
}

/// Listens to toggles, as a screen reader toggles a button without a click.
template <class Control, class IsOn, class Action>
QWidget* FormWidgets::makeToggle(Control& control, QAbstractButton* button, IsOn isOn,
                                 Action action) {
  QObject::connect(button, &QAbstractButton::toggled, button, [=, &control](bool on) {
    // Of two options, only the newly selected one reports it.
    if (on == std::invoke(isOn, control) || (button->autoExclusive() && !on)) return;
    takeFocus(*button);
    std::invoke(action, control);
  });
  bind(control, [=, &control] { button->setChecked(std::invoke(isOn, control)); });
  return button;
}

QWidget* FormWidgets::make(CheckBox& box, const ControlDesign& design, QWidget& parent) {
  return makeToggle(box, new QCheckBox(caption(design), &parent), &CheckBox::ticked,
                    [](CheckBox& pressed) { pressed.setValue(pressed.ticked() ? 0 : 1); });
}

QWidget* FormWidgets::make(OptionButton& option, const ControlDesign& design, QWidget& parent) {
  return makeToggle(option, new OptionBox(caption(design), &parent), &OptionButton::selected,
                    &OptionButton::select);
}

QWidget* FormWidgets::make(CommandButton& button, const ControlDesign& design, QWidget& parent) {
  auto* made = new ActionButton(design.kind == ControlKind::finishButton, &parent);
  made->setText(caption(design));
  QObject::connect(made, &QAbstractButton::clicked, made, [&button, made] {
    takeFocus(*made);
    button.click();
  });
  bind(button, [&button, made] { made->setEnabled(button.enabled()); });
  return made;
}

QWidget* FormWidgets::make(Frame& frame, const ControlDesign& design, QWidget& parent) {
  auto* made = new FrameBox(frame, &parent);
  made->setTitle(caption(design));
  bind(frame, [&frame, made] { made->setEnabled(frame.enabled()); });
  return made;
}

QWidget* FormWidgets::make(Label& label, const ControlDesign& design, QWidget& parent) {
  const int lines = holdsLines(design) ? design.place.height / lineHeight : 1;
  auto* made = new CaptionLabel(label, lines, &parent);
  labels_.emplace_back([this, &label, &design, made] {
    const QString name = toShown(label.caption(), codePage_);
    const bool leads = made->buddy() != nullptr;
    const QString text = leads ? withAccessKey(name, design.caption.key) : name;
    if (text != made->text()) made->setText(text);
    for (const Naming& naming : namings_) {
      if (naming.label == design.name) widget(naming.field)->setAccessibleName(name);
    }
    made->setEnabled(label.enabled());
  });
  bind(label, labels_.back());
  return made;
}

QWidget* FormWidgets::make(ListBox& list, const ControlDesign& design, QWidget& parent) {
  auto* made = new LineList(list, codePage_, toShown(design.hintIfEmpty, codePage_), &parent);
  bind(list, [made] { made->refresh(); });
  afterRestoring_.emplace_back([made] { made->refreshAll(); });
  return made;
}

QWidget* FormWidgets::make(DropDownList& list, const ControlDesign& /*design*/, QWidget& parent) {
  // As wide as its entries by default. Setting a size policy would create the pop-up early and lay
  // out the window again.
  auto* made = new QComboBox(&parent);
  made->setFocusPolicy(Qt::StrongFocus);
  QObject::connect(made, &QComboBox::activated, made, [&list](int index) { list.select(index); });
  QObject::connect(made, &QComboBox::currentIndexChanged, made,
                   [made](int index) { announceEntry(*made, index); });
  bind(list, [this, &list, made] {
    const auto& entries = list.entries();
    for (auto shown = static_cast<std::size_t>(made->count()); shown < entries.size(); ++shown) {
      made->addItem(toShown(entries[shown], codePage_));
    }
    made->setCurrentIndex(list.selectedIndex());
    // A screen reader speaks the value of editable lists only.
    made->setAccessibleDescription(made->currentText());
    made->setEnabled(list.enabled());
  });
  return made;
}

QString FormWidgets::caption(const ControlDesign& design) const {
  return withAccessKey(toShown(design.caption.text, codePage_), design.caption.key);
}

/// Labels replace this name later. A text field without a label is named after its frame.
QString FormWidgets::accessibleName(const ControlDesign& design) const {
  const bool usesFrame = design.kind == ControlKind::textBox && !design.container.empty();
  const ControlDesign& named = usesFrame ? *shown_.at(design.container).design : design;
  const bool usesCaption = named.kind == ControlKind::frame;
  return toShown(usesCaption ? named.caption.text : design.accessibleName, codePage_);
}

void FormWidgets::applyNaming(const Naming& naming) {
  auto& label = *static_cast<CaptionLabel*>(widget(naming.label));
  QWidget* field = widget(naming.field);
  if (naming.leads) label.leadTo(*field);
  const ControlDesign& design = *shown_.at(naming.label).design;
  if (design.container == shown_.at(naming.field).design->container) return;
  // A screen reader names a drop-down list by a label in the same frame only.
  auto* hidden = new QLabel(toShown(design.caption.text, codePage_), field->parentWidget());
  hidden->setBuddy(field);
  hidden->hide();
}

void FormWidgets::setTabOrder() {
  std::map<int, QWidget*> order;
  for (const DesignedControl& control : controls_) {
    QWidget* shown = widget(control.design->name);
    if (shown->focusPolicy() & Qt::TabFocus) order.emplace(control.design->tabIndex, shown);
  }
  for (const auto& [index, shown] : order) {
    if (!tabOrder_.empty()) QWidget::setTabOrder(tabOrder_.back(), shown);
    tabOrder_.push_back(shown);
  }
}

std::optional<ControlPointer> FormWidgets::control(const QWidget* widget) const {
  for (const DesignedControl& one : controls_) {
    if (shown_.at(one.design->name).widget == widget) return one.control;
  }
  return std::nullopt;
}

void FormWidgets::restore(const Handler& change) {
  focus_.hold(true);
  change();
  for (const Handler& after : afterRestoring_) after();
  const QWidget* focused = window_.window()->focusWidget();
  const bool isLost = focused == nullptr || !focused->isEnabled();
  const auto list = std::find_if(tabOrder_.begin(), tabOrder_.end(), [](const QWidget* shown) {
    return qobject_cast<const QAbstractItemView*>(shown) != nullptr;
  });
  if (isLost && list != tabOrder_.end()) (*list)->setFocus(Qt::OtherFocusReason);
  focus_.hold(false);
}

QWidget* FormWidgets::firstInTabOrder() const {
  const auto found = std::find_if(tabOrder_.begin(), tabOrder_.end(),
                                  [this](QWidget* shown) { return shown->isEnabledTo(&window_); });
  return found == tabOrder_.end() ? nullptr : *found;
}

}  // namespace kova
