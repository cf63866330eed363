#pragma once

#include <QColor>
#include <QImage>
#include <QQuickItem>
#include <QtQmlIntegration>

namespace cirrovane {

/// A rectangle whose colour runs from its top leading to its bottom trailing corner, lit by the soft orbs that it is
/// made with. It changes so little from point to point that it is drawn as a small picture, enlarged: cheap however
/// often an orb moves, also where no graphics card draws.
class DiagonalGradient : public QQuickItem {
  Q_OBJECT
  QML_ELEMENT
  Q_PROPERTY(QColor start MEMBER start_ NOTIFY changed)
  Q_PROPERTY(QColor end MEMBER end_ NOTIFY changed)

 public:
  explicit DiagonalGradient(QQuickItem* parent = nullptr);

  /// The small picture.
  QImage picture() const;

 signals:
  void changed();

 protected:
  QSGNode* updatePaintNode(QSGNode* node, UpdatePaintNodeData* data) override;
  void componentComplete() override;

 private:
  QColor start_;
  QColor end_;
};

}  // namespace cirrovane
