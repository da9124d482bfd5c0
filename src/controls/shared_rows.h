// SPDX-License-Identifier: MIT
// Values and rows that several moments of a session have in common, so that a moment costs what has
// changed since the one before.
#pragma once

#include <algorithm>
#include <cstddef>
#include <memory>
#include <unordered_set>
#include <utility>
#include <vector>

namespace kova {

template <class Value>
using Shared = std::shared_ptr<const Value>;

/// The value of the moment before if it is still the same, or a copy.
template <class Value>
Shared<Value> shared(const Value& now, const Shared<Value>& before) {
  return before && *before == now ? before : std::make_shared<const Value>(now);
}

/// The rows of a table at one moment. Never null.
template <class Row>
class SharedRows {
 public:
  SharedRows() = default;
  /// Rows equal to those of the moment before are the same objects: rows before an inserted or
  /// removed one are found from the start, rows after it from the end.
  SharedRows(const std::vector<Row>& rows, const SharedRows& before) {
    const auto& former = *before.rows_;
    Rows result(rows.size());
    const std::size_t common = std::min(rows.size(), former.size());
    std::size_t first = 0;
    for (; first < common && *former[first] == rows[first]; ++first) result[first] = former[first];
    if (first == rows.size() && first == former.size()) {
      rows_ = before.rows_;
      return;
    }
    std::size_t last = 0;
    for (; last < common - first; ++last) {
      const Shared<Row>& same = former[former.size() - 1 - last];
      if (!(*same == rows[rows.size() - 1 - last])) break;
      result[rows.size() - 1 - last] = same;
    }
    for (std::size_t row = first; row + last < rows.size(); ++row) {
      result[row] = shared(rows[row], row < former.size() ? former[row] : nullptr);
    }
    rows_ = std::make_shared<const Rows>(std::move(result));
  }

  std::size_t size() const { return rows_->size(); }
  const Row& operator[](std::size_t index) const { return *(*rows_)[index]; }
  /// Both hold the same objects.
  bool isSame(const SharedRows& other) const { return rows_ == other.rows_; }
  bool isSameRow(std::size_t index, const SharedRows& other) const {
    return index < other.size() && (*rows_)[index] == (*other.rows_)[index];
  }
  /// Replaces the rows of a table, which keeps its memory.
  void copyTo(std::vector<Row>& rows) const {
    rows.resize(size());
    for (std::size_t row = 0; row < size(); ++row) rows[row] = (*this)[row];
  }

  /// Bytes that this moment needs in addition to `other`, with `bytesOf` those of a row.
  template <class BytesOf>
  std::size_t bytesBeyond(const SharedRows& other, BytesOf bytesOf) const {
    if (isSame(other)) return 0;
    std::unordered_set<const Row*> held;
    for (const Shared<Row>& row : *other.rows_) held.insert(row.get());
    std::size_t bytes = size() * sizeof(Shared<Row>);
    for (const Shared<Row>& row : *rows_) {
      if (!held.contains(row.get())) bytes += bytesOf(*row);
    }
    return bytes;
  }

 private:
  using Rows = std::vector<Shared<Row>>;

  static std::shared_ptr<const Rows> none() {
    static const auto empty = std::make_shared<const Rows>();
    return empty;
  }
  std::shared_ptr<const Rows> rows_ = none();
};

}  // namespace kova
