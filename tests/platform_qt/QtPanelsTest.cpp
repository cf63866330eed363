#include "platform/qt/QtPanels.h"
#include "tests/platform_qt/EventLoop.h"
#include "tests/support/TemporaryFolder.h"

#include <QApplication>
#include <QFileDialog>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <QTimer>
#include <QWindow>
#include <algorithm>
#include <functional>
#include <string>
#include <vector>

#include <gmock/gmock.h>

namespace cirrovane::test {
namespace {

using testing::ElementsAre;
using testing::Optional;

/// Plays a user: hands each dialog that opens to the next of the steps.
class User {
 public:
  using Step = std::function<void(QDialog&)>;

  explicit User(std::vector<Step> steps) : steps_(std::move(steps)) {
    QObject::connect(&timer_, &QTimer::timeout, &timer_, [this] { act(); });
    timer_.start(std::chrono::milliseconds(1));
  }

  bool isDone() const { return next_ == steps_.size(); }

 private:
  void act() {
    auto* dialog = qobject_cast<QDialog*>(QApplication::activeModalWidget());
    if (dialog != nullptr && dialog != last_ && dialog->isVisible() && !isDone()) {
      last_ = dialog;
      steps_[next_++](*dialog);
    }
  }

  QTimer timer_;
  std::vector<Step> steps_;
  std::size_t next_ = 0;
  QDialog* last_ = nullptr;
};

QPushButton* buttonOf(const QDialog& dialog, const QString& label) {
  const QList<QPushButton*> buttons = dialog.findChildren<QPushButton*>();
  const auto found = std::ranges::find_if(buttons, [&label](const QPushButton* button) {
    return button->text().remove('&') == label && button->isVisible();
  });
  return found != buttons.end() ? *found : nullptr;
}

void click(QDialog& dialog, const QString& label) {
  if (QPushButton* button = buttonOf(dialog, label); button != nullptr && button->isEnabled()) {
    button->click();
  } else {
    ADD_FAILURE() << "There is no button " << label.toStdString() << " to click.";
    dialog.reject();
  }
}

void type(QDialog& dialog, const std::string& name) {
  dialog.findChild<QLineEdit*>("fileNameEdit")->setText(QString::fromStdString(name));
}

class QtPanelsTest : public testing::Test {
 protected:
  std::optional<std::string> chooseFolder(std::vector<User::Step> steps) {
    const User user(std::move(steps));
    auto answer = panels.chooseFolder({"Add Critical Folder", "Add to Watchlist"});
    EXPECT_TRUE(user.isDone());
    return answer;
  }

  std::optional<std::string> chooseFile(std::vector<User::Step> steps) {
    const User user(std::move(steps));
    auto answer = panels.chooseFileToSave({"Export Proof Packet", "cirrovane-proof-2026-11-15-1825.json"});
    EXPECT_TRUE(user.isDone());
    return answer;
  }

  TemporaryFolder folder{CIRROVANE_TEST_DIR};
  QtPanels panels{folder.path()};
};

TEST_F(QtPanelsTest, chooseFolder_showsItsTextsAndFoldersAlone) {
  makeFolder(folder / "inner");
  EXPECT_EQ(chooseFolder({[](QDialog& dialog) {
              const auto& panel = dynamic_cast<QFileDialog&>(dialog);
              EXPECT_EQ(panel.windowTitle(), "Add Critical Folder");
              EXPECT_EQ(panel.labelText(QFileDialog::Accept), "Add to Watchlist");
              EXPECT_EQ(panel.fileMode(), QFileDialog::Directory);
              EXPECT_TRUE(panel.testOption(QFileDialog::ShowDirsOnly));
              EXPECT_EQ(panel.acceptMode(), QFileDialog::AcceptOpen);
              dialog.reject();
            }}),
            std::nullopt);
}

TEST_F(QtPanelsTest, chooseFolder_answersTheFolderByItsName) {
  for (const std::string name : {"plain", "Größe ☁ 100%", "a#b?c", "e\u0301"}) {
    makeFolder(folder / name);
    QtPanels fresh(folder.path());
    const User user({[&name](QDialog& dialog) {
      type(dialog, name);
      click(dialog, "Add to Watchlist");
    }});
    EXPECT_THAT(fresh.chooseFolder({"Add Critical Folder", "Add to Watchlist"}), Optional(folder / name));
  }
}

TEST_F(QtPanelsTest, chooseFolder_confirmedAtOnce_answersTheShownFolder) {
  EXPECT_THAT(chooseFolder({[](QDialog& dialog) { click(dialog, "Add to Watchlist"); }}), Optional(folder.path()));
}

TEST_F(QtPanelsTest, chooseFolder_thatDoesNotExist_cannotBeConfirmed) {
  EXPECT_EQ(chooseFolder({[](QDialog& dialog) {
              type(dialog, "missing");
              EXPECT_FALSE(buttonOf(dialog, "Add to Watchlist")->isEnabled());
              dialog.reject();
            }}),
            std::nullopt);
}

TEST_F(QtPanelsTest, chooseFileToSave_showsItsTextsAndTheProposedName) {
  EXPECT_EQ(chooseFile({[](QDialog& dialog) {
              const auto& panel = dynamic_cast<QFileDialog&>(dialog);
              EXPECT_EQ(panel.windowTitle(), "Export Proof Packet");
              EXPECT_EQ(panel.acceptMode(), QFileDialog::AcceptSave);
              EXPECT_EQ(panel.nameFilters(), QStringList("JSON (*.json)"));
              EXPECT_EQ(panel.findChild<QLineEdit*>("fileNameEdit")->text(), "cirrovane-proof-2026-11-15-1825.json");
              dialog.reject();
            }}),
            std::nullopt);
}

TEST_F(QtPanelsTest, chooseFileToSave_confirmedAtOnce_answersTheProposedName) {
  EXPECT_THAT(chooseFile({[](QDialog& dialog) { click(dialog, "Save"); }}),
              Optional(folder / "cirrovane-proof-2026-11-15-1825.json"));
}

TEST_F(QtPanelsTest, chooseFileToSave_ofAnyName_answersAJSONFile) {
  const std::vector<std::pair<std::string, std::string>> cases{
      {"Größe ☁", "Größe ☁.json"}, {"a.txt", "a.txt.json"}, {"2026.11", "2026.11.json"}, {"B.JSON", "B.JSON"}};
  for (const auto& [typed, answered] : cases) {
    EXPECT_THAT(chooseFile({[&typed = typed](QDialog& dialog) {
                  type(dialog, typed);
                  click(dialog, "Save");
                }}),
                Optional(folder / answered));
  }
}

TEST_F(QtPanelsTest, chooseFileToSave_ofAnExistingFile_asksBeforeItAnswers) {
  writeFile(folder / "a.txt.json");
  // The question opens within the click, so each step but the last returns before the click that ends it.
  const auto save = [](QDialog& dialog) {
    type(dialog, "a.txt");
    QTimer::singleShot(0, &dialog, [&dialog] { click(dialog, "Save"); });
  };
  const auto refuse = [](QDialog& question) {
    QWidget* panel = question.parentWidget();
    click(question, "No");
    QTimer::singleShot(0, panel, [panel] { qobject_cast<QDialog*>(panel)->reject(); });
  };
  EXPECT_EQ(chooseFile({save, refuse}), std::nullopt);
  EXPECT_THAT(chooseFile({save, [](QDialog& question) { click(question, "Yes"); }}), Optional(folder / "a.txt.json"));
}

TEST_F(QtPanelsTest, panels_areTheDesktopsOwnUnlessAScreenReaderRuns) {
  for (const bool isRead : {true, false}) {
    panels = QtPanels(folder.path(), [isRead] { return isRead; });
    const auto look = [isRead](QDialog& dialog) {
      EXPECT_EQ(dynamic_cast<QFileDialog&>(dialog).testOption(QFileDialog::DontUseNativeDialog), isRead);
      dialog.reject();
    };
    EXPECT_EQ(chooseFolder({look}), std::nullopt);
    EXPECT_EQ(chooseFile({look}), std::nullopt);
  }
}

TEST_F(QtPanelsTest, nameThatADesktopsPanelLetPass_becomesAJSONFile) {
  EXPECT_EQ(QtPanels::withEnding(folder / "a.JSON", {"Export", {}}), folder / "a.JSON");
  EXPECT_EQ(QtPanels::withEnding(folder / "a.txt", {"Export", {}}), folder / "a.txt.json");
}

TEST_F(QtPanelsTest, nameThatBecomesAnExistingFile_isAskedAboutAgain) {
  writeFile(folder / "a.json");
  for (const auto& [button, answer] :
       {std::pair("No", std::optional<std::string>()), std::pair("Yes", std::optional(folder / "a.json"))}) {
    const User user({[&button = button](QDialog& question) { click(question, button); }});
    EXPECT_EQ(QtPanels::withEnding(folder / "a", {"Export", {}}), answer);
    EXPECT_TRUE(user.isDone());
  }
}

TEST_F(QtPanelsTest, laterPanel_showsTheFolderAroundTheLastAnswer) {
  makeFolder(folder / "inner");
  EXPECT_THAT(chooseFile({[this](QDialog& dialog) {
                type(dialog, folder / "inner/a.json");
                click(dialog, "Save");
              }}),
              Optional(folder / "inner/a.json"));
  EXPECT_THAT(chooseFile({[](QDialog& dialog) {
                type(dialog, "b.json");
                click(dialog, "Save");
              }}),
              Optional(folder / "inner/b.json"));
}

TEST_F(QtPanelsTest, panel_belongsToTheParentWindowWhileThereIsOne) {
  auto window = std::make_unique<QWindow>();
  window->show();
  panels.setParentWindow(window.get());
  EXPECT_EQ(chooseFolder({[&window](QDialog& dialog) {
              EXPECT_EQ(dialog.windowHandle()->transientParent(), window.get());
              dialog.reject();
            }}),
            std::nullopt);
  window.reset();
  EXPECT_EQ(chooseFolder({[](QDialog& dialog) {
              EXPECT_EQ(dialog.windowHandle()->transientParent(), nullptr);
              dialog.reject();
            }}),
            std::nullopt);
}

}  // namespace
}  // namespace cirrovane::test
