// SPDX-License-Identifier: MIT
#include "tables/device_files.h"

#include <algorithm>
#include <array>
#include <limits>

#include "tables/number_text.h"

namespace kova {

namespace {

constexpr std::size_t largestCount = std::numeric_limits<std::int16_t>::max();

std::string numberText(std::size_t index) {
  return signedNumberText(static_cast<std::int32_t>(index));
}

// One entry more than devices, so that files that number devices from 1 fit as well.
std::size_t sizeFor(std::string_view numDevices) {
  const std::int16_t count = toInt16(textValue(numDevices));
  if (count < 0) throw Failure("the number of devices is negative");
  return static_cast<std::size_t>(count) + 1;
}

std::vector<std::string_view> panelLines(std::string_view text) {
  constexpr std::string_view lineEnd = "\r\n";
  std::vector<std::string_view> lines;
  if (text.empty()) return lines;
  for (auto end = text.find(lineEnd); end != std::string_view::npos; end = text.find(lineEnd)) {
    lines.push_back(text.substr(0, end));
    text.remove_prefix(end + lineEnd.size());
  }
  lines.push_back(text);
  return lines;
}

// False if the number is out of range.
bool store(DeviceNames& devNames, std::int16_t number, std::string_view name, std::int16_t rows) {
  if (number < 0 || static_cast<std::size_t>(number) >= devNames.size()) return false;
  if (rows == largestCount) throw Failure("the file has too many rows");
  devNames[static_cast<std::size_t>(number)] = name;
  return true;
}

}  // namespace

std::string serverNamesFile(std::string_view localName) {
  return std::string(localName).append(devicesEnding);
}

std::string namesFile(std::string_view propertyName) {
  return std::string(propertyName).append(namesEnding);
}

std::span<const ColumnFacts> deviceColumns() {
  static constexpr std::array facts = {
      ColumnFacts{.tag = deviceNumberTag, .kind = FieldKind::whole},
      ColumnFacts{.tag = deviceNameTag}};
  return facts;
}

ReadResult ReadDevicesFile(std::string_view content, std::string_view numDevices,
                           DeviceNames& devNames) {
  bool headerSeen = false;
  std::int16_t numberColumn = -1;
  std::int16_t nameColumn = -1;
  const auto sizeNames = [&] { devNames.assign(sizeFor(numDevices), std::string()); };
  const auto header = [&](std::string_view line) {
    headerSeen = true;
    sizeNames();
    numberColumn = getCsvColumn(line, deviceNumberTag);
    nameColumn = getCsvColumn(line, deviceNameTag);
  };
  ReadResult result = readTable(content, header, [&](const CsvFields& fields, std::int16_t rows) {
    const std::int16_t number = toInt16(textValue(getCsvField(fields, numberColumn)));
    return store(devNames, number, getCsvField(fields, nameColumn), rows);
  });
  try {
    if (!headerSeen) sizeNames();
  } catch (const Failure& failure) {
    if (!result.stop) result.stop = ReadStop{1, failure.what()};
  }
  return result;
}

std::int16_t UpdateDevicesFile(std::string_view panelText, DeviceNames& devNames) {
  const auto lines = panelLines(panelText);
  for (std::size_t index = 0; index < devNames.size(); ++index) {
    devNames[index] =
        index < lines.size() ? std::string(lines[index]) : "DEVICE" + numberText(index);
  }
  // A count that does not fit the type is 0.
  return devNames.size() > largestCount ? std::int16_t{0}
                                        : static_cast<std::int16_t>(devNames.size());
}

std::size_t linesBeyond(std::string_view panelText, const DeviceNames& devNames) {
  const auto lines = panelLines(panelText);
  const auto first = std::min(devNames.size(), lines.size());
  const auto holdsSomething = [](std::string_view line) { return !line.empty(); };
  return static_cast<std::size_t>(std::count_if(lines.begin() + static_cast<std::ptrdiff_t>(first),
                                                lines.end(), holdsSomething));
}

void WriteDevicesFile(const ReplaceFile& replace, const Path& file, DeviceNames& devNames) {
  std::string content =
      csvLine(std::array{std::string(deviceNumberTag), std::string(deviceNameTag)});
  for (std::size_t index = 0; index < devNames.size(); ++index) {
    if (devNames[index].empty()) devNames[index] = displayName(devNames, index);
    const std::string number = numberText(index);
    appendCsvLine(content, std::array<std::string_view, 2>{number, devNames[index]});
  }
  replace(file, content);
}

std::string displayName(const DeviceNames& devNames, std::size_t index) {
  return devNames.at(index).empty() ? "Device" + numberText(index) : devNames[index];
}

}  // namespace kova
