// SPDX-License-Identifier: MIT
// The pages of the review window as texts: what Done would write, findings, and backups.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <tuple>
#include <vector>

#include "core/wizard.h"
#include "platform/code_page.h"
#include "review/backup_sets.h"
#include "review/differences.h"

namespace kova {

enum class Style : std::uint8_t { plain, added, removed, changed };

struct ReviewLine {
  std::string key = {};         ///< which row, field, finding or file it is; empty if it is none
  std::string sign = {};        ///< one character, or none
  std::string accessible = {};  ///< the sign as a word
  Style style = Style::plain;
  std::vector<std::string> texts = {};  ///< one a column of the page
  std::string property = {};            ///< that the line is about, empty if it is about none
  std::string whole = {};               ///< its messages, which are longer than a column
  std::vector<ReviewLine> below = {};

  bool operator==(const ReviewLine&) const = default;
};

/// What stands in the list on the left, and all lines that belong to it.
struct ReviewGroup {
  std::string key = {};  ///< which file or set of backups it is
  std::string sign = {};
  std::string accessible = {};
  Style style = Style::plain;
  std::string name = {};
  std::string age = {};  ///< of a set of backups
  std::vector<ReviewLine> lines = {};

  /// Time alone changes nothing but the age.
  bool operator==(const ReviewGroup& other) const {
    return std::tie(key, sign, accessible, style, name, lines) ==
           std::tie(other.key, other.sign, other.accessible, other.style, other.name, other.lines);
  }
};

struct ReviewPage {
  std::string heading;
  std::vector<std::string> columns;
  std::vector<ReviewGroup> groups;

  bool operator==(const ReviewPage&) const = default;
};

/// What Done would write, and the findings in what would lie on the disk afterwards.
struct ReviewOfDone {
  ReviewPage writing;
  ReviewPage findings;
};

ReviewOfDone reviewDone(const Wizard& wizard, const CodePage& codePage);

/// The sets of backups, and what restoring each would change. `sets` are those of the page's
/// groups.
ReviewPage reviewBackups(const Wizard& wizard, const std::vector<BackupSet>& sets);

/// The set of a group of that page, or a file of it alone if `line` is the key of one. None if the
/// set or the file is not there.
std::optional<BackupSet> chosenBackups(const Wizard& wizard, const std::vector<BackupSet>& sets,
                                       const std::string& group, const std::string& line);

/// The sets in the project directory; none if it can't be listed.
std::vector<BackupSet> backupSetsOf(const Wizard& wizard);

/// Selects the property in the form as a click on its line does. False if the table lacks it.
bool selectProperty(Wizard& wizard, const std::string& property);

/// Asks once, gives the files of the set what they held, and enters the project anew. What was
/// restored, and what was not, is told. Changes nothing without the answer yes.
void restoreIfWanted(Wizard& wizard, const BackupSet& set);

}  // namespace kova
