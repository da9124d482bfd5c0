// SPDX-License-Identifier: MIT
#include "desktop/access_keys.h"

#include <algorithm>
#include <array>
#include <utility>

namespace kova {
namespace {

// Alt and G open the menu. There are more labels than letters: those that come first in the
// engineer's work have one, the Tab key reaches all.
constexpr std::array<std::pair<std::string_view, char>, 27> keys{{
    {"AddProperty", 'A'},
    {"RemoveProperty", 'R'},
    {"EditCmd", 'E'},
    {"Command1", 'D'},
    {"vbProject", 'J'},
    {"cProject", 'C'},
    {"DeviceListCheck", 'L'},
    {"AlarmWatchCheck", 'W'},
    {"HistoryCheck", 'K'},
    {"ProcessCheck", 'S'},
    {"ServerOption", 'V'},
    {"propertyOption", 'T'},
    {"Label1", 'X'},   // Export Name
    {"Label2", 'O'},   // Local Name
    {"Label3", 'B'},   // Number of Devices
    {"Label4", 'P'},   // Property Name
    {"Label8", 'I'},   // Description
    {"Label9", 'M'},   // Max Value
    {"Label10", 'N'},  // Min Value
    {"Label11", 'U'},  // Units
    {"Label7", 'F'},   // Data Format
    {"Label5", 'Z'},   // Max Data Size
    {"Label12", 'Y'},  // Output ArrayType
    {"Label24", 'H'},  // Value too high
    // The guided dialog, a window of its own.
    {"nextParam", 'N'},
    {"lastParam", 'B'},
    {"DoneParam", 'D'},
}};

}  // namespace

char accessKey(std::string_view name) {
  const auto found =
      std::find_if(keys.begin(), keys.end(), [&](const auto& key) { return key.first == name; });
  return found == keys.end() ? '\0' : found->second;
}

}  // namespace kova
