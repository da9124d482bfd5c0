// SPDX-License-Identifier: MIT
#include "core/data_formats.h"

#include <algorithm>
#include <array>
#include <cctype>

namespace kova {
namespace {

constexpr std::array<std::string_view, 3> accessModes = {"READ", "WRITE", "READ|WRITE"};

constexpr std::array<std::string_view, 12> arrayTypes = {
    "UNKNOWN", "CHANNEL", "SPECTRUM", "STRUCTURED", "DOUBLE", "BLOB",
    "JPEG",    "MPEG",    "BMP",      "GIF",        "WAV",    "MP3"};

struct Format {
  std::string_view caption;
  std::string_view tableName;
};

// In the order of the lists.
constexpr std::array<Format, 35> formats = {{
    {"Double", "double"},     {"Integer", "short"},       {"Byte", "BYTE"},
    {"Long", "long"},         {"String", "char"},         {"Single", "float"},
    {"Pocalblk", "POCALBLK"}, {"Struct", "struct"},       {"NAME8", "NAME8"},
    {"NAME16", "NAME16"},     {"NAME16FI", "NAME16FI"},   {"BIT", "BIT"},
    {"HITTS", "HITTS"},       {"NAME32", "NAME32"},       {"FLTINT", "FLTINT"},
    {"LNGINT", "LNGINT"},     {"DBLINT", "DBLINT"},       {"SHTINT", "SHTINT"},
    {"TDS", "TDS"},           {"NAME48", "NAME48"},       {"NAME8I", "NAME8I"},
    {"NAME16I", "NAME16I"},   {"NAME32I", "NAME32I"},     {"NAME48I", "NAME48I"},
    {"USTRING", "USTRING"},   {"FLTFLTINT", "FLTFLTINT"}, {"FILTER", "FILTER"},
    {"IFFF", "IFFF"},         {"ADDRESS", "ADDRESS"},     {"WINDOW", "WINDOW"},
    {"POINT", "POINT"},       {"TDSI", "TDSI"},           {"BOOLEAN", "BOOLEAN"},
    {"DEFAULT", "DEFAULT"},   {"NULL", "NULL"},
}};

constexpr std::int16_t nullIndex = 34;
constexpr std::string_view nullFormat = "NULL";

constexpr std::int16_t codeBase = 512;
constexpr std::uint8_t noFormat = 255;

// Code names from 512 on.
constexpr std::array<std::string_view, 48> codeNames = {
    "DOUBLE",       "SHORT",        "BYTE",         "LONG",          // 512
    "TEXT",         "FLOAT",        "NULL",         "STRUCT",        // 516
    "NAME8",        "NAME16",       "NAME16FI",     "BIT",           // 520
    "HITTS",        "NAME32",       "FLTINT",       "LNGINT",        // 524
    "DBLINT",       "NULL",         "INTFLTINT",    "NAME48",        // 528
    "NAME8I",       "NAME16I",      "NAME32I",      "NAME48I",       // 532
    "USTRING",      "FLTFLTINT",    "FLTINTINT",    "INTFLTFLTFLT",  // 536
    "SPECTRUM",     "INTINTINTINT", "WINDOW",       "FLTFLT",        // 540
    "INTFLTSHTSHT", "BOOLEAN",      "INTINTFLTFLT", "FLTINTFLTINT",  // 544
    "NAME64",       "NAME64I",      "LNGDBL",       "NULL",          // 548
    "DBLDBL",       "NULL",         "NAME16II",     "INTINTINT",     // 552
    "NAME32DBLDBL", "NAME64DBLDBL", "NULL",         "XML",           // 556
};

// Has a code, but the name is not read.
constexpr std::string_view printedOnly = "LNGDBL";

struct ReadName {
  std::string_view name;
  std::uint8_t code;
};

// Names that are read in addition to the code names.
constexpr std::array<ReadName, 11> furtherNames = {{
    {"INTEGER", 1},
    {"SINGLE", 5},
    {"CHAR8", 8},
    {"CHAR16", 9},
    {"CHAR32", 13},
    {"INTINT", 15},
    {"TDS", 18},
    {"ADDRESS", 29},
    {"FWINDOW", 34},
    {"NAME16DBLDBL", 41},
    {"UNAME", 46},
}};

/// Name of a full code (from 512) or a short code (from 0).
std::string_view formatToString(std::int16_t code) {
  const int index = code < codeBase ? code : code - codeBase;
  if (index < 0 || index >= static_cast<int>(codeNames.size())) return nullFormat;
  return codeNames[static_cast<std::size_t>(index)];
}

}  // namespace

std::string upperCase(std::string_view text) {
  std::string upper(text);
  std::transform(upper.begin(), upper.end(), upper.begin(), [](char c) {
    return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
  });
  return upper;
}

std::string lowerCase(std::string_view text) {
  std::string lower(text);
  std::transform(lower.begin(), lower.end(), lower.begin(), [](char c) {
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
  });
  return lower;
}

void fillCombos(Wizard& wizard) {
  Form1& form = wizard.form;
  for (const std::string_view mode : accessModes) form.AccessMode.add(mode);
  form.AccessMode.select(0);
  for (const Format& format : formats) form.InputDataFormat.add(format.caption);
  form.InputDataFormat.select(nullIndex);
  for (const Format& format : formats) form.OutputDataFormat.add(format.caption);
  form.OutputDataFormat.select(0);
  for (const std::string_view type : arrayTypes) form.ArrayTypeCombo.add(type);
  form.ArrayTypeCombo.select(0);
  form.ArrayTypeCombo.setEnabled(false);
  std::transform(formats.begin(), formats.end(), wizard.state.formatNames.begin(),
                 [](const Format& format) { return std::string(format.tableName); });
}

bool isAccessMode(std::string_view text) {
  return std::find(accessModes.begin(), accessModes.end(), text) != accessModes.end();
}

std::uint8_t formatFromString(std::string_view name) {
  const std::string upper = upperCase(name);
  if (upper == nullFormat || upper == printedOnly) return noFormat;
  const auto further = std::find_if(furtherNames.begin(), furtherNames.end(),
                                    [&](const ReadName& known) { return known.name == upper; });
  if (further != furtherNames.end()) return further->code;
  const auto code = std::find(codeNames.begin(), codeNames.end(), upper);
  return code == codeNames.end() ? noFormat : static_cast<std::uint8_t>(code - codeNames.begin());
}

std::int16_t getFormatIndex(std::string_view fmt) {
  const std::string_view name = fmt.substr(0, fmt.find('.'));
  const auto format = std::find_if(formats.begin(), formats.end(),
                                   [&](const Format& known) { return known.tableName == name; });
  return format == formats.end() ? nullIndex : static_cast<std::int16_t>(format - formats.begin());
}

std::int16_t getArrayTypeIndex(std::string_view fmt) {
  const auto dot = fmt.find('.');
  if (dot == std::string_view::npos) return 0;
  const auto type = std::find(arrayTypes.begin(), arrayTypes.end(), upperCase(fmt.substr(dot + 1)));
  return type == arrayTypes.end() ? std::int16_t{0}
                                  : static_cast<std::int16_t>(type - arrayTypes.begin());
}

std::int16_t sngFormat(std::int16_t fmt) {
  constexpr std::int16_t longCode = 515;
  constexpr std::int16_t floatCode = 517;
  switch (fmt) {
    case 513:  // SHORT
    case 515:  // LONG
    case 527:  // LNGINT
    case 541:  // INTINTINTINT
    case 555:  // INTINTINT
      return longCode;
    case 520:  // NAME8
    case 521:  // NAME16
    case 525:  // NAME32
    case 531:  // NAME48
    case 548:  // NAME64
      return fmt;
    default:
      return floatCode;
  }
}

std::string_view singleValueName(std::string_view tableName) {
  const int code = codeBase + formatFromString(tableName);
  return formatToString(sngFormat(static_cast<std::int16_t>(code)));
}

const std::string& selectedFormatName(const Wizard& wizard, const DropDownList& list) {
  return wizard.state.formatNames.at(static_cast<std::size_t>(list.selectedIndex()));
}

std::string arrayTypeSuffix(const Wizard& wizard) {
  const DropDownList& types = wizard.form.ArrayTypeCombo;
  if (!types.enabled() || types.text() == arrayTypes.front()) return {};
  return '.' + types.text();
}

}  // namespace kova
