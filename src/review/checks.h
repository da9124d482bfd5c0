// SPDX-License-Identifier: MIT
// How each rule looks at a project. What a look is for stands in the table of rules.
#pragma once

#include "review/findings.h"

namespace kova::checks {

using Check = void(const ProjectReading& project, const Report& report);

// The form of a file: file_checks.cpp.
Check unreadable, lineFeedsOnly, mixedLineEndings, byteOrderMark, utf8Text, lackingCharacter,
    controlCharacter, comments, orphanBackup;

// How far the readers come, columns and fields: column_checks.cpp.
Check stopped, tableFull, noRows, missingColumn, unknownColumn, repeatedColumn, unnamedColumn,
    emptyLine, tooManyFields, tooFewFields, openQuote, digitsForText, textForNumber;

// Single rows of the export table: property_checks.cpp.
Check namelessProperty, repeatedProperty, otherCase, separatorInName, longLocalName, severalServers,
    severalLocalNames, severalModuleCounts, unknownFormat, formatCase, unknownArrayType,
    unknownAccess, brokenRange, incompleteProcess;

// Rows of the other tables and what they are for: cross_table_checks.cpp.
Check historyWithoutProperty, historyDiffers, repeatedHistory, repeatedIndex, alarmWithoutProperty,
    alarmDiffers, severalAlarms, namelessAlarm, unreadDevices, namesWithoutProperty, listTooLong,
    repeatedDevice;

}  // namespace kova::checks
