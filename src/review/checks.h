// SPDX-License-Identifier: MIT
// How each rule looks at a project. What a look is for stands in the table of rules.
#pragma once

#include "review/findings.h"

namespace kova::looks {

using Look = void(const ProjectReading& project, const Report& report);

// The form of a file: file_checks.cpp.
Look unreadable, lineFeedsOnly, mixedLineEnds, byteOrderMark, utf8Text, lackingCharacter,
    controlCharacter, comments, orphanBackup;

// How far the readers come, columns and fields: column_checks.cpp.
Look stopped, tableFull, noRows, missingColumn, foreignColumn, repeatedColumn, unnamedColumn,
    emptyLine, tooManyFields, tooFewFields, openQuote, digitsForText, textForNumber;

// Single rows of the export table: property_checks.cpp.
Look namelessProperty, repeatedProperty, otherCase, separatorInName, longLocalName, severalServers,
    severalLocalNames, severalModuleCounts, unknownFormat, formatCase, unknownArrayType,
    unknownAccess, brokenRange, incompleteProcess;

// Rows of the other tables and what they are for: cross_table_checks.cpp.
Look historyWithoutProperty, historyDiffers, repeatedHistory, repeatedIndex, alarmWithoutProperty,
    alarmDiffers, severalAlarms, namelessAlarm, unreadDevices, namesWithoutProperty, listTooLong,
    repeatedDevice;

}  // namespace kova::looks
