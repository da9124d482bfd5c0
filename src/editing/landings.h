// SPDX-License-Identifier: MIT
// Where the text of each field lands in the project's tables, and as what.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>

#include "core/wizard.h"
#include "editing/trial_row.h"

namespace kova {

/// What becomes of a text on its way to its column.
enum class Conversion : std::uint8_t {
  asTyped,
  firstSix,     ///< characters, as typed
  numberTyped,  ///< a number, by its meaning, but stored as typed
  // The leading number of the text, 0 if there is none.
  asDouble,
  asSingle,
  asInt16,
  asInt32,
  strictInt16  ///< the text as a whole, which must be a number
};

/// What must be so in the form for a commit to carry the text there.
enum class Condition : std::uint8_t {
  always,
  outputData,  ///< a plain property with an output format
  inputData,   ///< a plain property with an input format
  range,       ///< a plain property of which one limit is not 0
  process,
  history,  ///< a plain property that gets a row for its local history
  alarms    ///< a plain property that gets a row for its alarm watch
};

struct Landing {
  TextField Form1::*field;
  TableFile file;
  std::string_view column;  ///< tag in the header; empty for a value that has no column
  Conversion conversion;
  Condition condition;
};

/// All of them, those of a field in the order of the files.
std::span<const Landing> landings();

/// A commit of the form as it stands would carry the text there.
bool landsByCommit(const Wizard& wizard, const Landing& landing);

/// Done would write the text as part of the history line that it adds for the form. There each
/// number has to be one as a whole.
bool landsAtDone(const Wizard& wizard, const Landing& landing);

/// The text in the form in which the table holds it. Throws Failure if it does not fit.
std::string stored(Conversion conversion, const std::string& text);

/// The description as it lands, with the range at its head. The text of `field` stands there as
/// typed, those of the other fields without the signs by which a reader finds its way.
std::string describe(const Wizard& wizard, const TextField& field);

/// The row as a commit or Done would write it: `landed` in the column of `landing`, in the others
/// what the form holds, again without those signs.
TrialRow rowWith(const Wizard& wizard, const Landing& landing, const std::string& landed);

}  // namespace kova
