#pragma once

#include "alerts/NotifierStore.h"
#include "model/Service.h"
#include "settings/SettingsStore.h"

#include <QObject>
#include <QQmlEngine>
#include <QStringList>

#include <optional>
#include <vector>

namespace kelvo {

/// The state and the actions of the onboarding window.
class OnboardingState : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Made by the program, of its stores")

    Q_PROPERTY(Page page READ page NOTIFY pageChanged FINAL)
    Q_PROPERTY(QStringList choices READ choices CONSTANT FINAL)
    Q_PROPERTY(int selected READ selected WRITE select NOTIFY selectedChanged FINAL)
    Q_PROPERTY(bool hasSelection READ hasSelection NOTIFY selectedChanged FINAL)
    Q_PROPERTY(QString watchingText READ watchingText NOTIFY watchingTextChanged FINAL)

public:
    enum Page { Promise, PrimaryPicker, Permission, Complete };
    Q_ENUM(Page)

    /// Starts at the first page with the primary service selected. If there is none, nothing is selected. The stores must
    /// outlive this object.
    OnboardingState(SettingsStore &settings, NotifierStore &notifier, QObject *parent = nullptr);

    Page page() const { return page_; }
    /// The names of the services that are offered.
    QStringList choices() const;
    /// The index of the selected service in `choices`; -1 when none is selected or it is not offered (Claude Code).
    int selected() const;
    /// Whether a service is selected, offered or not.
    bool hasSelection() const { return selected_.has_value(); }
    /// Describes which service is watched and how often.
    QString watchingText() const;

    /// Selects a service by its index in `choices`. The setting changes only in `continueToPermission`.
    void select(int choice);

    Q_INVOKABLE void continueToPicker() { turnTo(PrimaryPicker); }
    Q_INVOKABLE void backToPromise() { turnTo(Promise); }
    /// Makes the selected service the primary one and shows the next page. Does nothing when none is selected.
    Q_INVOKABLE void continueToPermission();
    /// Asks for the permission to post notifications and shows the next page without waiting for the answer.
    Q_INVOKABLE void allowNotifications();
    Q_INVOKABLE void skipPermission() { turnTo(Complete); }
    /// Marks the onboarding as completed, so that the window does not open at the next start.
    Q_INVOKABLE void finish();

Q_SIGNALS:
    void pageChanged();
    void selectedChanged();
    void watchingTextChanged();
    /// The onboarding is completed and the window should close.
    void finished();

private:
    void turnTo(Page page);

    SettingsStore &settings_;
    NotifierStore &notifier_;
    std::vector<Service> choices_;
    Page page_ = Promise;
    std::optional<ServiceID> selected_;
};

} // namespace kelvo
