// SPDX-License-Identifier: MIT
// Single acts of the engineer and their layers. Each run is one act; what leads up to it is not
// timed. Ahead of the options of the benchmark library stands the folder of the projects, which
// holds "ROWS/BENCH" for several numbers of rows, and "full/BENCH" with all files of device names.
#include <benchmark/benchmark.h>
#include <sys/stat.h>

#include <QApplication>
#include <QKeyEvent>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <algorithm>
#include <array>
#include <ctime>
#include <filesystem>
#include <fstream>
#include <functional>
#include <memory>
#include <utility>
#include <vector>

#include "desktop/main_view.h"
#include "review/differences.h"
#include "support/engineer.h"

namespace kova::measure {
namespace {

using test::Engineer;

/// All that the toolkit has put off, painting included.
void settle() {
  QCoreApplication::processEvents(QEventLoop::AllEvents, 10000);
}

void type(Engineer& engineer, const std::string& exportName) {
  engineer.field("ExportName").edit(exportName, exportName.size());
}

/// An engineer with the project of a home folder in memory, perhaps with its window on screen.
struct Desk {
  Desk(const std::string& home, bool withWindow) : engineer(home) {
    if (withWindow) view = std::make_unique<MainView>(engineer.program, page);
    engineer.start();
    type(engineer, "BENCH");
    settle();
  }
  Form1& form() { return engineer.program.wizard.form; }

  const CodePage page = CodePage::windows1252();
  Engineer engineer;
  std::unique_ptr<MainView> view;
};

/// Seconds that this process has worked. Unlike the clock on the wall it stands still while another
/// process has the processor.
double processorTime() {
  timespec time{};
  ::clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &time);
  return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) / 1e9;
}

void measure(const std::string& name, const std::function<void()>& prepare,
             const std::function<void()>& act) {
  const auto run = [=](benchmark::State& state) {
    for ([[maybe_unused]] auto one : state) {
      prepare();
      const double start = processorTime();
      act();
      state.SetIterationTime(processorTime() - start);
    }
  };
  benchmark::RegisterBenchmark(name.c_str(), run)->Iterations(1)->UseManualTime();
}

/// Entries lie hours apart: the backups of one never take the place of those of another.
void removeBackups(const std::string& folder) {
  std::vector<std::string> names;
  for (const auto& file : std::filesystem::directory_iterator(folder)) {
    names.push_back(file.path().filename().native());
  }
  std::sort(names.begin(), names.end());
  for (const std::string& name : names) {
    if (classify(name, names, test::FakeClock().now) != FileVerdict::inUse) {
      std::filesystem::remove(std::filesystem::path(folder) / name);
    }
  }
}

/// Typing `before` leads up to typing `name`.
void measureTyping(const std::string& act, Desk& desk, const std::string& before,
                   const std::string& name) {
  const auto typed = [&desk](const std::string& text) {
    type(desk.engineer, text);
    if (desk.view) settle();
  };
  const auto prepare = [&desk, typed, before] {
    removeBackups(desk.engineer.home + "/BENCH");
    typed(before);
  };
  measure(act, prepare, [typed, name] { typed(name); });
}

void measureCommas(const std::string& folder) {
  const auto count = [folder] {
    std::ptrdiff_t commas = 0;
    for (const char* name : {"exports.csv", "history.csv", "almwatch.csv", "BENEQM-devices.csv"}) {
      std::string bytes(std::filesystem::file_size(folder + name), '\0');
      std::ifstream(folder + name, std::ios::binary)
          .read(bytes.data(), static_cast<std::streamsize>(bytes.size()));
      commas += std::count(bytes.begin(), bytes.end(), ',');
    }
    benchmark::DoNotOptimize(commas);
  };
  measure(
      "entry/floor", [] {}, count);
}

void measureMissingFile(const std::string& home) {
  const std::string file = home + "/BENCHX/exports.csv";
  measure(
      "keystroke/floor", [] {},
      [file] {
        struct stat state {};
        benchmark::DoNotOptimize(::stat(file.c_str(), &state));
      });
}

/// A commit of a new property as the row behind those of the desk, with history and alarm watch.
void measureAdd(const std::string& row, Desk& desk, const std::string& kind) {
  const auto rows = static_cast<std::int16_t>(desk.form().PropertyList.lines().size());
  const auto prepare = [&desk, rows] {
    Form1& form = desk.form();
    if (form.PropertyList.lines().size() > static_cast<std::size_t>(rows)) {
      form.PropertyList.select(rows);
      form.RemoveProperty.click();
    }
    desk.engineer.program.wizard.state.project.historyCount = rows;
    desk.engineer.program.wizard.state.project.alarmCount = rows;
    form.PropertyName.edit("NEW", 3);
    form.HistoryCheck.setValue(1);
    form.AlarmWatchCheck.setValue(1);
    desk.engineer.messages.clear();
    settle();
  };
  measure("add/" + row + kind, prepare, [&desk] {
    desk.form().AddProperty.click();
    if (desk.view) settle();
  });
}

/// Plain widgets in the places of the fields whose texts differ between two lines of the list.
class BareForm {
 public:
  BareForm(Desk& desk, const std::array<std::int32_t, 2>& lines) {
    window_.resize(desk.view->size());
    for (const auto& designed : designedControls(desk.form())) {
      auto* const* field = std::get_if<TextField*>(&designed.control);
      if (field == nullptr) continue;
      std::array<QString, 2> texts;
      for (const std::size_t which : {0U, 1U}) {
        desk.form().PropertyList.select(lines.at(which));
        texts.at(which) = QString::fromLatin1(QByteArray::fromStdString((*field)->text()));
      }
      if (texts[0] != texts[1]) add(*desk.view->widget(designed.design->name), texts);
    }
    window_.show();
    settle();
  }

  void show(std::size_t which) {
    for (auto& [line, texts] : lines_) line->setText(texts.at(which));
    for (auto& [box, texts] : boxes_) box->setPlainText(texts.at(which));
    settle();
  }

 private:
  void add(QWidget& shown, const std::array<QString, 2>& texts) {
    if (qobject_cast<QLineEdit*>(&shown) != nullptr) {
      lines_.emplace_back(place<QLineEdit>(shown), texts);
    } else {
      boxes_.emplace_back(place<QPlainTextEdit>(shown), texts);
      boxes_.back().first->setLineWrapMode(QPlainTextEdit::NoWrap);
    }
  }

  template <class Edit>
  Edit* place(QWidget& shown) {
    Edit* made = std::make_unique<Edit>(&window_).release();
    made->setGeometry(QRect(shown.mapTo(shown.window(), QPoint()), shown.size()));
    return made;
  }

  QWidget window_;
  std::vector<std::pair<QLineEdit*, std::array<QString, 2>>> lines_;
  std::vector<std::pair<QPlainTextEdit*, std::array<QString, 2>>> boxes_;
};

void measureSelect(Desk& desk, BareForm& bare, const std::array<std::int32_t, 2>& lines) {
  auto turn = [which = 0U]() mutable { return which = 1 - which; };
  measure("select", settle, [&desk, lines, turn]() mutable {
    desk.form().PropertyList.select(lines.at(turn()));
    settle();
  });
  measure("select/floor", settle, [&bare, turn]() mutable { bare.show(turn()); });
}

void measurePreview(Desk& desk) {
  const Wizard& wizard = desk.engineer.program.wizard;
  measure(
      "preview", [] {}, [&wizard] { benchmark::DoNotOptimize(preview(wizard)); });
  measure(
      "preview/differences", [] {},
      [&wizard] { comparePreview(wizard.platform.files, preview(wizard)); });
}

void press(QWidget& widget, int key, const QString& text = {}) {
  for (const QEvent::Type type : {QEvent::KeyPress, QEvent::KeyRelease}) {
    QKeyEvent event(type, key, Qt::NoModifier, text);
    QCoreApplication::sendEvent(&widget, &event);
  }
}

/// A step of what goes on, as a held key and a dragged edge do: one goes ahead of it.
void measureStep(const std::string& act, const std::function<void(bool forth)>& step) {
  const auto forth = std::make_shared<bool>(false);
  const auto once = [=] {
    step(*forth);
    settle();
  };
  const auto ahead = [=] {
    *forth = !*forth;
    once();
  };
  measure(act, ahead, once);
}

/// Key by key in the window: a letter and its removal in turns, an arrow key held in the list, and
/// the window one step larger or smaller.
void measureWindow(Desk& desk) {
  desk.form().PropertyList.select(500);
  settle();
  auto turn = [which = false]() mutable { return which = !which; };
  for (const char* name : {"PropertyName", "deviceNamesInputText"}) {
    QWidget* field = desk.view->widget(name);
    measure(std::string("key/") + name, settle, [field, turn]() mutable {
      if (turn()) {
        press(*field, Qt::Key_X, QStringLiteral("X"));
      } else {
        press(*field, Qt::Key_Backspace);
      }
      settle();
    });
  }
  QWidget* list = desk.view->widget("PropertyList");
  measureStep("arrow", [list](bool forth) { press(*list, forth ? Qt::Key_Down : Qt::Key_Up); });
  MainView& view = *desk.view;
  measureStep("resize", [&view](bool forth) {
    view.resize(view.size() + (forth ? QSize(8, 8) : QSize(-8, -8)));
  });
}

void measureAll(const std::string& folder) {
  std::vector<std::unique_ptr<Desk>> desks;
  const auto desk = [&](const std::string& home, bool withWindow) -> Desk& {
    return *desks.emplace_back(std::make_unique<Desk>(folder + home, withWindow));
  };
  for (const char* rows : {"125", "250", "500"})
    measureTyping("entry/" + std::string(rows), desk(rows, false), "BENC", "BENCH");
  for (const bool withWindow : {false, true}) {
    const std::string kind = withWindow ? "/window" : "";
    Desk& whole = desk("1001", withWindow);
    measureTyping("entry/1001" + kind, whole, "BENC", "BENCH");
    if (!withWindow) measurePreview(desk("1001", false));
    measureTyping("keystroke" + kind, whole, "BENCH", "BENCHX");
    measureAdd("10", desk("9", withWindow), kind);
    measureAdd("1000", desk("999", withWindow), kind);
  }
  measureCommas(folder + "1001/BENCH/");
  measureMissingFile(folder + "1001");
  constexpr std::array<std::int32_t, 2> lines{500, 501};
  Desk& full = desk("full", true);
  BareForm bare(full, lines);
  measureSelect(full, bare, lines);
  measureTyping("entry/names", desk("full", false), "BENC", "BENCH");
  measureTyping("leave", desk("full", true), "BENCH", "BENCHX");
  measureWindow(desk("full", true));
  benchmark::RunSpecifiedBenchmarks();
}

}  // namespace
}  // namespace kova::measure

int main(int argc, char** argv) {
  const QApplication application(argc, argv);
  benchmark::Initialize(&argc, argv);
  kova::measure::measureAll(std::string(argv[1]) + '/');
  return 0;
}
