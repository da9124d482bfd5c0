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

/// A label and a field that it names: the one right of it, to which its access key leads, or the
/// one below a text of several lines. Labels in a layout template of their own left of frames name
/// the fields in the same row of each, and lead into the first.
struct Naming {
  std::string label;
  std::string field;
  bool leads = false;
};

/// Lays out `window` and all frames in it, and says which labels name which fields. Throws Failure
/// where the layout templates name what is not there, name something twice or outside of its frame,
/// or leave a control out.
std::vector<Naming> layOut(QWidget& window, const std::vector<LayoutTemplate>& layoutTemplates,
                           const ShownControls& controls);

}  // namespace kova
