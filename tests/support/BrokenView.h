#pragma once

#include <QFile>
#include <QQmlAbstractUrlInterceptor>
#include <QQmlEngine>
#include <QRegularExpression>
#include <QTemporaryDir>

namespace kelvo {

/// While it exists, the engine finds a file that imports a missing module in place of each view with this file name.
class BrokenView : public QQmlAbstractUrlInterceptor
{
public:
    BrokenView(QQmlEngine &engine, QString fileName)
        : engine_(engine)
        , fileName_(std::move(fileName))
    {
        QFile file(path());
        if (!file.open(QIODevice::WriteOnly) || file.write("import Missing.Module\nItem {}\n") < 0) {
            qFatal("Cannot write a view");
        }
        engine_.addUrlInterceptor(this);
    }
    ~BrokenView() override { engine_.removeUrlInterceptor(this); }

    QUrl intercept(const QUrl &url, DataType type) override
    {
        return type == QmlFile && url.fileName() == fileName_ ? QUrl::fromLocalFile(path()) : url;
    }

    /// What the program prints when it tries to load the view as a window: one line.
    static QRegularExpression warning()
    {
        return QRegularExpression(
            QStringLiteral("^The windows cannot be opened: .*module \"Missing.Module\" is not installed$"));
    }

private:
    QString path() const { return directory_.filePath(fileName_); }

    QQmlEngine &engine_;
    QString fileName_;
    QTemporaryDir directory_;
};

} // namespace kelvo
