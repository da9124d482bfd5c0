// SPDX-License-Identifier: MIT
#include "editing/field_warnings.h"

#include <algorithm>
#include <array>
#include <functional>
#include <limits>
#include <optional>
#include <string_view>

#include "editing/landings.h"
#include "editing/name_list_warnings.h"
#include "editing/range_prefix.h"
#include "tables/number_text.h"

namespace kova {
namespace {

constexpr std::string_view noNumber = "This is not a number";

std::string readsAs(std::string_view what, std::string_view text) {
  const std::string subject(what);
  return subject +
         (text.empty() ? " would be empty." : " would read as " + std::string(text) + '.');
}

/// Why a conversion fails, nothing if it doesn't.
template <class Convert>
std::optional<std::string> failureOf(Convert convert) {
  try {
    convert();
    return std::nullopt;
  } catch (const Failure& failure) {
    return failure.what();
  }
}

bool isNumber(const std::string& text) {
  return !failureOf([&] { strictValue(text); });
}

/// The first sentence that `say` has on a landing of the field.
std::string firstOf(const Wizard& wizard, const TextField& field,
                    const std::function<std::string(const Landing&)>& say) {
  for (const Landing& landing : landings()) {
    if (&(wizard.form.*landing.field) != &field) continue;
    std::string sentence = say(landing);
    if (!sentence.empty()) return sentence;
  }
  return {};
}

std::string refused(const Wizard& wizard, const TextField& field) {
  return firstOf(wizard, field, [&](const Landing& landing) -> std::string {
    if (!landsByCommit(wizard, landing)) return {};
    const auto why = failureOf([&] { stored(landing.conversion, field.text()); });
    return why ? *why + ": Add and Edit refuse it." : "";
  });
}

/// The name of the property names the file of its devices as well.
std::string namesNoList(const Wizard& wizard, const TextField& field) {
  const Form1& form = wizard.form;
  if (&field != &form.PropertyName) return {};
  if (!form.DeviceListCheck.ticked() || form.ProcessCheck.ticked()) return {};
  const std::string& name = field.text();
  if (name.find(pathSeparator) != std::string::npos) {
    return std::string("Done can't write the device list: a file name holds no ") + pathSeparator +
           '.';
  }
  const std::string_view readName = stripBlanks(name);
  if (readName == name) return {};
  return '"' + name + "-names.csv\" would not be found again: the blanks are lost.";
}

std::string lostRow(const Landing& landing, const std::string& landed) {
  constexpr std::string_view commentSigns = ";%#";
  const std::string file(nameOf(landing.file));
  if (commentSigns.find(landed.front()) == std::string_view::npos) {
    return file + " would be read back without this row.";
  }
  return "A row that begins with " + landed.substr(0, 1) + " is a comment: " + file +
         " would be read back without it.";
}

/// What takes fields of a row to other columns, if anything does.
std::string_view shifting(const std::string& landed) {
  if (landed.find(',') != std::string::npos) return "The comma moves the columns";
  return landed.find('"') != std::string::npos ? "The quote moves the columns" : "";
}

std::string cutFile(const Landing& landing, const std::string& landed) {
  const std::string why(shifting(landed));
  return (why.empty() ? why : why + ": ") + std::string(nameOf(landing.file)) +
         " would be read back only up to this row.";
}

/// What the table would hold after it has been written and read again, if that differs.
std::string misread(const Wizard& wizard, const Landing& landing, const std::string& landed) {
  const TrialRow row = rowWith(wizard, landing, landed);
  const std::size_t own = columnOf(row, landing.column);
  if (own >= row.fields.size()) return {};
  const Reading reading = readBack(landing.file, row);
  if (reading.stopped) return cutFile(landing, landed);
  if (!reading.found) return landed.empty() ? "" : lostRow(landing, landed);
  const auto differs = [&](std::size_t column) {
    return reading.fields.at(column) != stripBlanks(row.fields.at(column));
  };
  for (std::size_t column = own + 1; column < row.fields.size(); ++column) {
    if (!differs(column)) continue;
    return std::string(shifting(landed)) + " behind " + row.tags[own] + ": " +
           readsAs(row.tags[column], reading.fields[column]);
  }
  return differs(own) ? readsAs(row.tags[own], reading.fields[own]) : "";
}

std::string misreadAfterCommit(const Wizard& wizard, const TextField& field) {
  return firstOf(wizard, field, [&](const Landing& landing) -> std::string {
    if (!landsByCommit(wizard, landing)) return {};
    return misread(wizard, landing, stored(landing.conversion, field.text()));
  });
}

std::string wrongAtDone(const Wizard& wizard, const TextField& field) {
  return firstOf(wizard, field, [&](const Landing& landing) -> std::string {
    if (!landsAtDone(wizard, landing)) return {};
    const bool isText =
        landing.conversion == Conversion::asTyped || landing.conversion == Conversion::firstSix;
    if (isText) return misread(wizard, landing, stored(landing.conversion, field.text()));
    const auto why = failureOf([&] { strictValue(field.text()); });
    if (why) return *why + ": Done can't write " + std::string(historyFileName) + '.';
    return misread(wizard, landing, signedNumberText(field.text()));
  });
}

bool isPartOfRange(const Form1& form, const TextField& field) {
  return &field == &form.MinValue || &field == &form.MaxValue || &field == &form.Units;
}

std::string limitWarning(std::string_view name, const std::optional<std::string>& read,
                         std::string_view typed) {
  if (!read) return std::string(name) + " would not be read.";
  return *read == typed ? "" : readsAs(name, *read);
}

/// The limits, the units and the description share a column, from which a selection takes them.
std::string takenApart(const Wizard& wizard, const TextField& field) {
  const Form1& form = wizard.form;
  const bool isProcess = form.ProcessCheck.ticked();
  const bool hasPrefix = isProcess || isRange(form.MinValue.text(), form.MaxValue.text());
  if (&field == &form.PropertyDescription) {
    if (hasPrefix || !takeApart(field.text()).hasPrefix) return {};
    return "The brackets would be taken for a range.";
  }
  const bool isLimit = isProcess ? &field == &form.NumStepsText : isPartOfRange(form, field);
  if (!hasPrefix || !isLimit) return {};
  const DescriptionParts parts = takeApart(describe(wizard, field));
  if (!parts.hasPrefix) return "The range would be read as part of the description.";
  if (&field == &form.MinValue) return limitWarning("Min Value", parts.minimum, field.text());
  if (&field == &form.Units) {
    return limitWarning("Units", parts.units, field.text() == "none" ? "" : field.text());
  }
  return limitWarning("Max Value", parts.maximum, field.text());
}

std::string namesServer(const Wizard& wizard, const TextField& field) {
  if (&field != &wizard.form.LocalName) return {};
  if (field.text().size() > localNameLength) {
    return "Only the first 6 characters count: " + significantLocalName(wizard);
  }
  if (field.text().find(pathSeparator) != std::string::npos) {
    return "A name with a separator names no folder in the repository.";
  }
  return {};
}

std::string rounded(const std::string& text, double counted) {
  const std::string number = plainNumberText(counted);
  if (!isNumber(text)) return std::string(noNumber) + ": it counts as " + number + '.';
  return plainNumberText(strictValue(text)) == number ? "" : "This is rounded to " + number + '.';
}

/// The device lists of the server follow the number of devices as it is typed.
std::string sizesNoLists(const Wizard& wizard, const TextField& field) {
  if (&field != &wizard.form.NumDevices) return {};
  constexpr std::string_view unchanged = ": the list of device names stays as it is.";
  try {
    const std::int16_t devices = toInt16(textValue(field.text()));
    if (devices < 1) return "This is less than one device" + std::string(unchanged);
    return rounded(field.text(), devices);
  } catch (const Failure& failure) {
    return failure.what() + std::string(unchanged);
  }
}

std::string countsAsAnother(const Wizard& wizard, const TextField& field) {
  return firstOf(wizard, field, [&](const Landing& landing) -> std::string {
    const std::string& text = field.text();
    if (!landsByCommit(wizard, landing)) return {};
    if (landing.conversion == Conversion::numberTyped) {
      const auto why = failureOf([&] { strictValue(text); });
      return why ? *why + ": it goes to " + std::string(nameOf(landing.file)) + " as it stands."
                 : "";
    }
    if (landing.conversion < Conversion::asDouble) return {};
    return rounded(text, textValue(stored(landing.conversion, text)));
  });
}

std::string givesNoRange(const Wizard& wizard, const TextField& field) {
  const Form1& form = wizard.form;
  if (&field != &form.MinValue && &field != &form.MaxValue) return {};
  if (form.ProcessCheck.ticked() || field.text().empty() || isNumber(field.text())) return {};
  return std::string(noNumber) + ": the property gets no range.";
}

/// The gravest first.
constexpr std::array reasons = {refused,      namesNoList,     misreadAfterCommit,
                                wrongAtDone,  takenApart,      namesServer,
                                sizesNoLists, countsAsAnother, givesNoRange};

}  // namespace

std::string fieldWarning(const Wizard& wizard, const TextField& field) {
  if (&field == &wizard.form.deviceNamesInputText) return nameListWarning(wizard);
  for (const auto reason : reasons) {
    std::string sentence = reason(wizard, field);
    if (!sentence.empty()) return sentence;
  }
  return {};
}

}  // namespace kova
