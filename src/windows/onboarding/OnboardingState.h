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

/// The way through the first-run window, for its views.
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

    /// Starts at the first page with the primary service selected; without one, nothing is selected. The stores must
    /// outlive this.
    OnboardingState(SettingsStore &settings, NotifierStore &notifier, QObject *parent = nullptr);

    Page page() const { return page_; }
    /// The names of the services that are offered.
    QStringList choices() const;
    /// The position of the selected service among the choices; -1 when it is not one of them, as with Claude Code.
    int selected() const;
    /// Whether a service is selected, among the choices or not.
    bool hasSelection() const { return selected_.has_value(); }
    /// What is watched and how often, in words.
    QString watchingText() const;

    /// Selects a choice. Takes effect only with `continueToPermission`.
    void select(int choice);

    Q_INVOKABLE void continueToPicker() { turnTo(PrimaryPicker); }
    Q_INVOKABLE void backToPromise() { turnTo(Promise); }
    /// Makes the selected service the primary one. Nothing happens while none is selected.
    Q_INVOKABLE void continueToPermission();
    /// Asks the system, and goes on without waiting for the answer.
    Q_INVOKABLE void allowNotifications();
    Q_INVOKABLE void skipPermission() { turnTo(Complete); }
    /// The user is through: the window need not open by itself again.
    Q_INVOKABLE void finish();

Q_SIGNALS:
    void pageChanged();
    void selectedChanged();
    void watchingTextChanged();
    /// The window is to close.
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
