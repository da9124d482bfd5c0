// SPDX-License-Identifier: MIT
#include "editing/landings.h"

#include <algorithm>
#include <array>
#include <vector>

#include "core/data_formats.h"
#include "core/form_texts.h"
#include "editing/range_prefix.h"
#include "tables/number_text.h"

namespace kova {
namespace {

// clang-format off
using enum TableFile;
using enum Conversion;

constexpr std::string_view descriptionColumn = "DESCRIPTION";
constexpr std::string_view propertyColumn = "PROPERTY";

constexpr auto table = std::to_array<Landing>({
    {&Form1::ExportName, exports, "EXPORT_NAME", asTyped, Condition::always},
    {&Form1::ExportName, history, "Export Name", asTyped, Condition::history},
    {&Form1::LocalName, exports, "LOCAL_NAME", firstSix, Condition::always},
    {&Form1::LocalName, history, "Local Name", firstSix, Condition::history},
    {&Form1::LocalName, alarms, "LocalName", firstSix, Condition::alarms},
    {&Form1::PropertyName, exports, propertyColumn, asTyped, Condition::always},
    {&Form1::PropertyName, history, "Property", asTyped, Condition::history},
    {&Form1::PropertyName, alarms, "property", asTyped, Condition::alarms},
    {&Form1::OutputDataSize, exports, "PROPERTY_SIZE", numberTyped, Condition::outputData},
    {&Form1::OutputDataSize, history, "Data Length", asInt32, Condition::history},
    {&Form1::OutputDataSize, alarms, "size", asInt32, Condition::alarms},
    {&Form1::InputDataSize, exports, "PROPERTY_INSIZE", numberTyped, Condition::inputData},
    {&Form1::NumDevices, exports, "NUM_MODULES", numberTyped, Condition::always},
    {&Form1::MinValue, exports, descriptionColumn, numberTyped, Condition::range},
    {&Form1::MaxValue, exports, descriptionColumn, numberTyped, Condition::range},
    {&Form1::Units, exports, descriptionColumn, asTyped, Condition::range},
    {&Form1::PropertyDescription, exports, descriptionColumn, asTyped, Condition::always},
    {&Form1::NumStepsText, exports, descriptionColumn, asTyped, Condition::process},
    {&Form1::NumStepsText, exports, "NUM_STEPS", asDouble, Condition::process},

    {&Form1::historyDeviceText, history, "Device", asTyped, Condition::history},
    {&Form1::ArchiveHeartbeatText, history, "Heartbeat", asInt32, Condition::history},
    {&Form1::PollRateText, history, "Polling Rate", asInt32, Condition::history},
    {&Form1::ArchiveRateText, history, "Archive Rate", asInt32, Condition::history},
    {&Form1::toleranceText, history, "Tolerance", asTyped, Condition::history},
    {&Form1::ShortDepthText, history, "Short Depth", asInt32, Condition::history},
    {&Form1::LongDepthText, history, "Long Depth", asInt32, Condition::history},

    {&Form1::almwDeviceText, alarms, "DeviceName", asTyped, Condition::alarms},
    {&Form1::almSeverityText, alarms, "severity", strictInt16, Condition::alarms},
    {&Form1::AlmSystemText, alarms, "alarmSystem", asInt16, Condition::alarms},
    {&Form1::almCountThreshText, alarms, "", asInt16, Condition::alarms},
    {&Form1::almHiText, alarms, "HIGH", asSingle, Condition::alarms},
    {&Form1::almLoText, alarms, "LOW", asSingle, Condition::alarms},
    {&Form1::almHiWarnText, alarms, "HIGHWARN", asSingle, Condition::alarms},
    {&Form1::almLoWarnText, alarms, "LOWWARN", asSingle, Condition::alarms},
    {&Form1::almMaskText, alarms, "MASK", asTyped, Condition::alarms},
    {&Form1::almNormalText, alarms, "NORMAL", asTyped, Condition::alarms},
});
// clang-format on

/// Characters by which a reader finds its way through a line or a description.
constexpr std::string_view signs = ",\";%#[]:\r\n";

/// The text without them, never empty: a row needs its names.
std::string plain(std::string text) {
  std::erase_if(text, [](char sign) { return signs.find(sign) != std::string_view::npos; });
  text = stripBlanks(text);
  return text.empty() ? "x" : text;
}

bool hasFormat(const Wizard& wizard, const DropDownList& format) {
  return selectedFormatName(wizard, format) != "NULL";
}

bool hasRange(const Form1& form) {
  return isRange(form.MinValue.text(), form.MaxValue.text());
}

/// Text of a column that the engineer chooses from a list.
struct Choice {
  std::string_view column;
  std::string text;
};

std::vector<Choice> choices(const Wizard& wizard, TableFile file) {
  const Form1& form = wizard.form;
  if (file != exports) return {{"Format", historyForm(wizard).singleValueFormat}};
  if (form.ProcessCheck.ticked()) {
    const ProcessTemplate& part = wizard.state.processTemplates.front();
    return {{"FORMAT", part.outputFormat}, {"INFORMAT", part.inputFormat}, {"ACCESS", part.access}};
  }
  return {{"FORMAT", selectedFormatName(wizard, form.OutputDataFormat) + arrayTypeSuffix(wizard)},
          {"INFORMAT", selectedFormatName(wizard, form.InputDataFormat)},
          {"ACCESS", form.AccessMode.text()}};
}

/// The history has a row for the form: it stays as it is, and none is added.
bool hasHistoryRow(const Wizard& wizard) {
  const Form1& form = wizard.form;
  const auto rows = liveRows(wizard.state.historyTable, wizard.state.historyCount);
  return std::any_of(rows.begin(), rows.end(), [&](const HistoryRecord& row) {
    return row.propertyName == form.PropertyName.text() && row.localName == form.LocalName.text() &&
           row.exportName == form.ExportName.text();
  });
}

/// What a field that is not looked at leaves in its column.
std::string harmless(const Landing& landing, const std::string& text) {
  try {
    if (landing.conversion == asTyped || landing.conversion == firstSix) {
      return stored(landing.conversion, plain(text));
    }
    strictValue(text);
    return stored(landing.conversion, text);
  } catch (const Failure&) {
    return "1";
  }
}

}  // namespace

std::span<const Landing> landings() {
  return table;
}

bool landsByCommit(const Wizard& wizard, const Landing& landing) {
  const Form1& form = wizard.form;
  const bool isProcess = form.ProcessCheck.ticked();
  switch (landing.condition) {
    case Condition::always:
      return true;
    case Condition::outputData:
      return !isProcess && hasFormat(wizard, form.OutputDataFormat);
    case Condition::inputData:
      return !isProcess && hasFormat(wizard, form.InputDataFormat);
    case Condition::range:
      return !isProcess && hasRange(form);
    case Condition::process:
      return isProcess;
    case Condition::history:
      return !isProcess && form.HistoryCheck.ticked() && !hasHistoryRow(wizard) &&
             wizard.state.historyCount < appendLimit;
    case Condition::alarms:
      return !isProcess && form.AlarmWatchCheck.ticked() && wizard.state.alarmCount < appendLimit;
  }
  return false;
}

bool landsAtDone(const Wizard& wizard, const Landing& landing) {
  if (landing.condition != Condition::history || hasHistoryRow(wizard)) return false;
  if (!landsByCommit(wizard, landing)) return wizard.state.historyInUse;
  // The row of a commit stands for the form, unless it holds just a part of the local name.
  return wizard.form.LocalName.text() != significantLocalName(wizard);
}

std::string stored(Conversion conversion, const std::string& text) {
  switch (conversion) {
    case asTyped:
    case numberTyped:
      return text;
    case firstSix:
      return storedLocalName(text);
    case asDouble:
      return plainNumberText(textValue(text));
    case asSingle:
      return signedNumberText(toSingle(textValue(text)));
    case asInt16:
      return signedNumberText(std::int32_t{toInt16(textValue(text))});
    case asInt32:
      return signedNumberText(toInt32(textValue(text)));
    case strictInt16:
      return signedNumberText(std::int32_t{toInt16(strictValue(text))});
  }
  return text;
}

std::string describe(const Wizard& wizard, const TextField& field) {
  const Form1& form = wizard.form;
  const auto part = [&](const TextField& one) {
    return &one == &field ? one.text() : plain(one.text());
  };
  std::string text = part(form.PropertyDescription);
  if (form.ProcessCheck.ticked()) {
    return rangePrefix("0", part(form.NumStepsText), "") +
           wizard.state.processTemplates.front().descriptionPrefix + text;
  }
  if (!hasRange(form)) return text;
  return rangePrefix(part(form.MinValue), part(form.MaxValue), part(form.Units)) + text;
}

TrialRow rowWith(const Wizard& wizard, const Landing& landing, const std::string& landed) {
  TrialRow row = emptyRow(landing.file);
  const auto put = [&](std::string_view column, const std::string& text) {
    const std::size_t index = columnOf(row, column);
    if (index < row.fields.size()) row.fields[index] = text;
  };
  for (const auto& [column, text] : choices(wizard, landing.file)) put(column, text);
  for (const Landing& other : table) {
    if (other.file != landing.file) continue;
    put(other.column, harmless(other, (wizard.form.*other.field).text()));
  }
  const TextField& field = wizard.form.*landing.field;
  if (landing.file == exports) put(descriptionColumn, describe(wizard, field));
  if (landing.column == descriptionColumn) return row;
  const bool isPart = landing.column == propertyColumn && wizard.form.ProcessCheck.ticked();
  put(landing.column, isPart ? landed + wizard.state.processTemplates.front().suffix : landed);
  return row;
}

}  // namespace kova
