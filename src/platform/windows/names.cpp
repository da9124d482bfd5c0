// SPDX-License-Identifier: MIT
#include <windows.h>
// The system's own header stands ahead of it.
#include <bcrypt.h>

#include <array>

#include "platform/native_files.h"
#include "platform/temporary_name.h"
#include "platform/windows/calls.h"

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

DWORD nameLimit(const Path& folder) {
  std::wstring volume(MAX_PATH + folder.native.size(), L'\0');
  const auto size = static_cast<DWORD>(volume.size());
  DWORD limit = native::usualNameLimit;
  if (::GetVolumePathNameW(native::nameOf(folder).c_str(), volume.data(), size) != FALSE) {
    ::GetVolumeInformationW(volume.c_str(), nullptr, 0, nullptr, &limit, nullptr, nullptr, 0);
  }
  return limit;
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

bool native::nameFits(const Path& folder, std::string_view name) {
  if (wide(name).size() > nameLimit(folder)) return false;
  const std::wstring entry = nameOf(folder / name);
  if (::GetFileAttributesW(entry.c_str()) != INVALID_FILE_ATTRIBUTES) return true;
  const DWORD error = ::GetLastError();
  return error == ERROR_FILE_NOT_FOUND || error == ERROR_PATH_NOT_FOUND ||
         error == ERROR_ACCESS_DENIED;
}

std::string native::beginningOf(std::string_view leaf, const Path& /*folder*/) {
  std::wstring beginning = wide(leaf).substr(0, roomInTemporaryName(usualNameLimit));
  // No half character.
  if (!beginning.empty() && IS_HIGH_SURROGATE(beginning.back())) beginning.pop_back();
  return narrow(beginning);
}

std::uint64_t native::randomNumber() {
  std::uint64_t random = 0;
  auto* const bytes = reinterpret_cast<UCHAR*>(&random);
  if (::BCryptGenRandom(nullptr, bytes, sizeof random, BCRYPT_USE_SYSTEM_PREFERRED_RNG) != 0) {
    throw Failure("The system gives no random number");
  }
  return random;
}

}  // namespace kova
