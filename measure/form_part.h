// SPDX-License-Identifier: MIT
// A window as a list of its widgets, as one program writes it and another one reads it.
#pragma once

#include <QDataStream>
#include <QList>
#include <QRect>
#include <QString>
#include <QStringList>

namespace kova::measure {

/// One widget. It stands behind what it lies in.
struct FormPart {
  int parent = -1;  ///< place of that in the list
  QString kind;     ///< class of the toolkit
  QRect place;
  QString text;
  QStringList entries;  ///< of a drop-down list, or of a menu behind its title
  int chosen = 0;
  int alignment = 0;
  bool enabled = true;
  bool visible = true;
  bool checked = false;
  bool bold = false;
  bool wraps = false;
  bool leads = false;  ///< to a field, so that it shows its access key
};

inline QDataStream& operator<<(QDataStream& to, const FormPart& part) {
  return to << part.parent << part.kind << part.place << part.text << part.entries << part.chosen
            << part.alignment << part.enabled << part.visible << part.checked << part.bold
            << part.wraps << part.leads;
}

inline QDataStream& operator>>(QDataStream& from, FormPart& part) {
  return from >> part.parent >> part.kind >> part.place >> part.text >> part.entries >>
         part.chosen >> part.alignment >> part.enabled >> part.visible >> part.checked >>
         part.bold >> part.wraps >> part.leads;
}

}  // namespace kova::measure
