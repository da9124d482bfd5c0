// SPDX-License-Identifier: MIT
#include "desktop/colours.h"

#include <QColor>
#include <algorithm>
#include <array>
#include <cmath>
#include <utility>

namespace kova {
namespace {

constexpr double readable = 4.5;

/// Mixes `tenths` of `one` with the rest of `other`.
QColor blend(const QColor& one, const QColor& other, int tenths) {
  const auto part = [tenths](int of, int with) {
    return (of * tenths + with * (10 - tenths)) / 10;
  };
  return {part(one.red(), other.red()), part(one.green(), other.green()),
          part(one.blue(), other.blue())};
}

/// Relative luminance as the eye perceives it.
double luminance(const QColor& colour) {
  const auto linear = [](double light) {
    return light <= 0.04045 ? light / 12.92 : std::pow((light + 0.055) / 1.055, 2.4);
  };
  return 0.2126 * linear(colour.redF()) + 0.7152 * linear(colour.greenF()) +
         0.0722 * linear(colour.blueF());
}

/// Contrast ratio of a text: from 1 (invisible) to 21 (black on white).
double contrast(const QColor& text, const QColor& background) {
  constexpr double glare = 0.05;
  const auto [dark, light] = std::minmax({luminance(text), luminance(background)});
  return (light + glare) / (dark + glare);
}

/// The readable colour closest to the background.
QColor palest(const QColor& text, const QColor& background) {
  int tenths = 5;
  while (tenths < 10 && contrast(blend(text, background, tenths), background) < readable) ++tenths;
  return blend(text, background, tenths);
}

}  // namespace

QPalette withReadableTexts(QPalette palette) {
  using Role = QPalette::ColorRole;
  constexpr std::array<std::pair<Role, Role>, 3> textsOn{{{Role::WindowText, Role::Window},
                                                          {Role::Text, Role::Base},
                                                          {Role::ButtonText, Role::Button}}};
  for (const auto& [text, background] : textsOn) {
    palette.setColor(QPalette::Disabled, text,
                     palest(palette.color(QPalette::Active, text),
                            palette.color(QPalette::Disabled, background)));
  }
  palette.setColor(QPalette::PlaceholderText,
                   palest(palette.color(QPalette::Text), palette.color(QPalette::Base)));
  return palette;
}

QColor tinted(const QPalette& palette, const QColor& colour) {
  return blend(colour, palette.color(QPalette::Base), 2);
}

QColor currentLine(const QPalette& palette) {
  return blend(palette.color(QPalette::Text), palette.color(QPalette::Base), 1);
}

QPalette markedField(const QPalette& palette) {
  constexpr QColor amber(255, 160, 0);
  const QColor text = palette.color(QPalette::Text);
  const QColor base = blend(palette.color(QPalette::Base), amber, 7);
  QPalette marked;
  marked.setColor(QPalette::Base, base);
  marked.setColor(QPalette::Disabled, QPalette::Text, palest(text, base));
  return marked;
}

}  // namespace kova
