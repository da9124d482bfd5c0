// SPDX-License-Identifier: MIT
// The check of each rule. The table of rules describes them.
#pragma once

#include "review/findings.h"

namespace kova::checks {

using Check = void(const ProjectReading& project, const Report& report);

// Formatting of a file: file_checks.cpp.
Check unreadable, lineFeedsOnly, mixedLineEndings, byteOrderMark, utf8Text, lackingCharacter,
    controlCharacter, comments, orphanBackup;

// Where reading stops, columns and fields: column_checks.cpp.
Check stopped, tableFull, noRows, missingColumn, unknownColumn, repeatedColumn, unnamedColumn,
    emptyLine, tooManyFields, tooFewFields, openQuote, digitsForText, textForNumber;

// Single rows of the export table: property_checks.cpp.
Check namelessProperty, repeatedProperty, otherCase, separatorInName, longLocalName, severalServers,
    severalLocalNames, severalModuleCounts, unknownFormat, formatCase, unknownArrayType,
    unknownAccess, brokenRange, incompleteProcess;

// Rows of the other tables and their properties: cross_table_checks.cpp.
Check historyWithoutProperty, historyDiffers, repeatedHistory, repeatedIndex, alarmWithoutProperty,
    alarmDiffers, severalAlarms, namelessAlarm, unreadDevices, namesWithoutProperty, listTooLong,
    repeatedDevice;

}  // namespace kova::checks
