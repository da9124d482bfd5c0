// SPDX-License-Identifier: MIT
#include "review/differences.h"

#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <vector>

namespace kova {
namespace {

/// Signs and texts of a difference, line by line.
std::string linesOf(const std::optional<FileDifference>& difference) {
  if (!difference) return "equal";
  std::string lines(1, mark(difference->sign));
  for (const RowChange& row : difference->rows) {
    (lines += '\n') += mark(row.sign) + std::string(" ") + textOf(row);
  }
  for (const std::string& message : difference->formatting) lines += "\n= " + message;
  return lines;
}

struct Case {
  const char* file;
  std::optional<std::string> before;
  std::optional<std::string> after;
  const char* lines;
};

const std::string properties = "EXPORT_NAME,PROPERTY,PROPERTY_SIZE,PROPERTY_ID\r\n";
const std::string alarms = "LocalName,property,HIGH\r\n";
const std::string devices = "DEVICE_NUMBER,DEVICE_NAME\r\n";

TEST(Differences, GoByRowsAndColumns) {
  const std::vector<Case> cases = {
      {"exports.csv", properties + "M,A,4, 1\r\n", properties + "M,A,8, 7\r\n",
       "~\n~ M A: PROPERTY_SIZE 4 -> 8"},
      {"exports.csv", properties + "M,A,4, 1\r\nM,B,1, 2\r\n", properties + "M,B,1, 1\r\n",
       "~\n- M A"},
      {"exports.csv", properties + "M,A,1\r\nM,B,1\r\nM,C,1\r\n",
       properties + "M,B,1\r\nM,C,1\r\nM,A,2\r\nN,A,2\r\n",
       "~\n~ M A: PROPERTY_SIZE 1 -> 2, moved\n+ N A"},
      {"exports.csv", properties + "M,A,1\r\nM,B,1\r\nM,C,1\r\n",
       properties + "M,C,1\r\nM,A,1\r\nM,B,1\r\n", "~\n> M C"},
      {"exports.csv", "EXPORT_NAME,PROPERTY,NOTE\r\nM,A,x\r\nM,B,\r\n",
       "PROPERTY,EXPORT_NAME\r\nA,M\r\nB,M\r\n",
       "~\n~ M A: NOTE x -> \"\"\n= column \"NOTE\" removed\n= column order changed"},
      {"exports.csv", "#x\n\r\nPROPERTY\r\n;\r\nA\r\n", "PROPERTY\r\n A\r\n",
       "~\n= line endings: CR LF and LF -> CR LF\n= comment lines: 2 -> 0"},
      {"almwatch.csv", alarms + "M,A,1\r\nM,A,2\r\n", alarms + "M,A,1.0\r\nM,A,3\r\nM,A,3\r\n",
       "~\n~ M A: HIGH 2 -> 3\n+ M A"},
      {"almwatch.csv", "LOCAL NAME,property,HIGH\r\nM,A,1\r\n", alarms + "M,A, 1\r\n",
       "~\n= column \"LOCAL NAME\" removed\n= column \"LOCALNAME\" added"},
      {"history.csv", "Export Name,Local Name,Property,Index\r\nM,E,A,1\r\n",
       "Export Name,Local Name,Property,Index\r\nM,E,A, 1\r\nM,F,A,1\r\n", "~\n+ M F A"},
      {"A-names.csv", devices + "0,X\r\n2,Y\r\n", devices + " 0,\r\n 2,Y\r\n 3,Z\r\n",
       "~\n~ 0: DEVICE_NAME X -> \"\"\n+ 3"},
      {"A-names.csv", std::nullopt, devices + "0,X\r\n", "+\n+ 0"},
      {"A-names.csv", devices + "0,X\r\n", std::nullopt, "-\n- 0"},
      {"A-names.csv", devices + "00,X\r\n", devices + " 0,X\r\n",
       "~\n= Formatting only (spaces, number format)"},
      {"A-names.csv", devices, devices, "equal"},
      {"notes.txt", "a", "b", "~"},
  };
  for (const Case& one : cases) {
    EXPECT_EQ(linesOf(compareFile(one.file, one.before, one.after)), one.lines);
  }
}

}  // namespace
}  // namespace kova
