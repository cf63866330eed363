#include "ui/viewmodels/ExportViewModel.h"

#include "base/Path.h"
#include "evidence/Evidence.h"
#include "ui/viewmodels/Text.h"

#include <QMetaObject>
#include <QPointer>
#include <QStringList>
#include <algorithm>
#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace cirrovane {
namespace {

constexpr std::size_t kPreviewLines = 60;

/// Text of several lines, each harmless.
QString displayLines(const std::string& text) {
  QStringList lines;
  for (std::size_t start = 0; start < text.size();) {
    const std::size_t end = std::min(text.find('\n', start), text.size());
    lines.append(toDisplay(text.substr(start, end - start)));
    start = end + 1;
  }
  return lines.join(QLatin1Char('\n'));
}

/// A name beside the packet's for its page, which nothing has yet.
std::string pageBeside(const std::string& packet, const FileSystem& files) {
  const std::string stem = packet.substr(0, packet.size() - std::string_view(".json").size());
  std::string page = stem + ".html";
  for (int number = 2; files.exists(page); ++number) {
    page = stem + " " + std::to_string(number) + ".html";
  }
  return page;
}

std::string nameOf(const std::string& path) {
  return std::string(lastPathComponent(path));
}

}  // namespace

ExportViewModel::ExportViewModel(QObject* parent) : PageViewModel(parent) {
  forms_.setRows({{QStringLiteral("packet"), QStringLiteral("Packet")},
                  {QStringLiteral("page"), QStringLiteral("Page")},
                  {QStringLiteral("both"), QStringLiteral("Both")}});
  namings_.setRows({{toQString(rawValue(Redaction::none)), QStringLiteral("Shown")},
                    {toQString(rawValue(Redaction::names)), QStringLiteral("Hidden")},
                    {toQString(rawValue(Redaction::strict)), QStringLiteral("Strict")}});
}

QString ExportViewModel::form() const {
  return forms_.row(static_cast<int>(form_)).value;
}

void ExportViewModel::setForm(const QString& form) {
  const int row = forms_.indexOf(form);
  if (row >= 0 && form != this->form()) {
    form_ = static_cast<Form>(row);
    look();
  }
}

QString ExportViewModel::formNote() const {
  switch (form_) {
    case Form::packet:
      return QStringLiteral("A JSON file with everything known, for tools and support.");
    case Form::page:
      return QStringLiteral("One file for a person to read, in any browser and on paper.");
    case Form::both:
      break;
  }
  return QStringLiteral("A JSON file for tools, and beside it the page of it for a person.");
}

QString ExportViewModel::naming() const {
  return toQString(rawValue(redaction_));
}

void ExportViewModel::setNaming(const QString& naming) {
  Redaction redaction = redaction_;
  if (fromRawValue(naming.toStdString(), redaction) && redaction != redaction_) {
    redaction_ = redaction;
    look();
  }
}

QString ExportViewModel::namingNote() const {
  switch (redaction_) {
    case Redaction::none:
      return QStringLiteral("Files and folders by their names, as they are.");
    case Redaction::names:
      return QStringLiteral("Every file and folder by a pseudonym. Extensions stay.");
    case Redaction::strict:
      break;
  }
  return QStringLiteral("Pseudonyms without extensions, and no words of the system.");
}

void ExportViewModel::look() {
  if (context() == nullptr) {
    return;
  }
  const ProofPacket packet = dashboard().cycle().proofPacket();
  const std::string home = dashboard().fileSystem().homeDirectory();
  preview_ = displayLines(form_ == Form::page ? pagePreview(packet, home, redaction_)
                                              : packetPreview(packet, home, redaction_, kPreviewLines));
  emit changed();
}

void ExportViewModel::save() {
  if (context() == nullptr) {
    return;
  }
  const auto saver = [form = form_, redaction = redaction_, &files = dashboard().fileSystem()](
                         const ProofPacket& packet, const std::string& path,
                         const FileStorage& storage) -> Result<std::string> {
    EvidenceFiles evidence;
    (form == Form::page ? evidence.page : evidence.packet) = path;
    if (form == Form::both) {
      evidence.page = pageBeside(path, files);
    }
    const auto failure = saveEvidence(evidenceOf(packet, files.homeDirectory()), redaction, evidence, storage);
    if (failure) {
      return *failure;
    }
    switch (form) {
      case Form::packet:
        return "Proof packet exported to " + nameOf(path) + ".";
      case Form::page:
        return "Page exported to " + nameOf(path) + ".";
      case Form::both:
        break;
    }
    return "Proof packet exported to " + nameOf(path) + ", its page to " + nameOf(*evidence.page) + ".";
  };
  // Queued, since the dialog would block the caller: a screen reader that presses the button waits for it.
  QMetaObject::invokeMethod(
      context(),
      [saver, isPage = form_ == Form::page, sheet = QPointer(this),
       &dashboard = context()->dashboard(For<ExportViewModel>())] {
        dashboard.exportEvidence(isPage ? "Export Page" : "Export Proof Packet", isPage ? webPages() : jsonFiles(),
                                 saver);
        if (sheet != nullptr) {
          emit sheet->ended();
        }
      },
      Qt::QueuedConnection);
}

}  // namespace cirrovane
