// SPDX-License-Identifier: MIT
// A typed value that its field can't hold.
#pragma once

#include <string>
#include <string_view>

#include "platform/failure.h"

namespace kova {

/// Values of a form that a commit converts. The window knows which label stands beside each.
enum class FormValue {
  outputSize,
  archiveRate,
  pollingRate,
  heartbeat,
  shortDepth,
  longDepth,
  alarmSystem,
  severity,
  countThreshold,
  high,
  low,
  highWarn,
  lowWarn,
  numSteps,
  historyIndex  ///< no text: the table has no free index left
};

/// Names the value that could not be converted.
class ValueFailure : public Failure {
 public:
  ValueFailure(FormValue value, const std::string& reason) : Failure(reason), value_(value) {}
  FormValue value() const { return value_; }

 private:
  FormValue value_;
};

}  // namespace kova
