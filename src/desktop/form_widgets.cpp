// SPDX-License-Identifier: MIT
#include "desktop/form_widgets.h"

#include <QCheckBox>
#include <QComboBox>
#include <algorithm>
#include <array>
#include <utility>

#include "desktop/access_keys.h"
#include "desktop/box_field.h"
#include "desktop/layouts.h"
#include "desktop/line_field.h"
#include "desktop/line_list.h"
#include "desktop/make_child.h"
#include "desktop/small_widgets.h"
#include "desktop/text_seam.h"

namespace kova {
namespace {

/// What a control without a label is called, and what stands in it while it is empty.
struct Naming {
  std::string_view control;
  const char* name;
  const char* emptyText;
};

constexpr std::array<Naming, 2> namings{{
    {"PropertyList", "Properties", "No properties yet: fill in the form and press Add"},
    {"deviceNamesInputText", "Device names", "One device name a line"},
}};

const Naming* namingOf(const Drawn& drawn) {
  const auto* const found = std::find_if(namings.begin(), namings.end(), [&](const Naming& naming) {
    return naming.control == drawn.design->name;
  });
  return found == namings.end() ? nullptr : found;
}

QString emptyText(const Drawn& drawn) {
  const Naming* naming = namingOf(drawn);
  return naming == nullptr ? QString() : QString::fromLatin1(naming->emptyText);
}

constexpr int lineHeight = 225;  // of a drawn text, in twips

int charactersOf(const Drawn& drawn) {
  constexpr int number = 8;
  constexpr int name = 15;
  constexpr int sentence = 32;
  if (drawn.growsWide) return sentence;
  // A field whose label stands outside of its frame is as wide as the frame.
  const bool asFrame =
      drawn.label != nullptr && drawn.label->design->container != drawn.design->container;
  return isNumberField(drawn) || asFrame ? number : name;
}

void mirrorEnabled(QWidget& widget, bool enabled) {
  if (widget.isEnabledTo(widget.parentWidget()) != enabled) widget.setEnabled(enabled);
}

void mirrorEntries(QComboBox& box, const DropDownList& list, const CodePage& codePage) {
  for (auto shown = static_cast<std::size_t>(box.count()); shown < list.entries().size(); ++shown) {
    box.addItem(toShown(list.entries()[shown], codePage));
  }
  if (box.currentIndex() != list.selectedIndex()) box.setCurrentIndex(list.selectedIndex());
}

}  // namespace

FormWidgets::FormWidgets(QWidget& window, std::vector<DesignedControl> controls,
                         const CodePage& codePage, Handler changed)
    : window_(window),
      controls_(std::move(controls)),
      drawing_(controls_),
      codePage_(codePage),
      changed_(std::move(changed)) {
  // A frame is made ahead of what lies in it.
  for (const bool frames : {true, false}) {
    for (const DesignedControl& control : controls_) {
      const Drawn& drawn = drawing_.control(control.design->name);
      if (isFrame(drawn) == frames) make(control, drawn);
    }
  }
  joinLabels();
  layOut(drawing_, window_, [this](const Drawn& drawn) { return widget(drawn.design->name); });
  setTabOrder();
}

FormWidgets::~FormWidgets() {
  for (Handler* handler : handlers_) *handler = nullptr;
}

void FormWidgets::make(const DesignedControl& control, const Drawn& drawn) {
  const ControlDesign& design = *control.design;
  QWidget& parent = design.container.empty() ? window_ : *widget(design.container);
  QWidget* made =
      std::visit([&](auto* model) { return make(*model, drawn, parent); }, control.control);
  made->setObjectName(toShown(design.name, codePage_));
  made->setToolTip(toToolTip(toShown(design.toolTip, codePage_)));
  made->setAccessibleDescription(toShown(design.toolTip, codePage_));
  if (const Naming* naming = namingOf(drawn)) {
    made->setAccessibleName(QString::fromLatin1(naming->name));
  } else if (design.kind == ControlKind::textBox && drawn.label == nullptr) {
    made->setAccessibleName(toShown(drawing_.control(design.container).design->text, codePage_));
  }
  made->installEventFilter(&acts_);
  widgets_.emplace(design.name, made);
  made_.emplace_back(&drawn, made);
}

template <class Control, class Show>
void FormWidgets::mirror(Control& control, Show show) {
  control.mirror = [this, show] {
    show();
    changed_();
  };
  handlers_.push_back(&control.mirror);
  show();
}

template <class Edit>
QWidget* FormWidgets::makeField(TextField& field, Edit* edit) {
  mirror(field, [&field, edit] {
    edit->mirror();
    mirrorEnabled(*edit, field.enabled());
  });
  field.takeFocus = [edit] {
    if (!edit->isVisible() || !edit->isEnabled()) throw Failure("the field can't take the focus");
    edit->setFocus(Qt::OtherFocusReason);
  };
  handlers_.push_back(&field.takeFocus);
  return edit;
}

QWidget* FormWidgets::make(TextField& field, const Drawn& drawn, QWidget& parent) {
  QWidget* made = nullptr;
  if (drawn.design->kind == ControlKind::multiLineTextBox) {
    auto* box = makeChild<BoxField>(parent, field, codePage_);
    box->setPlaceholderText(emptyText(drawn));
    made = makeField(field, box);
  } else {
    made = makeField(field, makeChild<LineField>(parent, field, codePage_, charactersOf(drawn)));
  }
  fields_.push_back({&field, made, toShown(drawn.design->toolTip, codePage_)});
  return made;
}

QWidget* FormWidgets::make(CheckBox& box, const Drawn& drawn, QWidget& parent) {
  auto* made = makeChild<QCheckBox>(parent);
  made->setText(caption(drawn));
  onToggle(
      *made, [&box] { return box.ticked(); },
      [&box, made] { box.setValue(made->isChecked() ? 1 : 0); });
  mirror(box, [&box, made] { made->setChecked(box.ticked()); });
  return made;
}

QWidget* FormWidgets::make(OptionButton& option, const Drawn& drawn, QWidget& parent) {
  auto* made = makeChild<OptionBox>(parent);
  made->setText(caption(drawn));
  onToggle(
      *made, [&option] { return option.selected(); }, [&option] { option.select(); });
  mirror(option, [&option, made] { made->setChecked(option.selected()); });
  return made;
}

QWidget* FormWidgets::make(CommandButton& button, const Drawn& drawn, QWidget& parent) {
  auto* made = makeChild<ActButton>(parent);
  made->setText(caption(drawn));
  made->setAutoDefault(true);
  onPress(*made, [&button] { button.click(); });
  mirror(button, [&button, made] { mirrorEnabled(*made, button.enabled()); });
  return made;
}

QWidget* FormWidgets::make(Frame& frame, const Drawn& drawn, QWidget& parent) {
  auto* made = makeChild<FrameBox>(parent, frame);
  made->setTitle(withAccessKey(toShown(drawn.design->text, codePage_), 0));
  made->setAccessibleName(
      toShown(drawn.design->text, codePage_));  // else that of a frame around it
  mirror(frame, [&frame, made] { mirrorEnabled(*made, frame.enabled()); });
  return made;
}

QWidget* FormWidgets::make(Label& label, const Drawn& drawn, QWidget& parent) {
  const int lines = isTextOfLines(drawn) ? drawn.design->place.height / lineHeight : 1;
  auto* made = makeChild<CaptionLabel>(parent, label, lines);
  const bool beside = drawn.field != nullptr;
  made->setAlignment(beside ? Qt::AlignRight | Qt::AlignVCenter : Qt::AlignLeft | Qt::AlignTop);
  mirror(label, [this, &label, &drawn, made, beside] {
    const QString name = toShown(label.caption(), codePage_);
    const QString text = beside ? withAccessKey(name, accessKey(drawn.design->name)) : name;
    if (text != made->text()) made->setText(text);
    nameFields(drawn, name);
    mirrorEnabled(*made, label.enabled());
  });
  return made;
}

QWidget* FormWidgets::make(ListBox& list, const Drawn& drawn, QWidget& parent) {
  auto* made = makeChild<LineList>(parent, list, codePage_, emptyText(drawn));
  mirror(list, [made] { made->mirror(); });
  return made;
}

QWidget* FormWidgets::make(DropDownList& list, const Drawn& /*drawn*/, QWidget& parent) {
  auto* made = makeChild<QComboBox>(parent);
  made->setFocusPolicy(Qt::StrongFocus);
  made->setSizeAdjustPolicy(QComboBox::AdjustToContents);
  QObject::connect(made, &QComboBox::activated, made, [&list](int index) { list.select(index); });
  mirror(list, [this, &list, made] {
    mirrorEntries(*made, list, codePage_);
    mirrorEnabled(*made, list.enabled());
  });
  return made;
}

QString FormWidgets::caption(const Drawn& drawn) const {
  return withAccessKey(toShown(drawn.design->text, codePage_), accessKey(drawn.design->name));
}

void FormWidgets::nameFields(const Drawn& label, const QString& name) const {
  for (const auto& [drawn, shown] : made_) {
    if (drawn->label == &label && namingOf(*drawn) == nullptr) shown->setAccessibleName(name);
  }
}

void FormWidgets::joinLabels() {
  for (const auto& [drawn, shown] : made_) {
    if (!isLabel(*drawn)) continue;
    if (drawn->field != nullptr) {
      static_cast<CaptionLabel*>(shown)->setBuddy(widget(drawn->field->design->name));
    }
    nameFields(*drawn, toShown(drawn->design->text, codePage_));
  }
  // A screen reader speaks a drop-down list by the label that lies in the same frame, and by none
  // that stands outside.
  for (const auto& [drawn, shown] : made_) {
    if (drawn->label == nullptr || drawn->label->design->container == drawn->design->container) {
      continue;
    }
    auto* spoken = makeChild<QLabel>(*shown->parentWidget());
    spoken->setText(toShown(drawn->label->design->text, codePage_));
    spoken->setBuddy(shown);
    spoken->hide();
  }
}

void FormWidgets::setTabOrder() {
  std::vector<std::pair<int, QWidget*>> order;
  for (const auto& [drawn, shown] : made_) {
    if (shown->focusPolicy() & Qt::TabFocus) order.emplace_back(drawn->design->tabIndex, shown);
  }
  std::sort(order.begin(), order.end());
  for (const auto& [index, shown] : order) {
    if (!tabOrder_.empty()) QWidget::setTabOrder(tabOrder_.back(), shown);
    tabOrder_.push_back(shown);
  }
}

QWidget* FormWidgets::firstInTabOrder() const {
  const auto found = std::find_if(tabOrder_.begin(), tabOrder_.end(),
                                  [this](QWidget* shown) { return shown->isEnabledTo(&window_); });
  return found == tabOrder_.end() ? nullptr : *found;
}

}  // namespace kova
