#pragma once

#include "settings/SettingsStore.h"

#include <QObject>
#include <QQmlEngine>

namespace kelvo {

/// A text of the settings that the user types, with what stands beside and in its field. What is set is stored at once,
/// exactly as it is.
class ChannelField : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("The channel sheet's state has them")

    Q_PROPERTY(QString label READ label CONSTANT FINAL)
    Q_PROPERTY(QString placeholder READ placeholder CONSTANT FINAL)
    Q_PROPERTY(QString text READ text WRITE setText NOTIFY textChanged FINAL)

public:
    /// Which field it is, and where in the store its text is.
    struct Binding
    {
        QString label;
        QString placeholder;
        QString (SettingsStore::*read)() const;
        void (SettingsStore::*write)(const QString &);
        void (SettingsStore::*changed)();
    };

    ChannelField(const Binding &binding, SettingsStore &settings, QObject *parent);

    QString label() const { return binding_.label; }
    QString placeholder() const { return binding_.placeholder; }
    QString text() const { return (settings_.*binding_.read)(); }

    void setText(const QString &text) { (settings_.*binding_.write)(text); }

Q_SIGNALS:
    void textChanged();

private:
    Binding binding_;
    SettingsStore &settings_;
};

} // namespace kelvo
