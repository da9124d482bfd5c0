// SPDX-License-Identifier: MIT
#include <windows.h>

#include <array>

#include "platform/file_system.h"

namespace kova {

namespace {

constexpr std::array<std::string_view, 8> devices{"CON", "PRN", "AUX",    "NUL",
                                                  "COM", "LPT", "CONIN$", "CONOUT$"};

bool isDevice(std::string_view name, std::string_view device) {
  const bool isNumbered = device == "COM" || device == "LPT";
  if (name.size() != device.size() + (isNumbered ? 1 : 0)) return false;
  if (isNumbered && (name.back() < '0' || name.back() > '9')) return false;
  return ::_strnicmp(name.data(), device.data(), device.size()) == 0;
}

}  // namespace

std::string_view faultOfName(std::string_view text) {
  // A colon names a drive, or a stream of a file.
  const auto sign = text.find_first_of("\\/:");
  if (sign != std::string_view::npos) return text.substr(sign, 1);
  if (!text.empty() && (text.back() == '.' || text.back() == ' '))
    return text.substr(text.size() - 1);
  // With any ending, and with blanks ahead of it: "CON .csv".
  std::string_view base = text.substr(0, text.find('.'));
  base = base.substr(0, base.find_last_not_of(' ') + 1);
  for (const auto device : devices) {
    if (isDevice(base, device)) return base;
  }
  return {};
}

}  // namespace kova
