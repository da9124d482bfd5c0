// SPDX-License-Identifier: MIT
// Single actions of the engineer and their baselines. Each run is one action; what leads up to it
// is not timed. Before the options of the benchmark library stands the folder of the projects,
// which holds "ROWS/BENCH" for several numbers of rows, and "full/BENCH" with all files of device
// names; then that of the projects that are finished, and one of the same kind on the disk.
#include <benchmark/benchmark.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <QApplication>
#include <QKeyEvent>
#include <QLineEdit>
#include <QMetaProperty>
#include <QPlainTextEdit>
#include <algorithm>
#include <array>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iterator>
#include <memory>
#include <stdexcept>
#include <utility>
#include <vector>

#include "desktop/main_view.h"
#include "review/differences.h"
#include "support/engineer.h"
#include "tables/backup.h"

namespace kova::measure {
namespace {

namespace fs = std::filesystem;
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

const auto nothing = [] {};

void measure(const std::string& name, const std::function<void()>& prepare,
             const std::function<void()>& act) {
  const auto run = [=](benchmark::State& state) {
    for ([[maybe_unused]] auto one : state) {
      state.PauseTiming();
      prepare();
      state.ResumeTiming();
      act();
    }
  };
  benchmark::RegisterBenchmark(name.c_str(), run)->Iterations(1)->MeasureProcessCPUTime();
}

std::string contentOf(const fs::path& path) {
  std::string bytes(fs::file_size(path), '\0');
  std::ifstream(path, std::ios::binary)
      .read(bytes.data(), static_cast<std::streamsize>(bytes.size()));
  return bytes;
}

/// Entries lie hours apart: the backups of one never take the place of those of another.
void removeBackups(const fs::path& folder) {
  for (const auto& file : std::vector(fs::directory_iterator(folder), {})) {
    if (file.path().filename().string().find("-17000") != std::string::npos) fs::remove(file);
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

void measureReading(const std::string& folder) {
  measure("entry/baseline", nothing, [folder] {
    std::ptrdiff_t commas = 0;
    for (const char* name : {"exports.csv", "history.csv", "almwatch.csv", "BENEQM-devices.csv"}) {
      const std::string bytes = contentOf(folder + name);
      commas += std::count(bytes.begin(), bytes.end(), ',');
    }
    benchmark::DoNotOptimize(commas);
  });
  measure("keystroke/baseline", nothing, [file = folder + "none/exports.csv"] {
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

/// Another line of the list, and the texts that differ between the two on plain widgets in the same
/// places.
void measureSelect(Desk& desk) {
  const auto select = [&desk, line = 500]() mutable {
    desk.form().PropertyList.select(line = 1001 - line);
    settle();
  };
  measure("select", settle, select);
  const auto window = std::make_shared<QWidget>();
  window->resize(desk.view->size());
  const auto fields = std::make_shared<std::vector<std::pair<QWidget*, std::vector<QVariant>>>>();
  for (QWidget* shown : desk.view->findChildren<QWidget*>()) {
    std::unique_ptr<QWidget> made;
    if (qobject_cast<QLineEdit*>(shown) != nullptr) made = std::make_unique<QLineEdit>();
    if (auto* box = qobject_cast<QPlainTextEdit*>(shown)) {
      made = std::make_unique<QPlainTextEdit>();
      made->setProperty("lineWrapMode", box->lineWrapMode());
    }
    if (!made) continue;
    std::vector<QVariant> texts;
    for (const int line : {500, 501}) {
      desk.form().PropertyList.select(line);
      texts.push_back(shown->metaObject()->userProperty().read(shown));
    }
    if (texts[0] == texts[1]) continue;
    made->setParent(window.get());
    made->setGeometry(QRect(shown->mapTo(shown->window(), QPoint()), shown->size()));
    fields->emplace_back(made.release(), texts);
  }
  window->show();
  measure("select/baseline", settle, [window, fields, which = 0U]() mutable {
    which = 1 - which;
    for (auto& [field, texts] : *fields) {
      field->metaObject()->userProperty().write(field, texts.at(which));
    }
    settle();
  });
}

void measurePreview(const Wizard& wizard) {
  measure("preview", nothing, [&wizard] { benchmark::DoNotOptimize(preview(wizard)); });
  measure("preview/differences", nothing,
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

/// Key by key in the window: letters and their removal, an arrow key held in the list, and the
/// window one step larger or smaller.
void measureWindow(Desk& desk) {
  desk.form().PropertyList.select(500);
  for (const char* name : {"PropertyName", "deviceNamesInputText"}) {
    measureStep(std::string("key/") + name, [field = desk.view->widget(name)](bool forth) {
      press(*field, forth ? Qt::Key_X : Qt::Key_Backspace, forth ? QStringLiteral("X") : QString());
    });
  }
  measureStep("arrow", [list = desk.view->widget("PropertyList")](bool forth) {
    press(*list, forth ? Qt::Key_Down : Qt::Key_Up);
  });
  measureStep("resize", [&view = *desk.view](bool forth) {
    view.resize(view.size() + (forth ? QSize(8, 8) : QSize(-8, -8)));
  });
}

void writePlainly(const fs::path& target, const std::string& content) {
  const fs::path hidden = target.parent_path() / ("." + target.filename().native());
  const int file = ::open(hidden.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0666);
  const auto size = static_cast<ssize_t>(content.size());
  if (file == -1 || ::write(file, content.data(), content.size()) != size || ::fsync(file) != 0 ||
      ::close(file) != 0 || ::rename(hidden.c_str(), target.c_str()) != 0) {
    throw std::runtime_error("a system call failed");
  }
}

/// Done in one project with copies to a repository, everything selected before.
class Finish {
 public:
  explicit Finish(const std::string& home) : home_(home), copies_(home + "/fec/BENEQM") {}

  void prepare(bool withChange) {
    if (!fs::exists(copies_)) {
      fs::create_directory(copies_.parent_path());
      open(true);
      done();  // creates the files that all others replace
    }
    open(withChange);
    // What the entry has written; the system brings it to the disk while the engineer works.
    ::sync();
  }

  void done() {
    engineer_->program.wizard.form.Command1.click();
    if (!engineer_->ended) throw std::runtime_error("the project is not finished");
  }

  /// Both places of each file.
  std::vector<std::array<fs::path, 2>> files() const {
    std::vector<std::array<fs::path, 2>> files;
    for (const auto& copy : fs::directory_iterator(copies_)) {
      files.push_back({home_ / "BENCH" / copy.path().filename(), copy.path()});
    }
    return files;
  }

 private:
  void open(bool withChange) {
    removeBackups(home_ / "BENCH");
    engineer_ = std::make_unique<Engineer>(home_);
    engineer_->environment.values["FEC_HOME"] = copies_.parent_path();
    engineer_->start();
    type(*engineer_, "BENCH");
    Form1& form = engineer_->program.wizard.form;
    const auto rows = static_cast<std::int32_t>(form.PropertyList.lines().size());
    for (std::int32_t row = 0; row < rows; ++row) form.PropertyList.select(row);
    if (withChange) changeAll("OF TURN " + std::to_string(++turn_));
    form.vbProject.setValue(0);
    engineer_->answers.push_back(Answer::yes);
  }

  void changeAll(const std::string& text) {
    auto& project = engineer_->program.wizard.state.project;
    project.deviceNames.front() = text;
    for (auto& row : project.historyTable) row.tolerance = text;
    for (auto& row : project.alarmTable) row.mask = text;
    for (auto& row : project.exportTable) {
      row.description = text;
      if (row.devices.size() > 0) row.devices.edit().front() = text;
    }
  }

  fs::path home_;
  fs::path copies_;
  std::unique_ptr<Engineer> engineer_;
  int turn_ = 0;
};

void measureDone(const std::string& name, const std::string& home, bool withBaselines) {
  const auto finish = std::make_shared<Finish>(home);
  measure(
      name, [=] { finish->prepare(true); }, [=] { finish->done(); });
  if (!withBaselines) return;
  measure(
      name + "/unchanged", [=] { finish->prepare(false); }, [=] { finish->done(); });
  const auto contents = std::make_shared<std::vector<std::string>>();
  const auto readAll = [=] {
    contents->clear();
    for (const auto& [table, copy] : finish->files()) contents->push_back(contentOf(copy));
  };
  measure(
      name + "/baseline", [=] { finish->prepare(false), readAll(); },
      [=] {
        auto content = contents->begin();
        for (const auto& [table, copy] : finish->files()) {
          writePlainly(table, *content);
          writePlainly(copy, *content++);
        }
        const int folder = ::open((home + "/BENCH").c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
        if (::fsync(folder) != 0 || ::close(folder) != 0) throw std::runtime_error("no flush");
      });
  measure(
      name + "/read", [=] { finish->prepare(false); },
      [=] {
        for (const auto& [table, copy] : finish->files()) {
          benchmark::DoNotOptimize(contentOf(table));
          benchmark::DoNotOptimize(contentOf(copy));
        }
      });
}

/// Files that are none of the wizard's.
void measureBackup(const std::string& folder, int count) {
  const auto prepare = [=] {
    fs::remove_all(folder);
    fs::create_directory(folder);
    for (int number = 0; number < count; ++number) {
      std::ofstream(folder + "/PROP" + std::to_string(number) + "-names.csv")
          << std::string(2000, 'x');
    }
  };
  measure("backup/" + std::to_string(count), prepare, [folder] {
    const auto files = realFileSystem(CodePage::windows1252());
    backupExistingFiles(*files, test::FakeClock(), files->path(folder));
  });
}

void measureAll(const std::string& folder, const std::string& finished, const std::string& disk) {
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
    measureTyping("keystroke" + kind, whole, "BENCH", "BENCHX");
    measureAdd("10", desk("9", withWindow), kind);
    measureAdd("1000", desk("999", withWindow), kind);
  }
  measurePreview(desk("1001", false).engineer.program.wizard);
  measureReading(folder + "1001/BENCH/");
  measureSelect(desk("full", true));
  measureTyping("entry/names", desk("full", false), "BENC", "BENCH");
  measureTyping("leave", desk("full", true), "BENCH", "BENCHX");
  measureWindow(desk("full", true));
  for (const char* rows : {"125", "250", "500", "1001"})
    measureDone("done/" + std::string(rows), finished + rows, false);
  measureDone("done", disk, true);
  for (int count = 10; count <= 100000; count *= 10) measureBackup(folder + "files", count);
  benchmark::RunSpecifiedBenchmarks();
  benchmark::ClearRegisteredBenchmarks();  // what they hold has to end before the toolkit
}

}  // namespace
}  // namespace kova::measure

int main(int argc, char** argv) {
  const QApplication application(argc, argv);
  benchmark::Initialize(&argc, argv);
  const std::string memory(argv[1]);
  kova::measure::measureAll(memory + '/', memory + "/done", argv[2]);
  return 0;
}
