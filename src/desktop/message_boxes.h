// SPDX-License-Identifier: MIT
// The wizard's messages as message boxes.
#pragma once

#include <QWidget>
#include <string>

#include "controls/controls.h"
#include "platform/code_page.h"

namespace kova {

/// Shows messages in front of `window`, which outlives the result.
MessageBox messageBoxes(QWidget& window, const CodePage& codePage, const std::string& programName);

}  // namespace kova
