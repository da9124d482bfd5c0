// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include "tables/alarm_table.h"
#include "tables/history_table.h"

namespace kova::test {

const std::string historyHeader =
    "Index,Export Name,Local Name,Property,Device,Data Length,Format,Heartbeat,Polling Rate,"
    "Archive Rate,Tolerance,Short Depth,Long Depth\r\n";
const std::string historyRow =
    " 1,MYSRV,MYSRV,VOLTAGE,#0, 10,FLOAT.CHANNEL, 18000, 1000, 10,10%, 600, 1\r\n";
const std::string alarmHeader =
    "LocalName,DeviceName,property,size,Format,severity,alarmSystem,HIGH,LOW,HIGHWARN,LOWWARN,"
    "MASK,NORMAL\r\n";
const std::string alarmRow = "MYSRV,#0,VOLTAGE, 1,FLOAT, 10, 0, 40.5,-3, 0, .25,0,0\r\n";

std::string repeated(const std::string& line, int count) {
  std::string lines;
  while (count-- > 0) lines += line;
  return lines;
}

struct TableFiles : ::testing::Test {
  ReadResult readHistory(const std::string& content) {
    return ReadHistoryFile(content, history, historyCount);
  }
  ReadResult readAlarms(const std::string& content) {
    return ReadAlarmWatchFile(content, alarms, alarmCount);
  }
  std::string historyWritten(std::int16_t count) const {
    WriteHistoryFile(put, {}, history, count, form);
    return written;
  }
  std::string alarmsWritten() const {
    WriteAlarmWatchFile(put, {}, alarms, alarmCount);
    return written;
  }

  FormTexts form{.exportName = "S",
                 .localName = "MYSRVLONG",
                 .propertyName = "P",
                 .outputSize = "2",
                 .historyDevice = "#1",
                 .archiveRate = "7",
                 .pollingRate = "6",
                 .heartbeat = "5",
                 .shortDepth = "8",
                 .longDepth = "9",
                 .tolerance = "1",
                 .outputFormat = "short"};
  std::string written;
  ReplaceFile put = [&](const Path&, std::string_view content) { written = content; };
  HistoryTable history;
  AlarmTable alarms;
  std::int16_t historyCount = 0;
  std::int16_t alarmCount = 0;
};

TEST_F(TableFiles, HistoryRowsComeBackAndTheFormIsAdded) {
  const std::string added = ",S,MYSRVL,P,#1, 2,short, 5, 6, 7,1, 8, 9\r\n";
  EXPECT_FALSE(readHistory(historyHeader + historyRow).stop);
  EXPECT_EQ(historyWritten(1), historyHeader + historyRow + " 2" + added);
  EXPECT_EQ(historyWritten(0), historyHeader + " 0" + added);
  form.archiveRate.clear();
  EXPECT_THROW(historyWritten(0), Failure);

  history[0].propertyName = "P";
  form.localName = "MYSRV";
  EXPECT_EQ(findHistoryOf(history, 1, form), nullptr) << "of another server";
  form.exportName = "MYSRV";
  EXPECT_EQ(findHistoryOf(history, 1, form), &history[0]);
}

TEST_F(TableFiles, HistoryLimits) {
  EXPECT_EQ(readHistory(historyHeader + repeated(historyRow, 1002)).stop.value().line, 1003U);
  EXPECT_EQ(historyCount, 1001);
  EXPECT_EQ(readHistory("INDEX,HEARTBEAT\r1,x\r2,3e9\r").stop.value().line, 3U);
  EXPECT_EQ(historyCount, 1);
  readHistory("long depth,index\r12,32767\r\r");
  EXPECT_EQ(historyCount, 2) << "an empty line is a row";
  EXPECT_EQ(history[0].longDepth, 12);
  EXPECT_THROW(historyWritten(1), Failure) << "no free index";
}

TEST_F(TableFiles, AlarmRowsComeBackAndMissingColumnsLeaveWhatTheyHeld) {
  EXPECT_FALSE(readAlarms(alarmHeader + alarmRow + "\r\n,#0,P\r\nL\r\n").stop);
  EXPECT_EQ(alarmCount, 1);
  EXPECT_EQ(alarmsWritten(), alarmHeader + alarmRow);
  readAlarms("LOCAL_NAME,DEVICE,PROPERTY,SIZE,FORMAT,SEVERITY,ALARMSYSTEM\rL,D,P,2,F,3,4");
  EXPECT_EQ(alarmsWritten(), alarmHeader + "L,D,P, 2,F, 3, 4, 40.5,-3, 0, .25,0,0\r\n");
  readAlarms("local name,LOCALNAME,property\rL,M,P");
  EXPECT_EQ(alarmsWritten(), alarmHeader + "L,,P, 0,, 0, 0, 40.5,-3, 0, .25,0,0\r\n");
}

TEST_F(TableFiles, AlarmLimits) {
  EXPECT_EQ(readAlarms("LOCALNAME,PROPERTY,SEVERITY\rL,P,1\rL,P,40000\rL,P,1").stop->line, 3U);
  EXPECT_EQ(alarmCount, 1);
  EXPECT_FALSE(readAlarms(alarmHeader + repeated(alarmRow, 1001) + "\r\n").stop);
  EXPECT_TRUE(readAlarms(alarmHeader + repeated(alarmRow, 1002)).stop);
  EXPECT_EQ(alarmCount, 1001);
  alarmCount = 0;
  written = "untouched";
  EXPECT_EQ(alarmsWritten(), "untouched") << "without a row there is no table";
}

}  // namespace kova::test
