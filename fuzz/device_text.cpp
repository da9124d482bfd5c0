// SPDX-License-Identifier: MIT
// The device panel's text: lines, caret positions and names against lines that are split first.
#include <cstdint>
#include <string>
#include <vector>

#include "editing/device_panel.h"
#include "harness.h"

namespace kova::fuzz {
namespace {

std::vector<std::string> split(const std::string& text) {
  std::vector<std::string> lines(text.empty() ? 0 : 1);
  for (std::size_t at = 0; at < text.size(); ++at) {
    const bool end = text.compare(at, 2, "\r\n") == 0;
    if (end) lines.emplace_back();
    if (end) ++at;
    if (!end) lines.back() += text[at];
  }
  return lines;
}

void checkNames(const std::string& text, std::size_t count) {
  const auto lines = split(text);
  DeviceNames names(count);
  require(UpdateDevicesFile(text, names) == static_cast<int>(count), "every entry is set");
  std::string shown;
  for (std::size_t k = 0; k < count; ++k) {
    const std::string number = " " + std::to_string(k);
    require(names[k] == (k < lines.size() ? lines[k] : "DEVICE" + number), "line k names device k");
    shown += displayName(names, k) + "\r\n";
    if (names[k].empty()) names[k] = "Device" + number;
  }
  DeviceNames again(count);
  UpdateDevicesFile(shown, again);
  require(again == names, "names that are shown are taken back");
}

}  // namespace

void check(std::string_view bytes) {
  if (bytes.empty()) return;
  const std::string text(bytes.substr(1));
  const auto lines = split(text);
  std::size_t start = 0;
  for (std::size_t k = 0; k < lines.size(); ++k) {
    const auto line = static_cast<std::int16_t>(k);
    require(findSelStartAtLine(text, line) == static_cast<int>(start), "a line has its start");
    require(findLineFromMultilineText(text, start) == line, "its start is in the line");
    start += lines[k].size() + 2;
    require(findLineFromMultilineText(text, start - 2) == line, "its end is in the line");
  }
  const auto beyond = static_cast<std::int16_t>(lines.size() + 1);
  require(findSelStartAtLine(text, beyond) == static_cast<int>(start), "none is behind all lines");
  checkNames(text, static_cast<std::uint8_t>(bytes[0]));
}

}  // namespace kova::fuzz
