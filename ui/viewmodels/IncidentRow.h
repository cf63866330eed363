#pragma once

#include "platform/TimeText.h"
#include "stores/IncidentRecord.h"
#include "ui/viewmodels/Tone.h"

#include <QMetaType>
#include <QString>

namespace cirrovane {

/// An incident in words.
struct IncidentRow {
  Q_GADGET
  Q_PROPERTY(QString title MEMBER title)
  Q_PROPERTY(QString detail MEMBER detail)
  Q_PROPERTY(QString symbol MEMBER symbol)
  Q_PROPERTY(QString severity MEMBER severity)
  Q_PROPERTY(cirrovane::Tones::Tone tone MEMBER tone)
  Q_PROPERTY(QString state MEMBER state)
  Q_PROPERTY(cirrovane::Tones::Tone stateTone MEMBER stateTone)
  Q_PROPERTY(QString domain MEMBER domain)
  Q_PROPERTY(QString occurrences MEMBER occurrences)
  Q_PROPERTY(QString firstSeen MEMBER firstSeen)
  Q_PROPERTY(QString lastSeen MEMBER lastSeen)
  Q_PROPERTY(QString action MEMBER action)

 public:
  QString title;
  QString detail;
  /// Of the severity.
  QString symbol;
  QString severity;
  /// Of the severity.
  Tone tone = Tone::Plain;
  QString state;
  Tone stateTone = Tone::Plain;
  QString domain;
  QString occurrences;
  QString firstSeen;
  QString lastSeen;
  /// What the user can do about it.
  QString action;

  friend bool operator==(const IncidentRow&, const IncidentRow&) = default;
};

IncidentRow incidentRow(const IncidentRecord& record, const TimeText& timeText);

/// A list knows an incident again by this.
QString keyOf(const IncidentRecord& record);

}  // namespace cirrovane
