// SPDX-License-Identifier: MIT
// The layer of a start: a window of the given size with 87 bare widgets. A third argument makes
// them labels and fields of one line that show it.
#include <QApplication>
#include <QLabel>
#include <QLineEdit>
#include <memory>

int main(int argc, char** argv) {
  const QApplication application(argc, argv);
  QWidget window;
  window.resize(std::stoi(argv[1]), std::stoi(argv[2]));
  for (int i = 0; i < 87; ++i) {
    std::unique_ptr<QWidget> made;
    if (argc == 3) made = std::make_unique<QWidget>(&window);
    if (argc > 3 && i % 3 == 0) made = std::make_unique<QLineEdit>(argv[3], &window);
    if (argc > 3 && i % 3 != 0) made = std::make_unique<QLabel>(argv[3], &window);
    made.release()->setGeometry(i % 9 * 90, i / 9 * 60, 80, 24);
  }
  window.show();
  return QApplication::exec();
}
