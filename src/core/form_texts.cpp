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
  TextField Form1::*field;
};

constexpr std::array<Labelled, 14> labels = {{
    {FormValue::outputSize, &Form1::Label5, &Form1::OutputDataSize},
    {FormValue::archiveRate, &Form1::Label13, &Form1::ArchiveRateText},
    {FormValue::pollingRate, &Form1::Label14, &Form1::PollRateText},
    {FormValue::heartbeat, &Form1::Label15, &Form1::ArchiveHeartbeatText},
    {FormValue::shortDepth, &Form1::Label16, &Form1::ShortDepthText},
    {FormValue::longDepth, &Form1::Label17, &Form1::LongDepthText},
    {FormValue::alarmSystem, &Form1::Label21, &Form1::AlmSystemText},
    {FormValue::severity, &Form1::Label22, &Form1::almSeverityText},
    {FormValue::countThreshold, &Form1::Label23, &Form1::almCountThreshText},
    {FormValue::high, &Form1::Label24, &Form1::almHiText},
    {FormValue::low, &Form1::Label25, &Form1::almLoText},
    {FormValue::highWarn, &Form1::Label26, &Form1::almHiWarnText},
    {FormValue::lowWarn, &Form1::Label27, &Form1::almLoWarnText},
    {FormValue::numSteps, &Form1::NumStepsLabel, &Form1::NumStepsText},
}};

/// Null for a value that no text makes.
const Labelled* find(FormValue value) {
  const auto* const found = std::find_if(
      labels.begin(), labels.end(), [&](const Labelled& known) { return known.value == value; });
  return found == labels.end() ? nullptr : found;
}

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
  const Labelled* labelled = find(value);
  if (labelled == nullptr) return {};
  return (wizard.form.*(labelled->label)).caption();
}

const TextField* fieldOf(const Wizard& wizard, FormValue value) {
  const Labelled* labelled = find(value);
  return labelled == nullptr ? nullptr : &(wizard.form.*(labelled->field));
}

}  // namespace kova
