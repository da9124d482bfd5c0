// SPDX-License-Identifier: MIT
#include "editing/add_remove.h"

#include <algorithm>
#include <string>

#include "core/data_formats.h"
#include "core/status.h"
#include "editing/commit.h"
#include "editing/selection.h"
#include "tables/number_text.h"

namespace kova {
namespace {

constexpr const char* lineEnd = "\r\n";

/// Size and format of one direction, or "none". `arrayType` is the text of the array type, if any.
std::string dataText(const Wizard& wizard, const TextField& size, const DropDownList& format,
                     const std::string& arrayType) {
  if (textValue(size.text()) == 0 || format.text() == "NULL") return "none";
  return size.text() + " " + selectedFormatName(wizard, format) + " values" + arrayType;
}

std::string arrayTypeInBrackets(const Wizard& wizard) {
  const std::string suffix = arrayTypeSuffix(wizard);
  return suffix.empty() ? suffix : " (" + suffix.substr(1) + ")";
}

std::string yesOrNo(const CheckBox& box) {
  return box.ticked() ? "Yes" : "No";
}

/// The property in the form, as the confirmation shows it.
std::string confirmationText(const Wizard& wizard) {
  const Form1& form = wizard.form;
  std::string text =
      std::string("Adding the following Property information : ") + lineEnd + lineEnd;
  const auto line = [&](const char* label, const std::string& value) {
    text.append(" ").append(label).append(value).append(lineEnd);
  };
  line("Export Name : ", form.ExportName.text());
  line("Local Name : ", significantLocalName(wizard));
  line("Property Name : ", form.PropertyName.text());
  line("Return Data  : ",
       dataText(wizard, form.OutputDataSize, form.OutputDataFormat, arrayTypeInBrackets(wizard)));
  line("Input Data  : ", dataText(wizard, form.InputDataSize, form.InputDataFormat, {}));
  line("Property Access : ", form.AccessMode.text());
  line("Maximum Value : ", form.MaxValue.text());
  line("Minimum Value : ", form.MinValue.text());
  line("Data Units : ", form.Units.text());
  line("Description : ", form.PropertyDescription.text());
  line("Keep History: ", yesOrNo(form.HistoryCheck));
  line("Use Alarm Watch : ", yesOrNo(form.AlarmWatchCheck));
  line("Has Device list : ", yesOrNo(form.DeviceListCheck));
  return text;
}

}  // namespace

void AddProperty_Click(Wizard& wizard) {
  const Answer answer = wizard.messageBox({.text = confirmationText(wizard),
                                           .buttons = Buttons::okCancel,
                                           .title = "Add New Property with these characteristics ?",
                                           .enter = Answer::ok});
  if (answer == Answer::ok) updatePropertyList(wizard, true);
}

void EditCmd_Click(Wizard& wizard) {
  updatePropertyList(wizard, false);
}

void removeProperty(Wizard& wizard, std::int32_t index) {
  Project& project = wizard.state.project;
  wizard.form.PropertyList.remove(index);
  const auto rows = project.exportTable.begin();
  std::move(rows + index + 1, rows + project.exportCount, rows + index);
  --project.exportCount;
  // The freed row, and the pending row after it, which may hold a device list.
  const auto freed = rows + project.exportCount;
  std::fill_n(freed, std::min<std::ptrdiff_t>(2, project.exportTable.end() - freed),
              PropertyRecord{});
}

void RemoveProperty_Click(Wizard& wizard) {
  const std::int32_t selected = wizard.form.PropertyList.selectedIndex();
  if (selected == ListBox::none) reportNothingRemoved(wizard);
  if (selected == ListBox::none || selected >= wizard.state.project.exportCount) return;
  const PropertyRecord& row = exportRow(wizard, selected);
  const std::string name = row.propertyName;
  const bool inForm = !wizard.form.ProcessCheck.ticked() && !formDiffersFrom(wizard, row);
  removeProperty(wizard, selected);
  reportRemoval(wizard, name, inForm);
}

void PropertyList_DblClick(Wizard& wizard) {
  fillPropertySelections(wizard);
  RemoveProperty_Click(wizard);
}

}  // namespace kova
