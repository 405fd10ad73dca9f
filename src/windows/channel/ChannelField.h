#pragma once

#include "settings/SettingsStore.h"

#include <QObject>
#include <QQmlEngine>

namespace kelvo {

/// A text setting that the user types, with the label and the placeholder of its field. Each change is stored at once and
/// unchanged.
class ChannelField : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("The channel sheet's state has them")

    Q_PROPERTY(QString label READ label CONSTANT FINAL)
    Q_PROPERTY(QString placeholder READ placeholder CONSTANT FINAL)
    Q_PROPERTY(QString text READ text WRITE setText NOTIFY textChanged FINAL)

public:
    /// The texts of the field, and the accessors of its setting in the store.
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
