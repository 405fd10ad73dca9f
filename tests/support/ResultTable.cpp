#include "ResultTable.h"

#include <QFile>

namespace kelvo {

using namespace Qt::StringLiterals;

void writeResultTable(const QString &document, const QByteArray &name, const QByteArray &table)
{
    const auto mark = [&name](const char *verb) {
        return QByteArray("<!-- The table of " + name + ' ' + verb + ". -->\n");
    };
    const auto begin = mark("begins");
    QFile file(document);
    auto text = file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    file.close();
    const auto from = text.indexOf(begin) + begin.size();
    const auto to = text.indexOf(mark("ends"));
    if (from < begin.size() || to < from) {
        qFatal("%s has no place for the table", qPrintable(document));
    }
    text.replace(from, to - from, table);
    if (!file.open(QIODevice::WriteOnly) || file.write(text) != text.size()) {
        qFatal("cannot write %s", qPrintable(document));
    }
}

QString takeWriteOption(QStringList &arguments)
{
    const auto option = arguments.indexOf("--write"_L1);
    if (option < 0) {
        return {};
    }
    const auto document = arguments.value(option + 1);
    arguments.remove(option, std::min<qsizetype>(2, arguments.size() - option));
    return document;
}

} // namespace kelvo
