// SPDX-License-Identifier: MIT
// The page of all history and alarm watch rows, and what the engineer does with one of them.
#pragma once

#include <optional>
#include <string>

#include "editing/row_actions.h"
#include "review/review_pages.h"

namespace kova {

/// A row by its table and its place in it.
struct ChosenRow {
  RowTable table = RowTable::history;
  std::int16_t index = 0;
};

/// The rows by table, in each those without a property first.
ReviewPage reviewRows(const Wizard& wizard);

/// The row of a group and line of that page; nothing if there is none.
std::optional<ChosenRow> chosenRow(const Wizard& wizard, const std::string& group,
                                   const std::string& line);

/// Name of the row's property.
std::string propertyOf(const Wizard& wizard, const ChosenRow& row);
/// The project has the row's property.
bool hasProperty(const Wizard& wizard, const ChosenRow& row);

/// The row belongs to the property in the form, whose settings it can take.
bool mayTakeFormSettings(const Wizard& wizard, const ChosenRow& row);

/// Deletes the row. Done does not write an alarm watch table without rows: for the last row, asks,
/// writes the file at once, and backs up the former one. False if the engineer or a failure, which
/// is reported, has kept the row.
bool deleteChosen(Wizard& wizard, const ChosenRow& row);

/// Gives the row the settings in the form. Reports a text that does not fit.
void takeSettings(Wizard& wizard, const ChosenRow& row);

/// Renames a property with all its rows. Reports why it can't.
void renameChosenProperty(Wizard& wizard, const std::string& name, const std::string& newName);

}  // namespace kova
