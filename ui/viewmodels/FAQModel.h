#pragma once

#include "ui/viewmodels/ListModel.h"

#include <QObject>
#include <QString>
#include <QtQmlIntegration>
#include <vector>

namespace cirrovane {

/// A question of the FAQ page.
struct QuestionRow {
  Q_GADGET
  Q_PROPERTY(QString question MEMBER question)
  Q_PROPERTY(QString answer MEMBER answer)
  Q_PROPERTY(bool expanded MEMBER expanded)

 public:
  QString question;
  QString answer;
  bool expanded = false;

  friend bool operator==(const QuestionRow&, const QuestionRow&) = default;
  friend const QString& keyOf(const QuestionRow& row) { return row.question; }
};

/// The questions of the FAQ page. Any number of them can be open; at first none is.
class FAQModel : public QObject {
  Q_OBJECT
  QML_ELEMENT
  Q_PROPERTY(cirrovane::ListModelBase* questions READ questions CONSTANT)

 public:
  explicit FAQModel(QObject* parent = nullptr);

  ListModel<QuestionRow>* questions() { return &list_; }

  /// Opens a question, or closes it.
  Q_INVOKABLE void toggle(int row);

 private:
  std::vector<QuestionRow> rows_;
  ListModel<QuestionRow> list_;
};

}  // namespace cirrovane
