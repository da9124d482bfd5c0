// SPDX-License-Identifier: MIT
// Drafts as JSON and back. Every byte of a text survives, as does every digit of a number.
#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "controls/shared_rows.h"
#include "json/json.h"
#include "review/draft.h"

namespace kova {

/// The rows of a table as JSON texts. Rows that have not changed keep theirs.
template <class Row>
class RowTexts {
 public:
  using Texts = std::vector<Shared<std::string>>;

  const Texts& of(const SharedRows<Row>& rows, const std::function<std::string(const Row&)>& text) {
    if (rows.isSame(rows_)) return texts_;
    std::unordered_map<const Row*, std::size_t> known;
    for (std::size_t row = 0; row < rows_.size(); ++row) known.emplace(&rows_[row], row);
    Texts texts;
    texts.reserve(rows.size());
    for (std::size_t row = 0; row < rows.size(); ++row) {
      const auto former = known.find(&rows[row]);
      texts.push_back(former == known.end() ? std::make_shared<const std::string>(text(rows[row]))
                                            : texts_[former->second]);
    }
    rows_ = rows;
    texts_ = std::move(texts);
    return texts_;
  }

 private:
  SharedRows<Row> rows_;  // keeps the rows, so that no other one gets the address of one of them
  Texts texts_;
};

class DraftWriter {
 public:
  explicit DraftWriter(const CodePage& codePage) : codePage_(codePage) {}

  /// The content of a draft's file, valid until the next one. Lists of names that `disk` holds are
  /// left out.
  const std::string& write(Wizard& wizard, const DraftSummary& summary,
                           const SessionSnapshot& session, const ProjectOnDisk& disk);

 private:
  std::string propertyText(const PropertyRecord& row, const ProjectOnDisk& disk) const;
  void forgetListsOfOtherDisk(const SessionSnapshot& session, const ProjectOnDisk& disk);

  const CodePage& codePage_;
  RowTexts<PropertyRecord> properties_;
  RowTexts<HistoryRecord> history_;
  RowTexts<AlarmWatchRecord> alarms_;
  RowTexts<std::string> lines_;
  std::string directory_;
  FolderStates states_;
  std::string content_;
};

/// The summary of a draft. Throws Failure if the content is not complete.
DraftSummary draftSummary(std::string_view content, const CodePage& codePage);

/// The draft in the content. Throws Failure for anything else than a draft that this version has
/// written in this code page.
Draft readDraft(Wizard& wizard, std::string_view content, const CodePage& codePage);

}  // namespace kova
