// SPDX-License-Identifier: MIT
// The history table: which properties keep a local history, and its file.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "tables/column_facts.h"
#include "tables/tagged_csv.h"

namespace kova {

inline constexpr std::string_view historyFileName = "history.csv";

/// Settings of one local history.
struct HistoryRecord {
  std::int16_t index = 0;
  std::string exportName;
  std::string localName;
  std::string propertyName;
  std::string device;
  std::int32_t dataLength = 0;  ///< values
  std::string format;
  std::int32_t heartbeat = 0;    ///< seconds
  std::int32_t pollingRate = 0;  ///< milliseconds
  std::int32_t archiveRate = 0;  ///< seconds
  std::string tolerance;         ///< percent or absolute, as typed
  std::int32_t shortDepth = 0;   ///< samples
  std::int32_t longDepth = 0;    ///< months

  bool operator==(const HistoryRecord&) const = default;
};

/// The history settings of the property in the form, as typed.
struct HistoryForm {
  std::string exportName;
  std::string localName;  ///< whole; rows store its first 6 characters
  std::string propertyName;
  std::string device;
  std::string outputSize;
  std::string singleValueFormat;  ///< for rows of the table, array type included
  std::string tableFormat;        ///< for the row that is only written
  std::string heartbeat;
  std::string pollingRate;
  std::string archiveRate;
  std::string tolerance;
  std::string shortDepth;
  std::string longDepth;
};

/// Up to 1001 rows, of which the first `historyCount` are live; the others keep what they held.
using HistoryTable = std::vector<HistoryRecord>;

/// The columns of the file in its order.
std::span<const ColumnFacts> historyColumns();

/// Reads the file over the rows from 0 on. `historyCount` becomes the number of rows read. The
/// result has a stop if the end of the file was not reached.
ReadResult ReadHistoryFile(const FileSystem& files, const Path& file, HistoryTable& historyTable,
                           std::int16_t& historyCount);

/// Appends the form's row, unless a row has its three names already or the table is full. Throws
/// ValueFailure, and has changed nothing then, if a text does not fit its field or if there is no
/// free index.
void AppendHistoryFile(HistoryTable& historyTable, std::int16_t& historyCount,
                       const HistoryForm& form);

/// Writes the rows, and one more for the form if no row has its three names. Throws Failure; the
/// file on disk is then as it was.
void WriteHistoryFile(const ReplaceFile& replace, const Path& file,
                      const HistoryTable& historyTable, std::int16_t historyCount,
                      const HistoryForm& form);

/// First live row with this pair of names, or null. Valid until the table changes.
const HistoryRecord* findHistory(const HistoryTable& historyTable, std::int16_t historyCount,
                                 std::string_view expName, std::string_view prpName);

/// A live row has this pair of names.
bool PrpIsInHistoryTable(const HistoryTable& historyTable, std::int16_t historyCount,
                         std::string_view expName, std::string_view prpName);

}  // namespace kova
