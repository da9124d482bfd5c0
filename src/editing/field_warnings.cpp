// SPDX-License-Identifier: MIT
#include "editing/field_warnings.h"

#include <algorithm>
#include <array>
#include <string_view>

#include "tables/number_text.h"

namespace kova {
namespace {

void asInt16(const std::string& text) {
  toInt16(textValue(text));
}
void asInt32(const std::string& text) {
  toInt32(textValue(text));
}
void asSingle(const std::string& text) {
  toSingle(textValue(text));
}
void asStrictInt16(const std::string& text) {
  toInt16(strictValue(text));
}

/// A field of a number and the conversion that a commit or a handler puts it through.
struct NumberField {
  TextField Form1::*field;
  void (*convert)(const std::string&);
};

constexpr std::array<NumberField, 15> numberFields = {{
    {&Form1::NumDevices, asInt16},
    {&Form1::OutputDataSize, asInt32},
    {&Form1::InputDataSize, asInt32},
    {&Form1::ArchiveRateText, asInt32},
    {&Form1::PollRateText, asInt32},
    {&Form1::ArchiveHeartbeatText, asInt32},
    {&Form1::ShortDepthText, asInt32},
    {&Form1::LongDepthText, asInt32},
    {&Form1::AlmSystemText, asInt16},
    {&Form1::almSeverityText, asStrictInt16},
    {&Form1::almCountThreshText, asInt16},
    {&Form1::almHiText, asSingle},
    {&Form1::almLoText, asSingle},
    {&Form1::almHiWarnText, asSingle},
    {&Form1::almLoWarnText, asSingle},
}};

bool fails(const std::string& text, void (*convert)(const std::string&)) {
  try {
    convert(text);
    return false;
  } catch (const Failure&) {
    return true;
  }
}

std::string numberWarning(const std::string& text, void (*convert)(const std::string&)) {
  if (fails(text, convert)) return "This is not a number that the table can hold.";
  if (fails(text, [](const std::string& number) { strictValue(number); })) {
    return "This is not a number: it counts as " + plainNumberText(textValue(text)) + ".";
  }
  return {};
}

std::string localNameWarning(const std::string& text) {
  if (text.size() > localNameLength) {
    return "Only the first 6 characters count: " + text.substr(0, localNameLength);
  }
  if (text.find(pathSeparator) != std::string::npos) {
    return "A name with a separator names no folder in the repository.";
  }
  return {};
}

/// Fields whose texts stand in a table between commas.
constexpr std::array<TextField Form1::*, 7> tableTexts = {
    &Form1::ExportName,        &Form1::LocalName,      &Form1::PropertyName,       &Form1::Units,
    &Form1::historyDeviceText, &Form1::almwDeviceText, &Form1::PropertyDescription};

}  // namespace

std::string fieldWarning(const Wizard& wizard, const TextField& field) {
  const Form1& form = wizard.form;
  const auto isField = [&](TextField Form1::*member) { return &(form.*member) == &field; };
  const auto* const number =
      std::find_if(numberFields.begin(), numberFields.end(),
                   [&](const NumberField& known) { return isField(known.field); });
  if (number != numberFields.end()) return numberWarning(field.text(), number->convert);
  if (&field == &form.LocalName) {
    std::string warning = localNameWarning(field.text());
    if (!warning.empty()) return warning;
  }
  const bool standsInTable = std::any_of(tableTexts.begin(), tableTexts.end(), isField);
  if (standsInTable && field.text().find(',') != std::string::npos) {
    return "The table is read back only up to the comma.";
  }
  return {};
}

}  // namespace kova
