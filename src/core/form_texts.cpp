// SPDX-License-Identifier: MIT
#include "core/form_texts.h"

#include <algorithm>
#include <array>
#include <string>

#include "core/data_formats.h"

namespace kova {
namespace {

struct Labelled {
  FormValue value;
  Label Form1::*label;
};

constexpr std::array<Labelled, 14> labels = {{
    {FormValue::outputSize, &Form1::Label5},
    {FormValue::archiveRate, &Form1::Label13},
    {FormValue::pollingRate, &Form1::Label14},
    {FormValue::heartbeat, &Form1::Label15},
    {FormValue::shortDepth, &Form1::Label16},
    {FormValue::longDepth, &Form1::Label17},
    {FormValue::alarmSystem, &Form1::Label21},
    {FormValue::severity, &Form1::Label22},
    {FormValue::countThreshold, &Form1::Label23},
    {FormValue::high, &Form1::Label24},
    {FormValue::low, &Form1::Label25},
    {FormValue::highWarn, &Form1::Label26},
    {FormValue::lowWarn, &Form1::Label27},
    {FormValue::numSteps, &Form1::NumStepsLabel},
}};

std::string singleValueFormat(const Wizard& wizard) {
  const std::string& name = selectedFormatName(wizard, wizard.form.OutputDataFormat);
  return std::string(singleValueName(name)) + arrayTypeSuffix(wizard);
}

}  // namespace

HistoryForm historyForm(const Wizard& wizard) {
  const Form1& form = wizard.form;
  return {.exportName = form.ExportName.text(),
          .localName = form.LocalName.text(),
          .propertyName = form.PropertyName.text(),
          .device = form.historyDeviceText.text(),
          .outputSize = form.OutputDataSize.text(),
          .singleValueFormat = singleValueFormat(wizard),
          .tableFormat = selectedFormatName(wizard, form.OutputDataFormat),
          .heartbeat = form.ArchiveHeartbeatText.text(),
          .pollingRate = form.PollRateText.text(),
          .archiveRate = form.ArchiveRateText.text(),
          .tolerance = form.toleranceText.text(),
          .shortDepth = form.ShortDepthText.text(),
          .longDepth = form.LongDepthText.text()};
}

AlarmForm alarmForm(const Wizard& wizard) {
  const Form1& form = wizard.form;
  return {.localName = form.LocalName.text(),
          .propertyName = form.PropertyName.text(),
          .device = form.almwDeviceText.text(),
          .outputSize = form.OutputDataSize.text(),
          .format = singleValueFormat(wizard),
          .alarmSystem = form.AlmSystemText.text(),
          .severity = form.almSeverityText.text(),
          .countThreshold = form.almCountThreshText.text(),
          .high = form.almHiText.text(),
          .low = form.almLoText.text(),
          .highWarn = form.almHiWarnText.text(),
          .lowWarn = form.almLoWarnText.text(),
          .mask = form.almMaskText.text(),
          .normal = form.almNormalText.text()};
}

std::string_view labelOf(const Wizard& wizard, FormValue value) {
  const auto* const labelled = std::find_if(
      labels.begin(), labels.end(), [&](const Labelled& known) { return known.value == value; });
  if (labelled == labels.end()) return {};
  return (wizard.form.*(labelled->label)).caption();
}

}  // namespace kova
