#include "platform/linux/IniText.h"

#include <QRegularExpression>

#include <algorithm>
#include <optional>
#include <utility>

using namespace Qt::StringLiterals;

// QSettings does not read the text: a value "@Variant(…)" makes it allocate any amount of memory, and an unclosed quote makes
// it take the following lines for a part of the value. Nor does it change the text: it removes comments.

namespace kelvo {

namespace {

/// An empty list, as QSettings writes it.
constexpr auto emptyList = "@Invalid()"_L1;

bool isBlank(QChar character)
{
    return character == u' ' || character == u'\t' || character == u'\r';
}

/// Returns the value of a digit, and nullopt for another character.
std::optional<char16_t> digit(QChar character, char16_t base)
{
    constexpr QStringView digits = u"0123456789abcdef";
    const qsizetype value = digits.first(base).indexOf(character.toLower());
    return value < 0 ? std::nullopt : std::optional(char16_t(value));
}

/// Reads an escape sequence. The position is the one of its backslash, and then the one of its last character.
QString unescaped(QStringView text, qsizetype &position)
{
    constexpr QStringView names = u"abfnrtv";
    constexpr QStringView characters = u"\a\b\f\n\r\t\v";

    if (position + 1 == text.size())
        return {};
    const QChar name = text.at(++position);
    if (const qsizetype index = names.indexOf(name); index >= 0)
        return characters.at(index);
    const char16_t base = name == u'x' ? 16 : 8;
    if (name != u'x' && !digit(name, base))
        return name;
    // As many digits as there are; QSettings keeps the last 16 bits, too.
    char16_t number = digit(name, base).value_or(0);
    while (position + 1 < text.size()) {
        const auto next = digit(text.at(position + 1), base);
        if (!next)
            break;
        number = char16_t(number * base + *next);
        ++position;
    }
    return QChar(number);
}

/// Returns the words of a value, at least one.
QStringList wordsOf(QStringView value)
{
    QStringList words;
    QString word;
    qsizetype kept = 0; // the characters of the word before the blanks that may surround it
    bool isQuoted = false;
    const auto endWord = [&] {
        words.append(word.first(kept));
        word.clear();
        kept = 0;
    };
    for (qsizetype i = 0; i < value.size(); ++i) {
        const QChar character = value.at(i);
        if (character == u'"') {
            isQuoted = !isQuoted;
        } else if (character == u'\\') {
            word += unescaped(value, i);
        } else if (!isQuoted && character == u',') {
            endWord();
            continue;
        } else if (!isQuoted && character == u';') {
            break;
        } else if (!isQuoted && isBlank(character)) {
            if (kept > 0)
                word += character;
            continue;
        } else {
            word += character;
        }
        kept = word.size();
    }
    endWord();
    return words;
}

/// Returns the texts that the words stand for, and nullopt if one is a value of another type. QSettings writes some texts as
/// "@String(…)".
std::optional<QStringList> textsOf(QStringList words)
{
    if (words == QStringList(emptyList))
        return QStringList();
    constexpr auto typedText = "@String("_L1;
    for (QString &word : words) {
        if (word.startsWith("@@"_L1))
            word.remove(0, 1);
        else if (word.startsWith(typedText) && word.endsWith(u')'))
            word = word.sliced(typedText.size()).chopped(1);
        else if (word.startsWith(u'@') && word.endsWith(u')'))
            return std::nullopt;
    }
    return words;
}

/// Quotes the text and escapes it as QSettings does.
QString quoted(const QString &text)
{
    // A leading @ is the start of a typed value, unless it is doubled.
    QString word = text.startsWith(u'@') ? u"\"@"_s : u"\""_s;
    bool followsNumber = false;
    for (const QChar character : text) {
        // A hexadecimal digit after an escape sequence would be read as part of it.
        const bool asNumber = character.category() == QChar::Other_Control || character == QChar::ByteOrderMark
            || (followsNumber && digit(character, 16));
        if (asNumber) {
            word += u"\\x"_s + QString::number(character.unicode(), 16);
        } else {
            if (character == u'"' || character == u'\\')
                word += u'\\';
            word += character;
        }
        followsNumber = asNumber;
    }
    return word + u'"';
}

QString wordFor(const QString &text)
{
    static const QRegularExpression plain(uR"(\A[A-Za-z0-9_.:/+-]+\z)"_s);
    return plain.match(text).hasMatch() ? text : quoted(text);
}

/// Returns what stands before the equals sign of a line, and an empty array if there is none. It is a key unless the line is
/// a section or a comment.
QByteArray keyOf(const QByteArray &line)
{
    return line.left(std::max<qsizetype>(line.indexOf('='), 0)).trimmed();
}

bool isKey(const QByteArray &key)
{
    static const QRegularExpression plain(uR"(\A\w+\z)"_s);
    return plain.match(QString::fromLatin1(key)).hasMatch();
}

} // namespace

IniText::IniText(const QByteArray &bytes)
{
    constexpr QByteArrayView byteOrderMark("\xef\xbb\xbf");
    qsizetype start = 0;
    // A second one would become the first when the file is written.
    while (QByteArrayView(bytes).sliced(start).startsWith(byteOrderMark))
        start += byteOrderMark.size();
    lines_ = bytes.sliced(start).split('\n');
    if (lines_.last().isEmpty())
        lines_.removeLast();
}

/// Returns the indexes of the lines outside of all sections but [General], without empty ones.
QList<qsizetype> IniText::topLevel() const
{
    QList<qsizetype> indexes;
    bool isTopLevel = true;
    for (qsizetype i = 0; i < lines_.size(); ++i) {
        const QByteArray line = lines_.at(i).trimmed();
        if (line.startsWith('['))
            isTopLevel = line.mid(1, line.indexOf(']') - 1).trimmed().toLower() == "general";
        if (isTopLevel && !line.isEmpty())
            indexes.append(i);
    }
    return indexes;
}

QHash<QString, QStringList> IniText::settings() const
{
    QHash<QString, QStringList> settings;
    for (const qsizetype i : topLevel()) {
        const QByteArray &line = lines_.at(i);
        const QByteArray key = keyOf(line);
        if (!isKey(key))
            continue;
        // Decoded as a whole: at its begin, QString takes a byte order mark away.
        const QString text = QString::fromUtf8(line);
        if (const auto texts = textsOf(wordsOf(QStringView(text).sliced(text.indexOf(u'=') + 1))))
            settings.insert(QString::fromLatin1(key), *texts);
        else
            settings.remove(QString::fromLatin1(key));
    }
    return settings;
}

void IniText::put(const QString &key, const QStringList &words)
{
    QStringList written;
    for (const QString &word : words)
        written.append(wordFor(word));
    const QByteArray name = key.toLatin1();
    const QByteArray setting = name + '=' + (written.isEmpty() ? QString(emptyList) : written.join(u", "_s)).toUtf8();

    const QList<qsizetype> candidates = topLevel();
    bool isThere = false;
    for (const qsizetype i : candidates) {
        if (keyOf(lines_.at(i)) == name) {
            lines_[i] = setting;
            isThere = true;
        }
    }
    if (isThere)
        return;
    if (!candidates.isEmpty()) {
        lines_.insert(candidates.last() + 1, setting);
        return;
    }
    if (!lines_.isEmpty())
        lines_.prepend({});
    lines_.prepend(setting);
    lines_.prepend("[General]"_ba);
}

} // namespace kelvo
