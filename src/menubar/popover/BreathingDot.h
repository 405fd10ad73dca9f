#pragma once

#include "style/StatusDot.h"
#include "style/Tokens.h"

#include <QElapsedTimer>
#include <QPointer>
#include <QTimer>

namespace kelvo {

/// A dot that slowly dims and brightens while it is on the screen, unless the user asked for reduced motion. It changes 17
/// times a second, which is enough for so slow a change: on X11, threads wake up three times for each frame.
class BreathingDot : public kelvo::StatusDot
{
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(bool isBreathing READ isBreathing NOTIFY isBreathingChanged FINAL)

public:
    explicit BreathingDot(QQuickItem *parent = nullptr);

    bool isBreathing() const { return steps_.isActive(); }

Q_SIGNALS:
    void isBreathingChanged();

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;
    void itemChange(ItemChange change, const ItemChangeData &value) override;

private:
    void startOrStop();
    void step();

    Tokens tokens_;
    QPointer<QQuickWindow> window_;
    QTimer steps_;
    QElapsedTimer sinceStart_;
};

} // namespace kelvo
