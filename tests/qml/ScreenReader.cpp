#include "tests/qml/ScreenReader.h"

#include <QAccessible>
#include <QMetaEnum>
#include <QQuickItem>

namespace cirrovane::test {
namespace {

QString roleOf(QAccessibleInterface* interface) {
  return QString::fromLatin1(QMetaEnum::fromType<QAccessible::Role>().valueToKey(interface->role()));
}

/// The interface of the first object, from this one inwards, that meets the condition.
template <typename Condition>
QAccessibleInterface* firstOf(QAccessibleInterface* interface, const Condition& isMet) {
  if (interface == nullptr || !interface->isValid() || interface->state().invisible) {
    return nullptr;
  }
  if (isMet(interface)) {
    return interface;
  }
  for (int index = 0; index < interface->childCount(); ++index) {
    if (QAccessibleInterface* found = firstOf(interface->child(index), isMet)) {
      return found;
    }
  }
  return nullptr;
}

template <typename Condition>
QAccessibleInterface* firstOf(QObject* object, const Condition& isMet) {
  if (QAccessibleInterface* interface = QAccessible::queryAccessibleInterface(object)) {
    return firstOf(interface, isMet);
  }
  // What is only there to hold others says nothing itself.
  if (const auto* item = qobject_cast<QQuickItem*>(object)) {
    for (QQuickItem* child : item->childItems()) {
      if (QAccessibleInterface* found = firstOf(child, isMet)) {
        return found;
      }
    }
  }
  return nullptr;
}

QAccessible::State stateOf(QObject* object) {
  QAccessibleInterface* interface = QAccessible::queryAccessibleInterface(object);
  return interface != nullptr ? interface->state() : QAccessible::State();
}

QString textOf(QObject* object, QAccessible::Text text) {
  QAccessibleInterface* interface = QAccessible::queryAccessibleInterface(object);
  return interface != nullptr ? interface->text(text) : QString();
}

bool act(QObject* object, const QString& action) {
  QAccessibleInterface* interface = QAccessible::queryAccessibleInterface(object);
  QAccessibleActionInterface* actions = interface != nullptr ? interface->actionInterface() : nullptr;
  if (actions == nullptr || !actions->actionNames().contains(action)) {
    return false;
  }
  actions->doAction(action);
  return true;
}

}  // namespace

ScreenReader::ScreenReader(QObject* parent) : QObject(parent) {
  QAccessible::setActive(true);
}

QStringList ScreenReader::heard(QObject* object) const {
  QStringList lines;
  firstOf(object, [&lines](QAccessibleInterface* interface) {
    lines.append((roleOf(interface) + QLatin1Char(' ') + interface->text(QAccessible::Name)).trimmed());
    return false;
  });
  return lines;
}

QObject* ScreenReader::find(QObject* object, const QString& role, const QString& name) const {
  QAccessibleInterface* found = firstOf(object, [&](QAccessibleInterface* interface) {
    return roleOf(interface) == role && interface->text(QAccessible::Name) == name;
  });
  return found != nullptr ? found->object() : nullptr;
}

QString ScreenReader::name(QObject* object) const {
  return textOf(object, QAccessible::Name);
}

QString ScreenReader::description(QObject* object) const {
  return textOf(object, QAccessible::Description);
}

bool ScreenReader::isChecked(QObject* object) const {
  return stateOf(object).checked;
}

bool ScreenReader::isSelected(QObject* object) const {
  return stateOf(object).selected;
}

bool ScreenReader::press(QObject* object) const {
  return act(object, QAccessibleActionInterface::pressAction());
}

bool ScreenReader::toggle(QObject* object) const {
  return act(object, QAccessibleActionInterface::toggleAction());
}

}  // namespace cirrovane::test
