#pragma once

#include <QQuickItem>
#include <QString>

namespace kelvo {

/// An item that a screen reader sees as one text without children. A change of the text is not reported to the screen
/// reader: the text contains the time since the last check, and a screen reader speaks each change of what has the focus.
class HeroItem : public QQuickItem
{
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(QString spokenText MEMBER spokenText_ NOTIFY spokenTextChanged FINAL)

public:
    explicit HeroItem(QQuickItem *parent = nullptr);

    QString spokenText() const { return spokenText_; }

Q_SIGNALS:
    void spokenTextChanged();

private:
    QString spokenText_;
};

} // namespace kelvo
