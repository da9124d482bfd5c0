// SPDX-License-Identifier: MIT
#include "tables/device_files.h"

#include <gtest/gtest.h>

namespace kova::test {

TEST(DeviceFiles, ReadingWritingAndThePanel) {
  const auto expectRead = [&](const std::string& content, const std::string& numDevices, int rows,
                              bool stops, const DeviceNames& expected) {
    DeviceNames names{"old"};
    const auto result = ReadDevicesFile(content, numDevices, names);
    EXPECT_EQ(result.rows, rows) << content;
    EXPECT_EQ(result.stop.has_value(), stops) << content;
    EXPECT_EQ(names, expected) << content;
  };
  const DeviceNames empty(3);
  expectRead(";c\r\ndevice_name,DEVICE_NUMBER\r\nC, 2\r\nA,0\r\nD,3\r\nM,-1\r\n", "2", 2, false,
             {"A", "", "C"});
  expectRead("DEVICE_NAME\rA\rB\r\r", "2", 3, false, empty);
  expectRead("DEVICE_NUMBER,DEVICE_NAME\r1,A\r40000,B\r0,C", "2", 1, true, {"", "A", ""});
  expectRead("", "2", 0, true, empty);
  expectRead(";", "1.5", 0, false, empty);
  expectRead(";", "-1", 0, true, {"old"});
  expectRead("X", "40000", 0, true, {"old"});
  DeviceNames names(4);
  EXPECT_EQ(UpdateDevicesFile("A\r\n B\r\n", names), 4);
  EXPECT_EQ(names, (DeviceNames{"A", " B", "", "DEVICE 3"}));
  std::string written;
  const ReplaceFile put = [&](const Path&, std::string_view content) { written = content; };
  WriteDevicesFile(put, {}, names);
  EXPECT_EQ(written,
            "DEVICE_NUMBER,DEVICE_NAME\r\n 0,A\r\n 1, B\r\n 2,Device 2\r\n 3,DEVICE 3\r\n");
  EXPECT_EQ(names[2], "Device 2");
  EXPECT_EQ(UpdateDevicesFile("", names), 4);
  EXPECT_EQ(names[0], "DEVICE 0");
}

}  // namespace kova::test
