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
  std::string key = {};         ///< identifies the row, field, finding or file; may be empty
  std::string sign = {};        ///< one character, or empty
  std::string accessible = {};  ///< the sign as a word
  Style style = Style::plain;
  std::vector<std::string> texts = {};  ///< one per column
  std::string property = {};            ///< of the line, or empty
  std::size_t before = 0;     ///< of a row: its place in the present file, from 1; 0 if it is new
  std::size_t after = 0;      ///< and in the file that Done would write; 0 if it is removed
  std::string fullText = {};  ///< its messages, often longer than a column
  std::vector<ReviewLine> below = {};

  bool operator==(const ReviewLine&) const = default;
};

/// An item of the list on the left, and its lines.
struct ReviewGroup {
  std::string key = {};  ///< identifies the file or backup set
  std::string sign = {};
  std::string accessible = {};
  Style style = Style::plain;
  std::string name = {};
  std::string age = {};  ///< of a backup set
  std::vector<ReviewLine> lines = {};

  /// The age alone makes no difference.
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

/// What Done would write, and the findings in the project after that.
struct ReviewOfDone {
  ReviewPage writing;
  ReviewPage findings;
};

ReviewOfDone reviewDone(const Wizard& wizard, const CodePage& codePage);

/// A file and its rows that differ.
ReviewGroup fileGroup(const FileSystem& files, const FileDifference& file);

/// The page of backup sets, and what restoring each would change.
ReviewPage reviewBackups(const Wizard& wizard, const std::vector<BackupSet>& sets);

/// The backup set of a group of that page, reduced to one file if `line` is that file's key.
/// Nothing if there is no such set or file.
std::optional<BackupSet> chosenBackups(const Wizard& wizard, const std::vector<BackupSet>& sets,
                                       const std::string& group, const std::string& line);

/// The backup sets of the project directory; none if it can't be listed.
std::vector<BackupSet> backupSetsOf(const Wizard& wizard);

/// Selects the property as a click in the list does. False if it does not exist.
bool selectProperty(Wizard& wizard, const std::string& property);

/// Asks for confirmation, restores the files of the set, opens the project again, and reports what
/// was restored and what was not.
void confirmAndRestore(Wizard& wizard, const BackupSet& set);

}  // namespace kova
