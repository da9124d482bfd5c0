// SPDX-License-Identifier: MIT
// Turns the layout templates of a window into the toolkit's layouts.
#pragma once

#include <QWidget>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "controls/control_design.h"
#include "desktop/layout_template.h"

namespace kova {

/// A control on screen.
struct Shown {
  const ControlDesign* design = nullptr;
  QWidget* widget = nullptr;
};
using ShownControls = std::map<std::string_view, Shown>;

/// A label and a field that it names: the one to its right, which its access key reaches, or the
/// one below a multi-line text. Labels in a layout template of their own to the left of frames name
/// the fields in the same row of each frame; their access keys lead to the first.
struct Naming {
  std::string label;
  std::string field;
  bool leads = false;
};

/// Lays out `window` and all frames in it, and returns which labels name which fields. Throws
/// Failure if the layout templates have an unknown name, place something twice or outside its
/// frame, or leave out a control.
std::vector<Naming> layOut(QWidget& window, const std::vector<LayoutTemplate>& layoutTemplates,
                           const ShownControls& controls);

}  // namespace kova
