// SPDX-License-Identifier: MIT
// Small widgets that differ from the toolkit's in one point each.
#pragma once

#include <QGroupBox>
#include <QLabel>
#include <QPushButton>
#include <QRadioButton>
#include <QScrollArea>

#include "controls/controls.h"

namespace kova {

/// A frame that tells the model of presses on itself, not of those on what lies in it.
class FrameBox : public QGroupBox {
 public:
  FrameBox(Frame& frame, QWidget* parent) : QGroupBox(parent), frame_(frame) {}

 protected:
  void mousePressEvent(QMouseEvent* event) override;

 private:
  Frame& frame_;
};

/// A label that can be clicked. It is at least as high as its field, so that labels beside a frame
/// keep pace with the fields in it, and as the lines that it is meant for.
class CaptionLabel : public QLabel {
 public:
  CaptionLabel(Label& label, int lines, QWidget* parent);
  /// It stands beside `field`, which its access key reaches.
  void leadTo(QWidget& field);
  QSize sizeHint() const override { return withRoom(QLabel::sizeHint()); }
  QSize minimumSizeHint() const override { return withRoom(QLabel::minimumSizeHint()); }

 protected:
  void mouseReleaseEvent(QMouseEvent* event) override;

 private:
  QSize withRoom(QSize size) const;

  Label& label_;
  int lines_;
};

/// A button hardly wider than its caption. The style's smallest one would not leave the window room
/// on small screens. One that ends the work has weight: it fills its place, its caption in bold.
class ActionButton : public QPushButton {
 public:
  ActionButton(bool endsWork, QWidget* parent);
  QSize sizeHint() const override;

 private:
  int fewestCharacters_;
};

/// An option button that the Tab key reaches whether it is selected or not.
class OptionBox : public QRadioButton {
 public:
  using QRadioButton::QRadioButton;

 protected:
  void focusInEvent(QFocusEvent* event) override;
};

/// Holds labels beside a frame, its inner edges level with those of the frame.
class BesideFrame : public QWidget {
 public:
  BesideFrame(QGroupBox& frame, QWidget* parent);
  bool eventFilter(QObject* watched, QEvent* event) override;

 protected:
  void showEvent(QShowEvent* event) override;

 private:
  void align();

  QGroupBox& frame_;
};

/// Scrolls the form where the screen is too small for it, and asks for its whole size.
class FormArea : public QScrollArea {
 public:
  explicit FormArea(QWidget* parent);
  QSize sizeHint() const override;
};

}  // namespace kova
