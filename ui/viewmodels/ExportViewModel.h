#pragma once

#include "evidence/Redaction.h"
#include "ui/viewmodels/ChoiceRow.h"
#include "ui/viewmodels/ListModel.h"
#include "ui/viewmodels/PageViewModel.h"

#include <QString>
#include <QtQmlIntegration>
#include <cstdint>

namespace cirrovane {

/// What is handed over of all that is known, and how it will begin.
class ExportViewModel : public cirrovane::PageViewModel {
  Q_OBJECT
  QML_ELEMENT
  Q_PROPERTY(cirrovane::ListModelBase* forms READ forms CONSTANT)
  Q_PROPERTY(QString form READ form WRITE setForm NOTIFY changed)
  Q_PROPERTY(QString formNote READ formNote NOTIFY changed)
  Q_PROPERTY(cirrovane::ListModelBase* namings READ namings CONSTANT)
  Q_PROPERTY(QString naming READ naming WRITE setNaming NOTIFY changed)
  Q_PROPERTY(QString namingNote READ namingNote NOTIFY changed)
  Q_PROPERTY(QString preview READ preview NOTIFY changed)

 public:
  explicit ExportViewModel(QObject* parent = nullptr);

  // Each takes the value of one of its choices, and ignores any other text.

  ListModel<ChoiceRow>* forms() { return &forms_; }
  /// "packet", "page" or "both".
  QString form() const;
  void setForm(const QString& form);
  /// What it is good for.
  QString formNote() const;

  ListModel<ChoiceRow>* namings() { return &namings_; }
  /// The raw value of the redaction.
  QString naming() const;
  void setNaming(const QString& naming);
  QString namingNote() const;

  /// The first lines of the packet, or the first words of the page, as they will be.
  const QString& preview() const { return preview_; }

  /// Shows what would be exported now.
  Q_INVOKABLE void look();
  /// Lets the user name a file and exports to it; ended() comes when that is done or cancelled.
  Q_INVOKABLE void save();

 signals:
  void ended();

 protected:
  void begin() override {}

 private:
  enum class Form : std::uint8_t { packet, page, both };

  Form form_ = Form::packet;
  Redaction redaction_ = Redaction::none;
  ListModel<ChoiceRow> forms_;
  ListModel<ChoiceRow> namings_;
  QString preview_;
};

}  // namespace cirrovane
